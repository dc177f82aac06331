// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/page_stack.h"

#include "shell/pages/network.h"
#include "shell/pages/transparent_view.h"
#include "shell/pages/web_page.h"

#include <QDialog>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QWebFrame>
#include <QWebView>

namespace {

/**
 * Deletes a view later. One whose page shows a dialog is still inside the script that asked for it:
 * it goes only after that has come to its end.
 */
void deleteAfterDialog(QWebView *view)
{
    if (auto *dialog = view->findChild<QDialog *>()) {
        QObject::connect(dialog, &QObject::destroyed, view, &QObject::deleteLater);
        dialog->reject();
    } else {
        view->deleteLater();
    }
}

} // namespace

PageStack::PageStack(QMdiArea *area, const QSize &size, QObject *parent)
    : QObject(parent)
    , m_stack(new QStackedWidget(area))
{
    QMdiSubWindow *subWindow = area->addSubWindow(m_stack, Qt::FramelessWindowHint);
    subWindow->resize(size);
    subWindow->show();
}

QWebView *PageStack::addPortal()
{
    QWebView *view = createView();
    enable(view->settings(), {QWebSettings::PluginsEnabled, QWebSettings::JavascriptEnabled});
    view->page()->setNetworkAccessManager(&sharedNetworkAccess);
    m_stack->addWidget(view);
    return view;
}

void PageStack::openFavourites(const QUrl &url)
{
    QWebView *view = createView();
    view->load(url);
    m_stack->addWidget(view);
    m_stack->setCurrentIndex(m_stack->currentIndex() + 1);
}

void PageStack::closeFavourites()
{
    if (favouritesOpen()) {
        QWebView *favourites = currentView();
        m_stack->setCurrentIndex(m_stack->currentIndex() - 1);
        m_stack->removeWidget(favourites);
        favourites->stop();
        favourites->close();
        deleteAfterDialog(favourites);
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
    if (QWebView *view = currentView())
        view->load(url);
    focusCurrentView();
}

void PageStack::markPortal()
{
    if (QWebView *view = currentView())
        m_portalUrl = view->url();
}

void PageStack::release() { m_stack.clear(); }

QWebView *PageStack::createView()
{
    QWebView *view = createTransparentView(m_stack->window());
    view->setPage(new QWebPagePriv(view));
    view->settings()->setAttribute(QWebSettings::DeveloperExtrasEnabled, true);
    emit viewAdded(view);
    return view;
}
