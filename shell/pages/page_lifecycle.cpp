// SPDX-License-Identifier: Apache-2.0
/*
 * Pages: loading, their URLs and failures, the favourites view, and quitting to the idle state.
 */
#include "enigma2/enigma2.h"
#include "platform/box_paths.h"
#include "platform/log_record.h"
#include "shell/pages/network_failure.h"
#include "shell/pages/web_page.h"
#include "shell/window.h"

#include <QDialog>
#include <QNetworkReply>
#include <QStackedWidget>
#include <QThread>
#include <QWebFrame>
#include <QWebSecurityOrigin>
#include <QWebSettings>
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

void Window::setUrl(const QUrl &url)
{
    logRecord("setUrl:", url);
    m_currentUrl = url;
    qputenv("portal1", url.toEncoded());
    if (QWebView *view = currentView()) {
        view->load(url);
        view->setFocus(Qt::OtherFocusReason);
    }
}

void Window::setProgress(int progress) { logRecord("setProgress", progress); }

void Window::finishLoading(bool ok)
{
    logRecord("finishLoading", ok);
    // A developer's script for every page; without one, an empty statement.
    if (ok)
        evaluate(qEnvironmentVariable("Q_WEB_DEBUG") + ";");
}

void Window::finishKeyboardLoading(bool ok)
{
    logRecord("keyboard finishLoading", ok);
    if (ok)
        m_keyboardShown = true;
}

void Window::NetworkAccessibleChanged(QNetworkAccessManager::NetworkAccessibility accessible)
{
    logRecord("NetworkAccessibleChanged(", accessible);
}

void Window::NetworkReplyError(QNetworkReply *reply)
{
    const NetworkFailure failure =
        judgeReply(reply->error(), reply->url(), m_currentUrl, m_portalUrl);
    if (failure.servicesMenu) {
        logRecord("need jump to local services menu");
        m_enigma2->RunApp(BoxPaths::servicesPageUrl());
    }
    if (failure.errorPage) {
        logRecord("Need show error page");
        m_enigma2->RunApp("show load page error");
    }
    if (failure.reported)
        logRecord("NetworkReplyError: ", reply->errorString(), reply->error());
}

void Window::Urlchanged(const QUrl &url)
{
    const QString encoded = url.toEncoded();
    m_pageMode = pageModeOf(encoded);
    if (isVideoApplication(encoded))
        m_enigma2->RunApp("youtube");
    logRecord("Urlchanged", url, static_cast<int>(m_pageMode));
    // An empty host, not a null one: the engine tells them apart, and files have the empty one.
    QWebSecurityOrigin(url).addAccessWhitelistEntry("file", QString(""),
                                                    QWebSecurityOrigin::DisallowSubdomains);
}

void Window::WinOpenWebFavorites(const QString &url, int)
{
    logRecord("WinOpenWebFavorites", "()", url);
    QWebView *view = createView();
    view->setPage(new QWebPagePriv(view));
    view->settings()->setAttribute(QWebSettings::DeveloperExtrasEnabled, true);
    view->installEventFilter(this);
    watchView(view);
    view->load(QUrl(url));
    m_stack->addWidget(view);
    m_stack->setCurrentIndex(m_stack->currentIndex() + 1);
    m_webFavoritesOpen = true;
}

void Window::WinCloseWebFavorites()
{
    QWebView *favorites = currentView();
    const int index = m_stack->currentIndex();
    if (index > 0) {
        m_stack->setCurrentIndex(index - 1);
        m_stack->removeWidget(favorites);
        favorites->stop();
        favorites->close();
        deleteAfterDialog(favorites);
    }
    m_webFavoritesOpen = m_stack->currentIndex() > 0;
    if (m_pageMode == PageMode::Settings)
        m_pageMode = PageMode::Portal;
    logRecord("WinCloseWebFavorites", "()");
}

void Window::QuitApp()
{
    if (m_browserIdle)
        return;
    hide();
    setUrl(QUrl());
    logRecord("QuitApp, do MediaStop");
    m_enigma2->MediaStop();
    logRecord("QuitApp, do Exit message");
    m_enigma2->Exit();
    // The receiver acts on both before anything else happens here.
    QThread::msleep(100);
    m_browserIdle = true;
}
