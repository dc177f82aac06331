// SPDX-License-Identifier: Apache-2.0
#include "shell/keyboard/keyboard_pane.h"

#include "platform/box_paths.h"
#include "shell/keys/posted_key.h"
#include "shell/pages/page_area.h"
#include "shell/pages/page_log.h"
#include "shell/pages/transparent_view.h"
#include "shell/pages/web_page.h"

#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QUrl>
#include <QWebFrame>

KeyboardPane::KeyboardPane(PageArea *area, DialogHost &dialogs, QObject *parent)
    : QObject(parent)
    , m_dialogs(dialogs)
    , m_view(createView(area->window()))
{
    m_subWindow = area->addPane(m_view, Qt::WindowStaysOnTopHint);
    m_subWindow->setFocusPolicy(Qt::NoFocus);
    m_subWindow->hide();
}

TransparentView *KeyboardPane::createView(QWidget *window) const
{
    auto *view = new TransparentView(window);
    view->setPage(new ViewerPage(&m_dialogs, view));
    logConsoleOf(view->page());
    logFailuresOf(view->page()->networkAccessManager(), view);
    view->setFocusPolicy(Qt::NoFocus);
    view->enable({QWebSettings::PluginsEnabled, QWebSettings::JavascriptEnabled,
                  QWebSettings::DeveloperExtrasEnabled});
    QWebFrame *frame = view->page()->mainFrame();
    frame->setScrollBarPolicy(Qt::Horizontal, Qt::ScrollBarAlwaysOff);
    frame->setScrollBarPolicy(Qt::Vertical, Qt::ScrollBarAlwaysOff);
    return view;
}

void KeyboardPane::open()
{
    // The keys stay with the portal until this load has ended well.
    m_shown = false;
    // While a script of the page that is there waits for an answer, the engine holds this back.
    m_view->load(QUrl(BoxPaths::keyboardPageUrl()));
    m_subWindow->show();
}

void KeyboardPane::close()
{
    // A page that is still loading must not take the keys once nobody sees it.
    m_view->stop();
    m_subWindow->hide();
    m_shown = false;
}

void KeyboardPane::replaceView()
{
    m_subWindow->hide();
    m_shown = false;
    TransparentView *abandoned = m_view;
    disconnect(abandoned->page()->mainFrame(), nullptr, m_subWindow->window(), nullptr);
    m_view = createView(m_subWindow->window());
    m_subWindow->setWidget(m_view);
    abandoned->setParent(nullptr);
}

void KeyboardPane::finishLoading(bool ok)
{
    if (ok)
        m_shown = true;
}

bool KeyboardPane::isOpen() const { return !m_subWindow->isHidden(); }

void KeyboardPane::setGeometry(const QRect &geometry) { m_subWindow->setGeometry(geometry); }

void KeyboardPane::postKey(const QKeyEvent &event)
{
    const int key = event.key() == Qt::Key_F5 ? int(Qt::Key_Backspace) : event.key();
    ::postKey(m_view, key, event.modifiers(), event.text());
}

QWebFrame *KeyboardPane::frame() const { return m_view->page()->mainFrame(); }
