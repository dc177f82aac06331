// SPDX-License-Identifier: Apache-2.0
/*
 * Pages on their way in: their progress, their URLs and their failures.
 */
#include "enigma2/enigma2.h"
#include "platform/box_paths.h"
#include "platform/environment.h"
#include "platform/log_record.h"
#include "shell/pages/network.h"
#include "shell/pages/page_stack.h"
#include "shell/window.h"

#include <QWebSecurityOrigin>

void Window::setProgress(int progress) { logRecord("setProgress", progress); }

void Window::finishLoading(bool ok)
{
    logRecord("finishLoading", ok);
    // A developer's script for every page; without one, an empty statement.
    if (ok)
        m_pages->evaluate(qEnvironmentVariable(Environment::webDebug) + ";");
}

void Window::NetworkAccessibleChanged(QNetworkAccessManager::NetworkAccessibility accessible)
{
    logRecord("NetworkAccessibleChanged(", accessible);
}

void Window::NetworkReplyError(QNetworkReply *reply)
{
    const NetworkFailure failure =
        judgeReply(reply->error(), reply->url(), m_pages->requestedUrl(), m_pages->portalUrl());
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
    const PageMode mode = pageModeOf(encoded);
    m_pages->setMode(mode);
    if (isVideoApplication(encoded))
        m_enigma2->RunApp("youtube");
    logRecord("Urlchanged", url, static_cast<int>(mode));
    if (!m_origins.allow(originText(url)))
        return;
    // An empty host, not a null one: the engine tells them apart, and files have the empty one.
    QWebSecurityOrigin(url).addAccessWhitelistEntry("file", QString(""),
                                                    QWebSecurityOrigin::DisallowSubdomains);
}
