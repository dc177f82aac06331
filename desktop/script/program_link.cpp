// SPDX-License-Identifier: Apache-2.0
#include "desktop/script/program_link.h"

#include "desktop/link/receiver_socket.h"

#include <QJsonDocument>
#include <QLocalSocket>

#include <utility>

ProgramLink::ProgramLink(QObject *parent)
    : QObject(parent)
{
    connect(&m_server, &QLocalServer::newConnection, this, &ProgramLink::takeProgram);
}

ProgramLink::~ProgramLink()
{
    // The server closes it after our own members are gone.
    if (m_socket)
        m_socket->disconnect(this);
}

QString ProgramLink::listen(const QString &path)
{
    const QString obstacle = prepareSocketPath(path);
    if (!obstacle.isEmpty())
        return obstacle;
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server.listen(path))
        return QString("Cannot serve %1: %2.").arg(path, m_server.errorString());
    return {};
}

void ProgramLink::takeProgram()
{
    QLocalSocket *socket = m_server.nextPendingConnection();
    if (m_socket) {
        socket->deleteLater();
        return;
    }
    m_socket = socket;
    m_input.clear();
    connect(socket, &QLocalSocket::readyRead, this, &ProgramLink::readSome);
    connect(socket, &QLocalSocket::disconnected, this, &ProgramLink::lose);
}

void ProgramLink::readSome()
{
    m_input += m_socket->readAll();
    for (int end = m_input.indexOf('\n'); end >= 0; end = m_input.indexOf('\n')) {
        const QByteArray line = m_input.left(end);
        m_input.remove(0, end + 1);
        take(QJsonDocument::fromJson(line).object());
    }
}

void ProgramLink::take(const QJsonObject &message)
{
    if (message.value("event") == QLatin1String("ready"))
        m_isReady = true;
    else if (message.contains("id") && message.value("id").toInt() == m_lastId && m_answer)
        std::exchange(m_answer, nullptr)(message);
}

void ProgramLink::lose()
{
    m_socket->deleteLater();
    m_socket.clear();
    m_answer = nullptr;
    if (std::exchange(m_isReady, false))
        emit programGone();
}

void ProgramLink::ask(const QString &method, const QString &window, const QJsonObject &parameters,
                      const Answer &answer)
{
    if (!m_isReady)
        return;
    m_answer = answer;
    const QJsonObject request = {
        {"id", ++m_lastId}, {"method", method}, {"window", window}, {"params", parameters}};
    m_socket->write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
    m_socket->flush();
}
