// SPDX-License-Identifier: Apache-2.0
/*
 * The remote control's keys on their way to the page: the filter asks the decisions beside it and
 * acts on them.
 */
#include "api/vesprelv2.h"
#include "enigma2/enigma2.h"
#include "platform/log_record.h"
#include "shell/keys/key_decision.h"
#include "shell/keys/key_table.h"
#include "shell/keys/page_probe.h"
#include "shell/keys/posted_key.h"
#include "shell/window.h"

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

bool Window::eventFilter(QObject *watched, QEvent *event)
{
    QWebView *view = currentView();
    if (event->type() == QEvent::KeyPress && view && watched == view &&
        filterKey(*view, *static_cast<QKeyEvent *>(event)))
        return true;
    return QMainWindow::eventFilter(watched, event);
}

bool Window::filterKey(QWebView &view, const QKeyEvent &event)
{
    const int key = event.key();
    logRecord("Key Pressed:", Qt::hex, key, event.nativeScanCode(), event.nativeVirtualKey(),
              event.nativeModifiers(), view.url());
    const KeyRoute route = routeKey(
        key, {m_comboboxJustClosed, event.spontaneous(), m_powerOffState, m_keyboardShown});
    m_comboboxJustClosed = false;
    switch (route) {
    case KeyRoute::SwallowedAfterCombobox:
        logRecord("Just backed from Combobox, will ingore this key");
        return true;
    case KeyRoute::PassedOn: logRecord("not spontaneous"); return false;
    case KeyRoute::SwallowedWhileOff: logRecord("In power off state, ignore any keys"); return true;
    case KeyRoute::ToKeyboard:
        postKey(m_keyboardView, keyForKeyboard(key), event.modifiers(), event.text());
        logRecord("In Keyboard, will act like Key");
        return true;
    case KeyRoute::Translated: break;
    }
    const KeyRow *row = findKeyRow(key);
    return row && translateKey(view, event, *row);
}

bool Window::translateKey(QWebView &view, const QKeyEvent &event, const KeyRow &row)
{
    switch (row.action) {
    case KeyAction::Post: return postTranslated(view, event, row);
    case KeyAction::Channel: return isChannelKey(view) && postTranslated(view, event, row);
    case KeyAction::Favorites:
        logRecord("Key_F11", m_webFavoritesOpen);
        if (isLauncher(view.url().toString()))
            return postTranslated(view, event, row);
        if (m_webFavoritesOpen)
            WinCloseWebFavorites();
        return false;
    case KeyAction::RunApp: m_enigma2->RunApp(row.text); return true;
    case KeyAction::Standby:
        logRecord(row.text);
        m_enigma2->Standby();
        return true;
    case KeyAction::Quit: emit pwr(); return false;
    case KeyAction::Ok: logRecord(row.text, m_webFavoritesOpen); return pressOk(view, event);
    case KeyAction::Back: return goBack(view, event);
    }
    return false;
}

bool Window::postTranslated(QWebView &view, const QKeyEvent &event, const KeyRow &row)
{
    postKey(&view, row.postedKey, postedModifiers(row.modifiers, event.modifiers()), event.text());
    logRecord(row.text);
    return true;
}

bool Window::isChannelKey(QWebView &view)
{
    view.page()->mainFrame()->evaluateJavaScript(portalStateScript);
    const int timeshift = m_gSTB->timeshiftState();
    const QString place = m_gSTB->currPlace();
    const bool tvMenu = m_gSTB->isTvMenuVisible();
    logRecord("timeshift mode", timeshift, "menu state", place, "tv menu state", int(tvMenu));
    return takesChannelKeys(place, tvMenu, timeshift);
}

bool Window::pressOk(QWebView &view, const QKeyEvent &event)
{
    if (!m_webFavoritesOpen || m_pageMode != PageMode::Settings)
        return false;
    const QWebFrame *frame = view.page()->currentFrame();
    const QWebElement element = focusedElement(*frame);
    if (element.isNull())
        return false;
    logRecord(element.tagName(), element.attribute("class", "exit"));
    if (element.tagName() == "SELECT") {
        m_comboboxJustClosed = true;
        logRecord("webframe", frame->pos(), frame->geometry(), element.tagName(),
                  element.geometry());
        postClick(view, element);
        return true;
    }
    if (element.tagName() == "INPUT") {
        postKey(&view, Qt::Key_Space, event.modifiers(), event.text());
        logRecord("In checkbox, will act like space");
        return true;
    }
    return false;
}

bool Window::goBack(QWebView &view, const QKeyEvent &event)
{
    BackSituation situation;
    situation.pageMode = m_pageMode;
    situation.escape = event.key() == Qt::Key_Escape;
    situation.url = view.url();
    situation.portalUrl = m_portalUrl;
    situation.launcher = isLauncher(situation.url.toString());
    situation.mainAppMode = m_mainAppMode;
    if (needsLauncherFrames(situation))
        situation.launcherFrameShown = launcherFrameShown(*view.page()->mainFrame());
    if (needsPortalParts(situation))
        situation.parts = portalParts(*view.page()->currentFrame());

    switch (decideBack(situation)) {
    case BackDecision::LeaveApplication:
        // This request, and no other, takes the receiver back to the previous site.
        m_enigma2->Reboot();
        logRecord("In APP, will act back to prev website");
        return true;
    case BackDecision::QuitByLauncher: return quitLogged("exit browser by launcher");
    case BackDecision::LeaveForeignPage:
        logRecord("it seems not current portal:", situation.url, situation.portalUrl);
        m_enigma2->Reboot();
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

bool Window::quitLogged(const char *record)
{
    logRecord(record);
    emit pwr();
    return true;
}
