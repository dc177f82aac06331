// SPDX-License-Identifier: Apache-2.0
#include "tests/desktop/check/faulty_receiver.h"

#include <QtEndian>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr quint32 play = 1000, mute = 1102, seek = 1005, screen = 1200, create = 1903;
constexpr int largest = 64 * 1024;
const QByteArray seven("\0\0\0\7", 4);

QByteArray integer(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray frame(quint32 type, const QByteArray &payload, quint32 magic = 0x3ade68b1)
{
    return integer(magic) + integer(type) + integer(quint32(payload.size())) + payload;
}

} // namespace

FaultyReceiver::FaultyReceiver(const QString &path, Fault fault)
    : m_fault(fault)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.toLocal8Bit().constData(), sizeof address.sun_path);
    m_server = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::bind(m_server, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(m_server, 4) != 0 || ::pipe2(m_wake, O_CLOEXEC) != 0)
        qFatal("cannot listen at %s: %s", qPrintable(path), std::strerror(errno));
    m_thread = std::thread(&FaultyReceiver::serve, this);
}

FaultyReceiver::~FaultyReceiver()
{
    ::close(m_wake[1]);
    m_thread.join();
    ::close(m_wake[0]);
    if (!m_hasEnded)
        ::close(m_server);
}

void FaultyReceiver::serve()
{
    while (!m_hasEnded) {
        std::vector<pollfd> watched = {{m_wake[0], POLLIN, 0}};
        if (m_fault != Fault::Hangs) {
            watched.push_back({m_server, POLLIN, 0});
            for (const auto &[descriptor, peer] : m_peers)
                watched.push_back({descriptor, POLLIN, 0});
        }
        ::poll(watched.data(), watched.size(), m_fault == Fault::SendsRubbish ? 1 : -1);
        if (watched[0].revents != 0)
            break;
        for (const pollfd &one : watched) {
            if (one.revents == 0 || m_hasEnded)
                continue;
            if (one.fd == m_server)
                m_peers[::accept4(m_server, nullptr, nullptr, SOCK_CLOEXEC)] = {};
            else if (!readFrom(one.fd)) {
                ::close(one.fd);
                m_peers.erase(one.fd);
            }
        }
        if (m_fault == Fault::SendsRubbish && listener() >= 0)
            write(listener(), QByteArray("\x1b[2J\xff\0rubbish", 12).repeated(50));
    }
    // First, since whoever sees an end connects again.
    if (m_hasEnded)
        ::close(m_server);
    for (const auto &[descriptor, peer] : m_peers)
        ::close(descriptor);
}

bool FaultyReceiver::readFrom(int descriptor)
{
    Peer &peer = m_peers[descriptor];
    char bytes[4096];
    const ssize_t count = ::recv(descriptor, bytes, sizeof bytes, 0);
    if (count <= 0) {
        m_hasEnded = m_hasEnded || (m_fault == Fault::EndsAtHalfCommand && !peer.input.isEmpty());
        return false;
    }
    peer.isCommander = true;
    peer.input.append(bytes, int(count));
    takeFrames(descriptor, peer);
    return !(m_fault == Fault::ClosesAtLarge && peer.input.size() > largest) && peer.isCommander;
}

void FaultyReceiver::takeFrames(int descriptor, Peer &peer)
{
    int taken = 0;
    while (!m_hasEnded && peer.input.size() >= 12) {
        const auto type = qFromBigEndian<quint32>(peer.input.constData() + 4);
        const auto length = qFromBigEndian<quint32>(peer.input.constData() + 8);
        if (quint32(peer.input.size()) - 12 < length)
            break;
        const QByteArray payload = peer.input.mid(12, int(length));
        peer.input.remove(0, 12 + int(length));
        if (m_fault != Fault::TakesThreeFromRead || ++taken <= 3)
            handle(descriptor, type, payload);
    }
    // A large one comes in many reads, to whatever needs them whole.
    if (m_fault == Fault::NeedsWholeReads && peer.input.size() < 256)
        peer.input.clear();
}

