// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/network_failure.h"

#include "platform/box_paths.h"

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
