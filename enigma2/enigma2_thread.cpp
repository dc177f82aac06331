// SPDX-License-Identifier: Apache-2.0
#include "enigma2/enigma2_thread.h"

#include "enigma2/message_reader.h"
#include "platform/log_record.h"

namespace {

constexpr int pollMilliseconds = 20;

} // namespace

Enigma2Thread::Enigma2Thread(EventQueue &events, AnswerMailbox &answers)
    : m_events(events)
    , m_answers(answers)
{
}

void Enigma2Thread::run()
{
    QLocalSocket socket;
    MessageReader reader(m_events, m_answers);
    connect(&socket, &QLocalSocket::connected, this, &Enigma2Thread::onConnected);
    socket.abort();
    socket.connectToServer(m_serverName, QIODevice::ReadWrite);
    logRecord("当前线程ID:", QThread::currentThreadId());
    logRecord("开始执行");
    while (!isInterruptionRequested()) {
        // Where the server is too busy to accept, only an event loop or this tries again.
        if (socket.state() == QLocalSocket::ConnectingState)
            socket.waitForConnected(0);
        if (socket.state() == QLocalSocket::ConnectedState &&
            socket.waitForReadyRead(pollMilliseconds))
            reader.ReadMessages(socket);
        else if (socket.state() != QLocalSocket::ConnectedState)
            msleep(pollMilliseconds); // An unconnected socket does not wait; spare the processor.
    }
    logRecord("结束执行");
}

void Enigma2Thread::onConnected() { logRecord("Enigma2Thread onConnected"); }

void Enigma2Thread::onError(QLocalSocket::LocalSocketError error)
{
    logRecord("Enigma2Thread onError: ", static_cast<int>(error));
}