void FaultyReceiver::handle(int descriptor, quint32 type, const QByteArray &payload)
{
    if (type == screen && !(m_fault == Fault::TellsPortalOnce && m_hasToldPortal)) {
        m_hasToldPortal = true;
        // The other connection is made at about the same time.
        while (listener() < 0 && !m_hasEnded)
            m_peers[::accept4(m_server, nullptr, nullptr, SOCK_CLOEXEC)] = {};
        sendEvent(1000, "http://127.0.0.1:1/");
    }
    if (type == play)
        startPlayback();
    if (type == seek && m_fault != Fault::TellsNoPositionAfterSeek)
        sendEvent(1005,
                  integer(60000) +
                      (m_fault == Fault::SeeksNowhere ? seven : payload.leftJustified(4, '\0')));
    if (type == mute && m_fault == Fault::EndsAtMute)
        m_hasEnded = true;
    if (type == mute && m_fault == Fault::SendsOnCommands)
        write(descriptor, frame(1001, {}));
    const bool isKnown = (type >= 1000 && type <= 1003) || type == seek ||
                         (type >= 1012 && type <= 1025) || (type >= 1100 && type <= 1203) ||
                         (type >= 1901 && type <= 1911) || type == 1999;
    if (m_fault == Fault::ClosesAtUnknown && !isKnown)
        m_peers[descriptor].isCommander = false;
    const bool isNonsense = payload.contains("-1") || payload.contains("\"\"");
    if (m_fault == Fault::AnswersNonsenseNot && isNonsense)
        return;
    if (type >= 1902 && type <= 1909)
        answer(type);
}

void FaultyReceiver::startPlayback()
{
    if (m_fault == Fault::SendsShortEvent)
        sendEvent(1011, "\1\2");
    if (m_fault == Fault::SendsUnknownType)
        sendEvent(1004);
    if (m_fault == Fault::SendsTooLarge)
        write(listener(), integer(0x3ade68b1) + integer(1010) + integer(0x7fffffff));
    for (int count = 0; m_fault == Fault::Floods && count < 3000; ++count)
        sendEvent(1005, seven + seven);
    sendEvent(1010, m_fault == Fault::SendsBadTracks ? "{}" : R"([{"lang":"en","pid":1}])");
    if (m_fault != Fault::TellsNoLength)
        sendEvent(1005, integer(60000) + integer(0));
    sendEvent(1001);
}

void FaultyReceiver::answer(quint32 type)
{
    const std::map<quint32, std::pair<quint32, QByteArray>> answers = {
        {1902, {1016, "[]"}},  {create, {1019, seven}}, {1904, {1020, integer(0)}},
        {1905, {1021, seven}}, {1906, {1022, "{}"}},    {1907, {1023, "[]"}},
        {1908, {1024, seven}}, {1909, {1025, "[]"}}};
    auto [number, payload] = answers.at(type);
    if (m_fault == Fault::AnswersNothing && type == 1909)
        return;
    // It takes its time, in which the program may go.
    if (m_fault == Fault::EndsAtClosedListener)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    if (m_fault == Fault::AnswersWithOtherType && type == 1902)
        number = 1025;
    if (m_fault == Fault::AnswersWithTwoBytes && type == create)
        payload = "\1\2";
    if (m_fault == Fault::AnswersWithEmptyText && type == 1906)
        payload = "";
    if (m_fault == Fault::AnswersWithBrokenJson && type == 1907)
        payload = "[";
    sendEvent(number, payload);
    if (m_fault == Fault::AnswersTwice && type == 1908)
        sendEvent(number, payload);
}

void FaultyReceiver::sendEvent(quint32 type, const QByteArray &payload)
{
    const QByteArray bytes =
        frame(type, payload, m_fault == Fault::SendsOtherMagic ? 0x12345678 : 0x3ade68b1);
    if (m_fault == Fault::WritesHeaderAlone) {
        write(listener(), bytes.left(12));
        write(listener(), bytes.mid(12));
    } else {
        write(listener(), bytes);
    }
}

void FaultyReceiver::write(int descriptor, const QByteArray &bytes)
{
    if (descriptor < 0 || bytes.isEmpty())
        return;
    const ssize_t count =
        ::send(descriptor, bytes.constData(), std::size_t(bytes.size()), MSG_NOSIGNAL);
    // What a process that is not ready for SIGPIPE does.
    if (count < 0 && m_fault == Fault::EndsAtClosedListener)
        m_hasEnded = true;
}

int FaultyReceiver::listener() const
{
    int found = -1;
    for (const auto &[descriptor, peer] : m_peers) {
        if (!peer.isCommander)
            found = descriptor;
    }
    return found;
}
