// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/page_stack.h"

#include "shell/dialogs/dialog_host.h"
#include "shell/pages/network.h"
#include "shell/pages/page_area.h"
#include "shell/pages/page_log.h"
#include "shell/pages/transparent_view.h"
#include "shell/pages/web_page.h"

#include <QMdiSubWindow>
#include <QWebFrame>
#include <QWebView>

PageStack::PageStack(PageArea *area, const QSize &size, DialogHost &dialogs, QObject *parent)
    : QObject(parent)
    , m_dialogs(dialogs)
    , m_stack(new QStackedWidget(area))
{
    QMdiSubWindow *subWindow = area->addPane(m_stack);
    subWindow->resize(size);
    subWindow->show();
    connect(area, &PageArea::resized, subWindow, qOverload<const QSize &>(&QWidget::resize));
}

void PageStack::addPortal()
{
    TransparentView *view = createView();
    view->enable({QWebSettings::PluginsEnabled, QWebSettings::JavascriptEnabled});
    view->page()->setNetworkAccessManager(&sharedNetworkAccess);
    m_stack->addWidget(view);
}

void PageStack::openFavourites(const QUrl &url)
{
    QWebView *view = createView();
    logFailuresOf(view->page()->networkAccessManager(), view);
    view->load(url);
    m_stack->addWidget(view);
    m_stack->setCurrentIndex(m_stack->currentIndex() + 1);
    focusCurrentView();
}

void PageStack::closeFavourites()
{
    if (favouritesOpen()) {
        QWebView *favourites = currentView();
        m_stack->setCurrentIndex(m_stack->currentIndex() - 1);
        m_stack->removeWidget(favourites);
        favourites->stop();
        favourites->close();
        // A script of its page that waits for an answer comes to its end first, or never.
        m_dialogs.whenAnswered([this, favourites, abandonments = m_abandonments] {
            if (m_abandonments == abandonments)
                favourites->deleteLater();
        });
        focusCurrentView();
    }
    if (m_mode == PageMode::Settings)
        m_mode = PageMode::Portal;
}

bool PageStack::favouritesOpen() const { return m_stack && m_stack->currentIndex() > 0; }

QWebView *PageStack::currentView() const
{
    return m_stack ? qobject_cast<QWebView *>(m_stack->currentWidget()) : nullptr;
}

QVariant PageStack::evaluate(const QString &statement) const
{
    QWebView *view = currentView();
    return view ? view->page()->mainFrame()->evaluateJavaScript(statement) : QVariant();
}

void PageStack::focusCurrentView() const
{
    if (QWebView *view = currentView())
        view->setFocus(Qt::OtherFocusReason);
}

void PageStack::load(const QUrl &url)
{
    m_requestedUrl = url;
    m_dialogs.whenAnswered([this, url] {
        m_bare = false;
        if (QWebView *view = currentView())
            m_dialogs.leave(view->page(), [view, url] { view->load(url); });
        focusCurrentView();
    });
}

void PageStack::markPortal()
{
    if (QWebView *view = currentView())
        m_portalUrl = view->url();
}

void PageStack::loadBare()
{
    if (!m_bare)
        return;
    // Behind what is to be loaded anyway.
    m_dialogs.whenAnswered([this] {
        if (m_bare)
            load(m_requestedUrl);
    });
}

void PageStack::abandon()
{
    ++m_abandonments;
    m_bare = true;
    while (QWidget *view = m_stack->currentWidget()) {
        m_stack->removeWidget(view);
        view->hide();
        view->removeEventFilter(m_stack->window());
        disconnect(view, nullptr, m_stack->window(), nullptr);
        disconnect(static_cast<QWebView *>(view)->page()->mainFrame(), nullptr, m_stack->window(),
                   nullptr);
    }
}

void PageStack::release() { m_stack.clear(); }

TransparentView *PageStack::createView()
{
    auto *view = new TransparentView(m_stack->window());
    view->setPage(new QWebPagePriv(&m_dialogs, view));
    view->enable({QWebSettings::DeveloperExtrasEnabled});
    emit viewAdded(view);
    return view;
}
