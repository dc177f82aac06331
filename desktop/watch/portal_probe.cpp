// SPDX-License-Identifier: Apache-2.0
#include "desktop/watch/portal_probe.h"

#include <QFileInfo>
#include <QNetworkReply>
#include <QSslError>
#include <QStringList>

namespace {

constexpr int longestAnswerMs = 10000;

/** Whether the beginning of an answer has come, and says that the page is there. */
bool isThere(const QNetworkReply &reply)
{
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return status >= 200 && status < 300;
}

QString reasonOf(const QNetworkReply &reply)
{
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == 0)
        return reply.errorString();
    const auto phrase = reply.attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
    return QString("the server answers %1 %2").arg(status).arg(phrase).trimmed();
}

} // namespace

PortalProbe::PortalProbe(int intervalMs, QObject *parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(intervalMs);
    connect(&m_timer, &QTimer::timeout, this, &PortalProbe::ask);
}

void PortalProbe::start(const QUrl &address)
{
    stop();
    m_address = address;
    m_reason.clear();
    ask();
}

void PortalProbe::stop()
{
    m_timer.stop();
    if (QNetworkReply *reply = m_reply) {
        m_reply = nullptr; // What it tells from here on is nobody's.
        reply->abort();
    }
}

void PortalProbe::ask()
{
    if (m_address.isLocalFile()) {
        const QFileInfo file(m_address.toLocalFile());
        take(!file.exists()       ? "there is no such file"
             : !file.isReadable() ? "the file may not be read"
                                  : QString());
    } else if (m_address.scheme().startsWith("http")) {
        askServer();
    }
}

void PortalProbe::askServer()
{
    QNetworkRequest request(m_address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setTransferTimeout(longestAnswerMs);
    m_sslError.clear();
    m_reply = m_network.get(request);
    QNetworkReply *reply = m_reply;
    connect(reply, &QNetworkReply::sslErrors, this, [this](const QList<QSslError> &errors) {
        QStringList texts;
        for (const QSslError &error : errors)
            texts += error.errorString();
        m_sslError = texts.join(' ');
    });
    connect(reply, &QNetworkReply::metaDataChanged, this, [this, reply] {
        if (reply == m_reply && isThere(*reply))
            judge(reply);
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        if (reply == m_reply)
            judge(reply);
        reply->deleteLater();
    });
}

void PortalProbe::judge(QNetworkReply *reply)
{
    m_reply = nullptr;
    const QString reason = isThere(*reply) ? QString() : reasonOf(*reply);
    reply->abort();
    take(m_sslError.isEmpty() || reason.isEmpty() ? reason : m_sslError);
}

void PortalProbe::take(const QString &reason)
{
    const QString before = m_reason;
    if (reason.isEmpty()) {
        emit answered(!before.isEmpty());
        return;
    }
    m_reason = reason;
    m_timer.start();
    if (reason != before)
        emit failed(reason);
}
