// SPDX-License-Identifier: Apache-2.0
// Every message that a receiver can send, with any payload, comes out as the events that it was
// sent as, in order; through its socket as well, however much of it a read brings.
#include "enigma2/answer_mailbox.h"
#include "enigma2/event_queue.h"
#include "enigma2/message_reader.h"
#include "fuzz/support/input.h"

#include <QCoreApplication>
#include <QLocalSocket>
#include <QVector>

#include <array>
#include <cstdint>
#include <optional>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// As the reader thread knows a burst: what is cut in it goes on in the next read.
constexpr int largestRead = 4096;

// What the system takes at once while nobody reads.
constexpr int mostBytes = 64 * 1024;

bool isText(PayloadForm form) { return form == PayloadForm::Latin1 || form == PayloadForm::Utf8; }

int integerOf(const QByteArray &payload, int index)
{
    std::uint32_t value = 0;
    for (int i = 4 * index; i < 4 * index + 4; ++i)
        value = (value << 8) | (i < payload.size() ? static_cast<std::uint8_t>(payload[i]) : 0U);
    return static_cast<int>(value);
}

/** A socket and its other end. */
class Connection
{
public:
    Connection()
    {
        FUZZ_CHECK(::socketpair(AF_UNIX, SOCK_STREAM, 0, m_ends.data()) == 0);
        m_socket.setReadBufferSize(largestRead);
        FUZZ_CHECK(m_socket.setSocketDescriptor(m_ends[0]));
    }

    QLocalSocket &socket() { return m_socket; }

    void write(const QByteArray &bytes)
    {
        FUZZ_CHECK(::write(m_ends[1], bytes.constData(), static_cast<std::size_t>(bytes.size())) ==
                   bytes.size());
    }

private:
    std::array<int, 2> m_ends = {};
    QLocalSocket m_socket;
};

/** What reads the link, and what a receiver has sent to it. */
class Link
{
public:
    void send(std::int32_t type, const QByteArray &payload)
    {
        const auto header = packFrameHeader(type, static_cast<std::size_t>(payload.size()));
        m_stream.append(header.data(), static_cast<int>(header.size()));
        m_stream.append(payload);
        const EventRow *row = findEvent(type);
        if (row && !(isText(row->form) && payload.isEmpty()))
            m_expected.append({row, payload});
        m_reader.HandleMessage(type,
                               {payload.constData(), static_cast<std::size_t>(payload.size())});
    }

    bool isFull() const { return m_stream.size() >= mostBytes; }

    /** Lets the same come once more, through a socket. */
    void sendThrough(Connection &connection)
    {
        connection.write(m_stream);
        QLocalSocket &socket = connection.socket();
        while (socket.waitForReadyRead(0))
            m_reader.ReadMessages(socket);
    }

    /** Takes all events, which are those that were sent. */
    void take()
    {
        FUZZ_CHECK(m_isAwake == !m_expected.isEmpty());
        for (const Sent &sent : m_expected) {
            const std::optional<ReceivedEvent> event = m_events.take();
            FUZZ_CHECK(event && event->event == sent.row->event);
            check(*event, sent.row->form, sent.payload);
        }
        FUZZ_CHECK(!m_events.take());
        m_isAwake = false;
    }

private:
    struct Sent
    {
        const EventRow *row;
        QByteArray payload;
    };

    static void check(const ReceivedEvent &event, PayloadForm form, const QByteArray &payload)
    {
        const QByteArray text(payload.constData()); // Up to a NUL.
        const bool isInteger = !isText(form) && form != PayloadForm::Nothing;
        FUZZ_CHECK(event.first == (isInteger ? integerOf(payload, 0) : 0));
        FUZZ_CHECK(event.second == (isInteger ? integerOf(payload, 1) : 0));
        if (form == PayloadForm::Latin1)
            FUZZ_CHECK(event.text == QString::fromLatin1(text));
        else
            FUZZ_CHECK(event.text == (isText(form) ? QString::fromUtf8(text) : QString()));
    }

    bool m_isAwake = false;
    EventQueue m_events{[this] {
        FUZZ_CHECK(!m_isAwake);
        m_isAwake = true;
    }};
    AnswerMailbox m_answers;
    MessageReader m_reader{m_events, m_answers};
    QVector<Sent> m_expected;
    QByteArray m_stream;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    static Connection connection;

    Link link;
    Input input(data, size);
    while (!input.atEnd() && !link.isFull()) {
        // The numbers of the link are below 2,000; others are rare enough among these.
        const bool isAnyNumber = input.byte() == 255;
        const std::int32_t number = isAnyNumber ? input.integer() : 1000 + input.byte() * 4;
        const QByteArray payload = input.bytes(input.byte());
        link.send(isAnyNumber ? number : number + input.byte() % 4, payload);
    }
    link.take();
    link.sendThrough(connection);
    link.take();
    return 0;
}
