// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QNetworkReply>
#include <QUrl>

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
