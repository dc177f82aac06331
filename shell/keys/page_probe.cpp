// SPDX-License-Identifier: Apache-2.0
#include "shell/keys/page_probe.h"

#include <QWebFrame>
#include <QWebPage>

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

PageProbe::PageProbe(const QWebPage &page)
    : m_page(page)
{
}

QWebElement PageProbe::focusedElement() const
{
    QWebElement element = m_page.currentFrame()->documentElement();
    while (!element.isNull() && !element.hasFocus())
        element = following(element);
    return element;
}

bool PageProbe::launcherFrameShown() const
{
    QWebElement frame = firstVisible(m_page.mainFrame()->findFirstElement("iframe"));
    while (!frame.isNull()) {
        if (frame.attribute("src").contains("magcore-app-launcher"))
            return true;
        frame = firstVisible(frame.nextSibling());
    }
    return false;
}

PortalParts PageProbe::portalParts() const
{
    const QWebFrame &frame = *m_page.currentFrame();
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
