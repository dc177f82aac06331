// SPDX-License-Identifier: Apache-2.0
/*
 * Requests and their answers; what the methods do is in commands.cpp and input_commands.cpp.
 */
#include "desktop/driver/plugin/command_server.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QTimer>
#include <QWebFrame>
#include <QWebView>

#include <cstdlib>

CommandServer::CommandServer(QObject *parent)
    : QObject(parent)
{
    connect(&m_socket, &QLocalSocket::readyRead, this, &CommandServer::readRequests);
    connect(&m_pages, &Pages::consoleMessage, this, [this](const QJsonObject &message) {
        send({{"event", "console"}, {"data", message}});
    });
    connect(&m_prompts, &Prompts::opened, this, &CommandServer::tellOfPrompt);
    connect(&m_socket, &QLocalSocket::disconnected, this, [] { std::_Exit(0); });
}

void CommandServer::connectTo(const QString &socketPath)
{
    m_socket.connectToServer(socketPath);
    if (!m_socket.waitForConnected(5000))
        qFatal("The driver cannot be reached at %s", qPrintable(socketPath));
    // The window is built and the event loop runs when the first requests are read.
    QTimer::singleShot(0, this, [this] { send({{"event", "ready"}}); });
}

void CommandServer::readRequests()
{
    m_input += m_socket.readAll();
    for (int end = m_input.indexOf('\n'); end >= 0; end = m_input.indexOf('\n')) {
        const QByteArray line = m_input.left(end);
        m_input.remove(0, end + 1);
        // Not from here: while a dialog holds the page's script, the socket would tell of nothing
        // more.
        QMetaObject::invokeMethod(
            this, [this, line] { handle(QJsonDocument::fromJson(line).object()); },
            Qt::QueuedConnection);
    }
}

void CommandServer::handle(const QJsonObject &message)
{
    Request request;
    request.id = message.value("id").toInt();
    request.method = message.value("method").toString();
    request.params = message.value("params").toObject();
    request.window = message.value("window").toString();
    const auto method = methods().constFind(request.method);
    if (method == methods().constEnd()) {
        reply(request.id, {{"error", "unknown error"}, {"message", "no method " + request.method}});
        return;
    }
    const QJsonObject refused = refusal(method->needs, request, message);
    if (!refused.isEmpty()) {
        reply(request.id, refused);
        return;
    }
    m_running += request.id;
    const Answer answer = (this->*method->run)(request);
    // A dialog that came up meanwhile has given the answer and taken the request off the list.
    if (m_running.removeOne(request.id) && answer)
        reply(request.id, *answer);
}

QJsonObject CommandServer::refusal(int needs, Request &request, const QJsonObject &message)
{
    if (needs == Nothing)
        return {};
    request.view = m_pages.view(request.window);
    if (!request.view)
        return {{"error", "no such window"}, {"message", "The window is closed."}};
    if (needs & OpenFrame & ~OpenWindow) {
        request.frameName = message.value("frame").toString();
        request.frame = m_pages.frame(request.window, request.frameName);
        if (!request.frame)
            return {{"error", "no such window"}, {"message", "The frame is gone."}};
    }
    const QJsonObject open = m_prompts.open();
    if (!open.isEmpty())
        return {{"error", "blocked"}, {"message", "A dialog is open."}, {"prompt", open}};
    const QString strategy = message.value("strategy").toString();
    if ((needs & Loaded & ~OpenFrame) && strategy != "none" &&
        m_pages.isLoading(request.view, strategy == "eager"))
        return {{"error", "loading"}, {"message", "The page is still loading."}};
    return {};
}

void CommandServer::reply(int id, const QJsonObject &answer)
{
    QJsonObject message = answer;
    message["id"] = id;
    send(message);
}

void CommandServer::send(const QJsonObject &message)
{
    m_socket.write(QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n');
    m_socket.flush();
}

void CommandServer::tellOfPrompt()
{
    // The script that opened the dialog returns only when that is closed.
    for (const int id : std::as_const(m_running))
        reply(id, {{"value", QJsonValue()}, {"prompt", true}});
    m_running.clear();
}
