// SPDX-License-Identifier: Apache-2.0
#include "tests/support/http_server.h"

#include <QTcpSocket>

HttpServer::HttpServer()
{
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("no loopback port");
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection())
            QObject::connect(socket, &QTcpSocket::readyRead, socket,
                             [this, socket] { answer(socket); });
    });
}

QUrl HttpServer::url(const QString &path) const
{
    return QUrl(QString("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path));
}

void HttpServer::page(const QByteArray &path, const QByteArray &body)
{
    m_answers[path] = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: " +
                      QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
}

void HttpServer::redirect(const QByteArray &path, const QByteArray &target)
{
    m_answers[path] = "HTTP/1.1 302 Found\r\nLocation: " + target +
                      "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
}

void HttpServer::silence(const QByteArray &path) { m_answers[path] = QByteArray(); }

void HttpServer::answer(QTcpSocket *socket)
{
    const QByteArray head = socket->readAll();
    m_requests.append(head);
    const QByteArray path = head.split(' ').value(1);
    if (m_answers.contains(path) && m_answers[path].isEmpty())
        return;
    socket->write(m_answers.value(path, "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n"
                                        "Connection: close\r\n\r\n"));
    socket->disconnectFromHost();
}
