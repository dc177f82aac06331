// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QUrl>

class QNetworkReply;

/**
 * Asks an address that could not be loaded, again and again until it answers. Of a page nothing but
 * the beginning is fetched. Addresses that are neither files nor on a web server are not asked.
 */
class PortalProbe : public QObject
{
    Q_OBJECT

public:
    /** Asks every so many ms, the first time at once. */
    explicit PortalProbe(int intervalMs = 1000, QObject *parent = nullptr);

    /** Begins to ask, and forgets the address before. */
    void start(const QUrl &address);

    /** Asks no more. */
    void stop();

signals:
    /** It does not answer, for this reason: the first time, and whenever the reason is another. */
    void failed(const QString &reason);

    /** It answers, and nothing is asked any more; whether it has failed before. */
    void answered(bool hadFailed);

private:
    void ask();
    void askServer();
    void judge(QNetworkReply *reply);
    void take(const QString &reason);

    QNetworkAccessManager m_network;
    QPointer<QNetworkReply> m_reply;
    QTimer m_timer;
    QUrl m_address;
    QString m_reason;   ///< Why it failed the last time.
    QString m_sslError; ///< What is wrong with the certificate.
};
