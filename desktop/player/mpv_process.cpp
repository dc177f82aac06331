// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/mpv_process.h"

#include <QJsonDocument>

#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int startPatienceMs = 5000;
constexpr int endPatienceMs = 1000;

QStringList withConnection(const QStringList &arguments, int descriptor)
{
    return arguments + QStringList(QString("--input-ipc-client=fd://%1").arg(descriptor));
}

} // namespace

MpvProcess::MpvProcess(const QString &program, const QStringList &arguments, QObject *parent)
    : MpvChannel(parent)
    , m_program(program)
    , m_arguments(arguments)
{
}

MpvProcess::~MpvProcess() { MpvProcess::kill(); }

bool MpvProcess::start(QString *failure)
{
    if (isRunning())
        return true;
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        *failure = "no socket pair could be made";
        return false;
    }
    m_process = std::make_unique<ChildProcess>();
    m_process->setStandardOutputFile(QProcess::nullDevice());
    m_process->setStandardErrorFile(QProcess::nullDevice());
    m_process->inherit(ends[1]);
    m_process->start(m_program, withConnection(m_arguments, ends[1]));
    const bool started = m_process->waitForStarted(startPatienceMs);
    ::close(ends[1]);
    if (!started) {
        *failure = QString("%1 could not be started: %2").arg(m_program, m_process->errorString());
        ::close(ends[0]);
        forget();
        return false;
    }
    m_socket = std::make_unique<QLocalSocket>();
    m_socket->setSocketDescriptor(ends[0]);
    connect(m_socket.get(), &QLocalSocket::readyRead, this, &MpvProcess::readLines);
    connect(m_process.get(), qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            [this] {
                forget();
                emit exited();
            });
    return true;
}

void MpvProcess::kill()
{
    if (!m_process)
        return;
    m_process->disconnect(this);
    m_socket.reset(); // The end of the connection ends mpv.
    if (!m_process->waitForFinished(endPatienceMs)) {
        m_process->kill();
        m_process->waitForFinished(endPatienceMs);
    }
    forget();
}

void MpvProcess::command(const QJsonArray &words, const Reply &reply)
{
    if (!isRunning())
        return;
    QJsonObject request = {{"command", words}};
    request["request_id"] = ++m_lastRequest;
    if (reply)
        m_replies.insert(m_lastRequest, reply);
    m_socket->write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
    m_socket->flush();
}

void MpvProcess::readLines()
{
    // What handles a line may end mpv, and with it the socket.
    while (m_socket && m_socket->canReadLine())
        handle(QJsonDocument::fromJson(m_socket->readLine()).object());
}

void MpvProcess::handle(const QJsonObject &object)
{
    if (object.contains("event"))
        emit eventReceived(object);
    else if (const Reply reply = m_replies.take(object["request_id"].toInt()))
        reply(object);
}

void MpvProcess::forget()
{
    m_replies.clear();
    // This may run inside a signal of either of them.
    if (m_socket)
        m_socket.release()->deleteLater();
    if (m_process)
        m_process.release()->deleteLater();
}
