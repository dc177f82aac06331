// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/network.h"

#include "platform/box_paths.h"

#include <QNetworkRequest>
#include <QUrl>

NAM sharedNetworkAccess;

QNetworkReply *NAM::createRequest(Operation operation, const QNetworkRequest &request,
                                  QIODevice *outgoingData)
{
    QNetworkRequest adjusted(request);
    if (request.url().toDisplayString().contains(".php?type=")) {
        QT_WARNING_PUSH
        QT_WARNING_DISABLE_DEPRECATED
        adjusted.setAttribute(QNetworkRequest::FollowRedirectsAttribute, true);
        QT_WARNING_POP
        adjusted.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                              QNetworkRequest::NoLessSafeRedirectPolicy);
    }
    return QNetworkAccessManager::createRequest(operation, adjusted, outgoingData);
}

NetworkFailure judgeReply(QNetworkReply::NetworkError error, const QUrl &replyUrl,
                          const QUrl &currentUrl, const QUrl &portalUrl)
{
    NetworkFailure failure;
    if (error == QNetworkReply::NoError || error == QNetworkReply::OperationCanceledError)
        return failure;
    failure.servicesMenu = error == QNetworkReply::ContentNotFoundError &&
                           replyUrl.toString().startsWith(BoxPaths::servicesPageUrl());
    failure.errorPage = error == QNetworkReply::HostNotFoundError ||
                        (replyUrl == currentUrl && portalUrl.isEmpty());
    failure.reported = true;
    return failure;
}
