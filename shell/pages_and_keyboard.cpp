// SPDX-License-Identifier: Apache-2.0
/*
 * What the viewer has before him: the portal and its end, favourites over it, the on-screen
 * keyboard over both. The slots forward to the pages and the keyboard, which own the state.
 */
#include "api/vesprelv2.h"
#include "enigma2/enigma2.h"
#include "platform/environment.h"
#include "platform/log_record.h"
#include "shell/keyboard/keyboard_pane.h"
#include "shell/pages/page_stack.h"
#include "shell/pages/page_statement.h"
#include "shell/pages/script_connections.h"
#include "shell/window.h"
#include "shell/window_placement.h"

#include <QRect>
#include <QThread>
#include <QUrl>
#include <QWebView>

void Window::setUrl(const QUrl &url)
{
    logRecord("setUrl:", url);
    qputenv(Environment::currentPortal, url.toEncoded());
    m_pages->load(url);
}

void Window::OnNewPortal(const QString &url)
{
    closeKeyboard();
    m_browser.leaveIdle();
    showInPlace(*this);
    setUrl(QUrl(url, QUrl::TolerantMode));
}

void Window::QuitApp()
{
    if (m_browser.isIdle())
        return;
    closeKeyboard();
    hide();
    setUrl(QUrl());
    logRecord("QuitApp, do MediaStop");
    m_enigma2->MediaStop();
    logRecord("QuitApp, do Exit message");
    m_enigma2->Exit();
    // The receiver acts on both before anything else happens here.
    QThread::msleep(100);
    m_browser.enterIdle();
}

void Window::closeKeyboard()
{
    // As the portal would, so that it finds its keyboard closed when it asks.
    if (m_keyboard->isOpen())
        m_gSTB->HideVirtualKeyboard();
}

// The number is part of the interface and means nothing here.
void Window::WinOpenWebFavorites(const QString &url, int)
{
    logRecord("WinOpenWebFavorites", "()", url);
    m_pages->openFavourites(QUrl(url));
}

void Window::WinCloseWebFavorites()
{
    if (m_pages->favouritesOpen())
        m_scriptConnections->drop(m_pages->currentView());
    m_pages->closeFavourites();
    logRecord("WinCloseWebFavorites", "()");
}

void Window::VirtualKeyboardOpen()
{
    m_keyboard->open();
    m_pages->focusCurrentView();
    logRecord("VirtualKeyboardOpen", "()", m_keyboard->isShown());
}

void Window::VirtualKeyboardClose()
{
    m_keyboard->close();
    m_pages->focusCurrentView();
    logRecord("VirtualKeyboardClose", "()", m_keyboard->isShown());
}

void Window::finishKeyboardLoading(bool ok)
{
    logRecord("keyboard finishLoading", ok);
    m_keyboard->finishLoading(ok);
}

void Window::VirtualKeyboardOnKey(const QString &key, const QString &id)
{
    const QString statement = PageStatement::keyboardPress(key, id);
    logRecord("VirtualKeyboardOnKey", "(): ", statement);
    m_pages->evaluate(statement);
}

void Window::VirtualKeyboardSetPos(int x, int y, int w, int h)
{
    // No widget is larger, and the sums that a rectangle makes stay in range.
    const auto bounded = [](int px) { return qBound(-QWIDGETSIZE_MAX, px, QWIDGETSIZE_MAX); };
    m_keyboard->setGeometry(QRect(bounded(x), bounded(y), bounded(w), bounded(h)));
}

void Window::UpdateFocusedPos(int &x, int &y, int &w, int &h)
{
    if (!m_pages->currentView())
        return;
    const QVariantMap box = m_pages->evaluate(PageStatement::focusedBox).toMap();
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
    if (m_keyboard->isShown())
        VirtualKeyboardClose();
    if (m_pages->favouritesOpen())
        WinCloseWebFavorites();
}
