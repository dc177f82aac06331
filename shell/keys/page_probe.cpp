// SPDX-License-Identifier: Apache-2.0
#include "shell/keys/page_probe.h"

#include <QWebFrame>

// Portals have always been asked with exactly this text, blanks included.
const char portalStateScript[] =
    "if(typeof(stb.player.active_time_shift) !== 'undefined' && stb.player.active_time_shift){"
    "gSTB.SetTimeshiftState(1);}else{gSTB.SetTimeshiftState(0);}"
    "                                            "
    "if(typeof(stb.cur_place) === 'string'){gSTB.SetCurrPlace(stb.cur_place);}"
    "                                            "
    "if(typeof(module.tv.dom_obj) !== 'undefined'){"
    "gSTB.SetTVMenuState(module.tv.dom_obj.isHidden());}";

namespace {

const char style[] = "style";
const char displayed[] = "display: block;";

bool isDisplayed(const QWebElement &element)
{
    return element.attribute(style).contains(displayed);
}

/** The element that follows in a walk through the document, children before siblings. */
QWebElement following(QWebElement element)
{
    QWebElement next = element.firstChild();
    while (next.isNull() && !element.isNull()) {
        next = element.nextSibling();
        element = element.parent();
    }
    return next;
}

/** The element itself, or its next following sibling, that is not hidden. */
QWebElement firstVisible(QWebElement element)
{
    while (!element.isNull() && element.attribute(style).contains("visibility: hidden;"))
        element = element.nextSibling();
    return element;
}

/** The first element of a class, in the exact spelling of its attribute. */
QWebElement findPart(const QWebFrame &frame, const char *name)
{
    const QWebElement part = frame.findFirstElement(QString("div[class=%1]").arg(name));
    return part.attribute("class") == name ? part : QWebElement();
}

bool hasDisplayedSibling(const QWebElement &element)
{
    for (QWebElement next = element.nextSibling(); !next.isNull(); next = next.nextSibling()) {
        if (isDisplayed(next))
            return true;
    }
    QWebElement previous = element.previousSibling();
    while (!previous.isNull() && !isDisplayed(previous))
        previous = previous.previousSibling();
    return !previous.isNull();
}

} // namespace

QWebElement focusedElement(const QWebFrame &frame)
{
    QWebElement element = frame.documentElement();
    while (!element.isNull() && !element.hasFocus())
        element = following(element);
    return element;
}

bool launcherFrameShown(const QWebFrame &mainFrame)
{
    QWebElement frame = firstVisible(mainFrame.findFirstElement("iframe"));
    while (!frame.isNull()) {
        if (frame.attribute("src").contains("magcore-app-launcher"))
            return true;
        frame = firstVisible(frame.nextSibling());
    }
    return false;
}

PortalParts portalParts(const QWebFrame &frame)
{
    PortalParts parts;
    const QWebElement mainMenu = findPart(frame, "main_menu");
    parts.mainMenu = isDisplayed(mainMenu);
    parts.mainMenuSibling = parts.mainMenu && hasDisplayedSibling(mainMenu);
    parts.cutOff = isDisplayed(findPart(frame, "cut_off"));
    // A loader without a style is one that the portal has just put there: it is shown.
    const QWebElement loader = findPart(frame, "loader");
    parts.loader = !loader.isNull() && (isDisplayed(loader) || loader.attribute(style).isEmpty());
    return parts;
}
