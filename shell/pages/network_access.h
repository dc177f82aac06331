// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QNetworkAccessManager>

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
