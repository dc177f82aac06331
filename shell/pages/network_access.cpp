// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/network_access.h"

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
