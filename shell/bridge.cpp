// SPDX-License-Identifier: Apache-2.0
/*
 * The bridge into the pages: publishes the box's objects under their JavaScript names whenever a
 * page clears its window object, and injects the scripts that complete the interface.
 */
#include "api/vesprelv2.h"
#include "objects/placeholders.h"
#include "objects/player.h"
#include "objects/player_manager.h"
#include "objects/pvr_manager.h"
#include "objects/web_window.h"
#include "objects/window_manager.h"
#include "platform/log_record.h"
#include "shell/keyboard/keyboard_pane.h"
#include "shell/pages/injected_script.h"
#include "shell/pages/page_stack.h"
#include "shell/window.h"

#include <QWebFrame>
#include <QWebSecurityOrigin>
#include <QWebView>

void Window::SetupJSObject()
{
    if (const QWebView *view = m_pages->currentView())
        setUpPage(*view);
}

void Window::setUpLowerPage(const QWebView &view)
{
    // A page below favourites that loads another. SetupJSObject(), which knows no page but the
    // current one, has set that up once more by now.
    if (m_pages->currentView() && m_pages->currentView() != &view)
        setUpPage(view);
}

void Window::setUpPage(const QWebView &view)
{
    QWebFrame *frame = view.page()->mainFrame();
    if (!mayUseBox(*frame)) {
        const QWebSecurityOrigin origin = frame->securityOrigin();
        logRecord("page without the box's objects:", originText(origin), origin.host());
        return;
    }
    frame->addToJavaScriptWindowObject("gSTB", m_gSTB);
    frame->addToJavaScriptWindowObject("stbPlayerManager", m_playerManager);
    frame->addToJavaScriptWindowObject("stbPlayer", m_playerManager->firstPlayer());
    frame->addToJavaScriptWindowObject("pvrManager", m_pvrManager);
    frame->addToJavaScriptWindowObject("timeShift", m_timeShift);
    frame->addToJavaScriptWindowObject("stbStorage", m_storage);
    frame->addToJavaScriptWindowObject("stbWindowMgr", m_windowManager);
    frame->addToJavaScriptWindowObject("stbWebWindow", m_webWindow);
    for (const char *script : {"shim.js", "hole.js", "kb.js"})
        injectScript(script, &view);
}

void Window::SetupKeyboardJSObject()
{
    QWebFrame *frame = m_keyboard->frame();
    // The keyboard's own page is a file of the box.
    if (!mayUseBox(*frame) && frame->securityOrigin().scheme() != "file")
        return;
    frame->addToJavaScriptWindowObject("gSTB", m_gSTB);
    frame->addToJavaScriptWindowObject("timeShift", m_timeShift);
    frame->addToJavaScriptWindowObject("stbStorage", m_storage);
    frame->addToJavaScriptWindowObject("stbWindowMgr", m_windowManager);
    frame->addToJavaScriptWindowObject("stbWebWindow", m_webWindow);
    // Into the portal, where the keys are entered, not into the keyboard page.
    PrependKeyboard();
}

void Window::PreviewHole() { injectScript("hole.js", m_pages->currentView()); }

void Window::ShowPreviewHole() { injectScript("show_hole.js", m_pages->currentView()); }

void Window::HidePreviewHole() { injectScript("hide_hole.js", m_pages->currentView()); }

void Window::PrependKeyboard() { injectScript("kb.js", m_pages->currentView()); }

bool Window::mayUseBox(const QWebFrame &frame) const
{
    return m_origins.allow(originText(frame.securityOrigin()));
}

void Window::injectScript(const char *name, const QWebView *view)
{
    // The scripts use the objects, and a page without them has no keyboard either.
    if (view && !mayUseBox(*view->page()->mainFrame()))
        return;
    const auto script = injectedScript(name);
    if (!script)
        logRecord(qPrintable(QString("failed open %1").arg(name)));
    else if (view)
        view->page()->mainFrame()->evaluateJavaScript(*script);
}
