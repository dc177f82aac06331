// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/network.h"

#include "platform/box_paths.h"
#include "platform/environment.h"

#include <QFile>
#include <QNetworkRequest>
#include <QSslCertificate>
#include <QSslConfiguration>
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

void trustCertificates(const QString &name)
{
    QFile file(name);
    const bool isOpen = file.open(QIODevice::ReadOnly);
    const QList<QSslCertificate> own =
        isOpen ? QSslCertificate::fromDevice(&file) : QList<QSslCertificate>();
    if (own.isEmpty()) {
        const QString reason =
            isOpen ? QString("holds no certificate in PEM form") : file.errorString();
        qWarning("%s, %s: %s", Environment::trust, qUtf8Printable(name), qUtf8Printable(reason));
        return;
    }
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    // Named, since authorities that are set replace the system's.
    configuration.setCaCertificates(QSslConfiguration::systemCaCertificates() + own);
    QSslConfiguration::setDefaultConfiguration(configuration);
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
