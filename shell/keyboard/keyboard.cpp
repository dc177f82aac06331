// SPDX-License-Identifier: Apache-2.0
/*
 * The on-screen keyboard: its view, its keys on their way into the portal, and where the portal's
 * focused field is.
 */
#include "platform/box_paths.h"
#include "platform/log_record.h"
#include "shell/keyboard/keyboard_statement.h"
#include "shell/window.h"

#include <QMdiSubWindow>
#include <QWebFrame>
#include <QWebView>

void Window::VirtualKeyboardOpen()
{
    // The keys stay with the portal until this load has ended well.
    m_keyboardShown = false;
    m_keyboardView->load(QUrl(BoxPaths::keyboardPageUrl()));
    m_keyboardSubWindow->show();
    if (QWebView *view = currentView())
        view->setFocus(Qt::OtherFocusReason);
    logRecord("VirtualKeyboardOpen", "()", m_keyboardShown);
}

void Window::VirtualKeyboardClose()
{
    // A page that is still loading must not take the keys once nobody sees it.
    m_keyboardView->stop();
    m_keyboardSubWindow->hide();
    if (QWebView *view = currentView())
        view->setFocus(Qt::OtherFocusReason);
    m_keyboardShown = false;
    logRecord("VirtualKeyboardClose", "()", m_keyboardShown);
}

void Window::VirtualKeyboardOnKey(const QString &key, const QString &id)
{
    const QString statement = keyboardStatement(key, id);
    logRecord("VirtualKeyboardOnKey", "(): ", statement);
    evaluate(statement);
}

void Window::VirtualKeyboardSetPos(int x, int y, int w, int h)
{
    m_keyboardSubWindow->setGeometry(x, y, w, h);
}

void Window::UpdateFocusedPos(int &x, int &y, int &w, int &h)
{
    QWebView *view = currentView();
    if (!view)
        return;
    const QVariantMap box =
        view->page()->mainFrame()->evaluateJavaScript("GetFocusInputPos();").toMap();
    const auto take = [&box](const char *name, int &value) {
        const QVariant member = box.value(name);
        logRecord("UpdateFocusedPos", "()", member);
        value = member.toInt();
    };
    take("x", x);
    take("y", y);
    take("w", w);
    take("h", h);
}

void Window::OnWebWindowClose()
{
    if (m_keyboardShown)
        VirtualKeyboardClose();
    if (m_webFavoritesOpen)
        WinCloseWebFavorites();
}
