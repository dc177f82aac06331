// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUrl>

/** Network access of the portal page: follows redirects of the portal's own API calls. */
class NAM : public QNetworkAccessManager
{
    Q_OBJECT

public:
    using QNetworkAccessManager::QNetworkAccessManager;

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override;
};

/** The one manager of the process, made before its main function. GUI thread. */
extern NAM sharedNetworkAccess;

/** What the receiver is asked for when a request of the portal page has failed. */
struct NetworkFailure
{
    bool servicesMenu = false; ///< the local services page is missing
    bool errorPage = false;    ///< the portal cannot be reached
    bool reported = false;     ///< the failure is worth a record
};

/**
 * Decides on a finished reply: a host that is not found asks for the error page whatever was
 * requested, any other failure only for the start page before the portal reported itself loaded.
 * Success and cancelled requests ask for nothing.
 */
NetworkFailure judgeReply(QNetworkReply::NetworkError error, const QUrl &replyUrl,
                          const QUrl &currentUrl, const QUrl &portalUrl);
