// SPDX-License-Identifier: Apache-2.0
#include "platform/trusted_certificates.h"

#include "platform/environment.h"

#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>

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
