// SPDX-License-Identifier: Apache-2.0
#include "shell/keys/key_filter.h"

#include "api/vesprelv2.h"
#include "platform/environment.h"
#include "platform/log_record.h"
#include "shell/browser_state.h"
#include "shell/keyboard/keyboard_pane.h"
#include "shell/keys/key_decision.h"
#include "shell/keys/key_table.h"
#include "shell/keys/page_probe.h"
#include "shell/keys/posted_key.h"
#include "shell/pages/page_stack.h"
#include "shell/pages/page_statement.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWebFrame>
#include <QWebView>

namespace {

/** Posts a left click just inside the element's corner, where a drop-down list opens. */
void postClick(QWebView &view, const QWebElement &element)
{
    const QPoint at = element.geometry().topLeft() + QPoint(1, 1);
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const Qt::MouseButtons held =
            type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QCoreApplication::postEvent(
            &view, new QMouseEvent(type, at, Qt::LeftButton, held, Qt::NoModifier));
    }
}

} // namespace

KeyFilter::KeyFilter(const PageStack &pages, KeyboardPane &keyboard, const BrowserState &browser,
                     const VesprelV2 &gSTB, QObject *parent)
    : QObject(parent)
    , m_pages(pages)
    , m_keyboard(keyboard)
    , m_browser(browser)
    , m_gSTB(gSTB)
    , m_mainAppMode(qgetenv(Environment::mainAppMode) == "true")
{
}

bool KeyFilter::filter(QWebView &view, const QKeyEvent &event)
{
    const int key = event.key();
    logRecord("Key Pressed:", Qt::hex, key, event.nativeScanCode(), event.nativeVirtualKey(),
              event.nativeModifiers(), view.url());
    const KeyRoute route = routeKey(key, {m_list.takesNextKey(), event.spontaneous(),
                                          m_browser.isPoweredOff(), m_keyboard.isShown()});
    m_list.forget();
    switch (route) {
    case KeyRoute::SwallowedAfterCombobox:
        logRecord("Just backed from Combobox, will ingore this key");
        return true;
    case KeyRoute::PassedOn: logRecord("not spontaneous"); return false;
    case KeyRoute::SwallowedWhileOff: logRecord("In power off state, ignore any keys"); return true;
    case KeyRoute::ToKeyboard:
        m_keyboard.postKey(event);
        logRecord("In Keyboard, will act like Key");
        // Only the power key comes here while the box is off, and nothing else would wake it.
        if (m_browser.isPoweredOff())
            pressBoxKey(key);
        return true;
    case KeyRoute::Translated: break;
    }
    const KeyRow *row = findKeyRow(key);
    return row && translate(view, event, *row);
}

bool KeyFilter::translate(QWebView &view, const QKeyEvent &event, const KeyRow &row)
{
    switch (row.action) {
    case KeyAction::Post: return postTranslated(view, event, row);
    case KeyAction::Channel: return isChannelKey() && postTranslated(view, event, row);
    case KeyAction::Favourites:
        logRecord("Key_F11", m_pages.favouritesOpen());
        if (isLauncher(view.url().toString()))
            return postTranslated(view, event, row);
        if (m_pages.favouritesOpen())
            emit favouritesCloseRequested();
        return false;
    case KeyAction::RunApp:
    case KeyAction::Standby: actForBox(row); return true;
    case KeyAction::Quit: actForBox(row); return false;
    case KeyAction::Ok:
        logRecord(row.record, m_pages.favouritesOpen());
        return pressOk(view, event);
    case KeyAction::Back: return goBack(view, event);
    }
    return false;
}

void KeyFilter::pressBoxKey(int key)
{
    if (const KeyRow *row = findKeyRow(key))
        actForBox(*row);
}

void KeyFilter::actForBox(const KeyRow &row)
{
    if (row.action == KeyAction::RunApp) {
        emit applicationRequested(row.application);
    } else if (row.action == KeyAction::Standby) {
        logRecord(row.record);
        emit standbyRequested();
    } else if (row.action == KeyAction::Quit) {
        emit quitRequested();
    }
}

bool KeyFilter::postTranslated(QWebView &view, const QKeyEvent &event, const KeyRow &row)
{
    postKey(&view, row.postedKey, postedModifiers(row.modifiers, event.modifiers()), event.text());
    logRecord(row.record);
    return true;
}

bool KeyFilter::isChannelKey()
{
    m_pages.evaluate(PageStatement::tellState);
    const int timeshift = m_gSTB.timeshiftState();
    const QString place = m_gSTB.currPlace();
    const bool tvMenu = m_gSTB.isTvMenuVisible();
    logRecord("timeshift mode", timeshift, "menu state", place, "tv menu state", int(tvMenu));
    return takesChannelKeys(place, tvMenu, timeshift);
}

bool KeyFilter::pressOk(QWebView &view, const QKeyEvent &event)
{
    if (!m_pages.favouritesOpen() || m_pages.mode() != PageMode::Settings)
        return false;
    const QWebFrame *frame = view.page()->currentFrame();
    const QWebElement element = PageProbe(*view.page()).focusedElement();
    if (element.isNull())
        return false;
    logRecord(element.tagName(), element.attribute("class", "exit"));
    if (element.tagName() == "SELECT") {
        logRecord("webframe", frame->pos(), frame->geometry(), element.tagName(),
                  element.geometry());
        postClick(view, element);
        m_list.expect();
        return true;
    }
    if (element.tagName() == "INPUT") {
        postKey(&view, Qt::Key_Space, event.modifiers(), event.text());
        logRecord("In checkbox, will act like space");
        return true;
    }
    return false;
}

bool KeyFilter::goBack(QWebView &view, const QKeyEvent &event)
{
    BackSituation situation;
    situation.pageMode = m_pages.mode();
    situation.escape = event.key() == Qt::Key_Escape;
    situation.url = view.url();
    situation.portalUrl = m_pages.portalUrl();
    situation.mainAppMode = m_mainAppMode;

    switch (decideBack(situation, PageProbe(*view.page()))) {
    case BackDecision::LeaveApplication:
        emit returnRequested();
        logRecord("In APP, will act back to prev website");
        return true;
    case BackDecision::QuitByLauncher: return quitLogged("exit browser by launcher");
    case BackDecision::LeaveForeignPage:
        logRecord("it seems not current portal:", situation.url, situation.portalUrl);
        emit returnRequested();
        return true;
    case BackDecision::QuitInvalidPage: return quitLogged("it seems not valid portal:");
    case BackDecision::QuitByMainMenu: return quitLogged("exit browser by main menu");
    case BackDecision::QuitBySpecialMenu: return quitLogged("exit browser by special menu");
    case BackDecision::PostBackspace:
        postKey(&view, Qt::Key_Backspace, event.modifiers(), event.text());
        logRecord("In portal, convert esc to backspace");
        return true;
    case BackDecision::Pass: break;
    }
    return false;
}

bool KeyFilter::quitLogged(const char *record)
{
    logRecord(record);
    emit quitRequested();
    return true;
}
