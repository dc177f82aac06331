// SPDX-License-Identifier: Apache-2.0
#include "enigma2/enigma2.h"

#include "enigma2/enigma2_thread.h"
#include "enigma2/frame.h"
#include "platform/log_record.h"

namespace {

std::size_t waitingBytes(const QLocalSocket &socket)
{
    return static_cast<std::size_t>(socket.bytesToWrite());
}

} // namespace

Enigma2::Enigma2(QObject *parent)
    : QObject(parent)
    , m_sendSocket(new QLocalSocket(this))
    , m_events([this] {
        QMetaObject::invokeMethod(this, &Enigma2::deliverEvents, Qt::QueuedConnection);
    })
    , m_thread(std::make_unique<Enigma2Thread>(m_events, m_answers))
{
    m_nextSlice.setSingleShot(true);
    connect(&m_nextSlice, &QTimer::timeout, this, &Enigma2::deliverEvents);
    connect(m_sendSocket, &QLocalSocket::connected, this, &Enigma2::onConnected);
    connect(m_sendSocket, &QLocalSocket::errorOccurred, this, &Enigma2::onError);
    connect(m_sendSocket, &QLocalSocket::readyRead, this, &Enigma2::dropReceived);
    connect(m_sendSocket, &QLocalSocket::bytesWritten, this, &Enigma2::noteSent);
}

Enigma2::~Enigma2()
{
    // While the process lives nobody asks the reader to stop; here it must, since it uses the
    // members.
    m_thread->requestInterruption();
    m_events.close();
    m_thread->wait();
}

void Enigma2::ConnectServer(const QString &name)
{
    m_sendSocket->abort();
    m_sendSocket->connectToServer(name, QIODevice::ReadWrite);
    m_thread->setServerName(name);
    m_thread->start(QThread::InheritPriority);
}

void Enigma2::SendMessage(Command type, std::string_view payload)
{
    const auto header = packFrameHeader(static_cast<std::int32_t>(type), payload.size());
    QByteArray frame;
    frame.reserve(static_cast<int>(header.size() + payload.size()));
    frame.append(header.data(), static_cast<int>(header.size()));
    frame.append(payload.data(), static_cast<int>(payload.size()));
    noteSent();
    switch (
        m_sendLimit.offer(waitingBytes(*m_sendSocket), static_cast<std::size_t>(frame.size()))) {
    case SendLimit::Verdict::Send: break;
    case SendLimit::Verdict::FirstDrop:
        logRecord("Enigma2 drops commands, the receiver does not read");
        return;
    case SendLimit::Verdict::Drop: return;
    }
    m_sendSocket->write(frame);
    m_sendSocket->flush();
}

void Enigma2::SendString(Command type, const QString &text)
{
    const QByteArray bytes = text.toLatin1();
    SendMessage(type, {bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

void Enigma2::dropReceived()
{
    // Nothing is to come here, and what comes would be kept for ever.
    m_sendSocket->readAll();
}

void Enigma2::noteSent()
{
    if (const std::size_t dropped = m_sendLimit.endDropping(waitingBytes(*m_sendSocket)))
        logRecord("Enigma2 sends again, dropped commands:", static_cast<qint64>(dropped));
}

void Enigma2::onConnected()
{
    logRecord("Enigma2 onConnected");
    VirtualScreen(initialScreenWidth);
}

void Enigma2::onDisConnected() { logRecord("Enigma2 onDisConnected"); }

void Enigma2::onError(QLocalSocket::LocalSocketError error)
{
    logRecord("Enigma2 onError: ", static_cast<int>(error));
}

void Enigma2::onStateChanged() {}
