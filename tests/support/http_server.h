// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QTcpServer>
#include <QUrl>

/** An HTTP server on a loopback port of its own; answers from a table and keeps the requests. */
class HttpServer
{
public:
    HttpServer();

    QUrl url(const QString &path) const;

    /** Answers a path with a page; any other path is not found. */
    void page(const QByteArray &path, const QByteArray &body);

    /** Answers a path with a redirect to another path. */
    void redirect(const QByteArray &path, const QByteArray &target);

    /** Leaves requests of a path without any answer. */
    void silence(const QByteArray &path);

    /** Heads of all requests so far. */
    QList<QByteArray> requests() const { return m_requests; }

private:
    void answer(QTcpSocket *socket);

    QTcpServer m_server;
    QHash<QByteArray, QByteArray> m_answers;
    QList<QByteArray> m_requests;
};
