// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/session.h"

#include "desktop/check/payload_fault.h"
#include "desktop/link/payload.h"
#include "enigma2/frame.h"

#include <algorithm>
#include <poll.h>
#include <utility>

namespace {

constexpr int connectMs = 3000;
constexpr int replyMs = 3000; ///< As long as the program waits.
constexpr int sendMs = 3000;
constexpr int lateMs = 50;
constexpr std::size_t mostEvents = 1000;
constexpr int mostInSecond = 1000;
constexpr int mostOthers = 5;

} // namespace

QByteArray commandFrame(int type, const QByteArray &payload)
{
    const auto header = packFrameHeader(type, static_cast<std::size_t>(payload.size()));
    return QByteArray(header.data(), static_cast<int>(header.size())) + payload;
}

Session::Session(QByteArray path, QDeadlineTimer overall, Findings &findings)
    : m_path(std::move(path))
    , m_overall(overall)
    , m_findings(findings)
{
}

Session::~Session()
{
    if (isOpen())
        listen(lateMs);
}

QString Session::open()
{
    const QDeadlineTimer deadline = within(connectMs);
    QString fault = m_commands.open(m_path, deadline);
    if (!fault.isEmpty())
        return "The connection for commands: " + fault;
    m_isReached = true;
    if (!send(Command::VirtualScreen, integerPayload(initialScreenWidth)))
        return "The receiver closes the connection for commands, or does not read it.";
    fault = m_events.open(m_path, deadline);
    return fault.isEmpty() ? fault : "The connection for events: " + fault;
}

bool Session::send(Command command, const QByteArray &payload)
{
    return sendBytes(commandFrame(static_cast<int>(command), payload));
}

bool Session::sendBytes(const QByteArray &bytes) { return m_commands.send(bytes, within(sendMs)); }

Reply Session::request(Command request, const QByteArray &payload)
{
    if (!send(request, payload))
        return {QString("The receiver %1 the connection for commands.")
                    .arg(m_commands.isOpen() ? "does not read" : "has closed"),
                {},
                false};
    return await(request);
}

Reply Session::await(Command request)
{
    const AnswerRow &row = *findAnswerTo(request);
    const QDeadlineTimer deadline = within(replyMs);
    QStringList others;
    do {
        takeInput();
        while (const std::optional<SeenFrame> frame = nextFrame()) {
            if (frame->type != static_cast<int>(row.event)) {
                if (findAnswer(frame->type) && others.size() < mostOthers)
                    others += messageName(frame->type, frame->payload);
                continue;
            }
            for (const QString &other : std::as_const(others))
                m_findings.note(Finding::UnaskedAnswer, other);
            const QString fault = answerFault(row, frame->payload);
            if (fault.isEmpty())
                return {QString(), frame->payload, frame->isTorn()};
            return {QString("The answer %1 %2.").arg(int(row.event)).arg(fault), {}, false};
        }
    } while (isOpen() && waitForInput(deadline));
    if (!others.isEmpty())
        return {QString("Not answered with %1, but with %2.").arg(int(row.event)).arg(others[0]),
                {},
                false};
    if (!isOpen())
        return {"The receiver closed a connection instead of answering.", {}, false};
    return {QString("No answer %1 came within %2 ms.").arg(int(row.event)).arg(replyMs), {}, false};
}

bool Session::listen(int milliseconds, const std::function<bool(Event)> &ends)
{
    const QDeadlineTimer deadline = within(milliseconds);
    do {
        takeInput();
        while (const std::optional<SeenFrame> frame = nextFrame()) {
            if (findAnswer(frame->type))
                m_findings.note(Finding::UnaskedAnswer, messageName(frame->type, frame->payload));
            else if (ends && findEvent(frame->type) && ends(static_cast<Event>(frame->type)))
                return true;
        }
    } while (isOpen() && waitForInput(deadline));
    return false;
}

QDeadlineTimer Session::within(int milliseconds) const
{
    return std::min(QDeadlineTimer(milliseconds), m_overall);
}

bool Session::waitForInput(const QDeadlineTimer &deadline)
{
    pollfd watched[] = {{m_commands.descriptor(), POLLIN, 0}, {m_events.descriptor(), POLLIN, 0}};
    ::poll(watched, 2, static_cast<int>(deadline.remainingTime()));
    return !deadline.hasExpired();
}

void Session::takeInput()
{
    if (const QByteArray bytes = m_commands.read(); !bytes.isEmpty())
        m_findings.note(Finding::OtherConnection,
                        QString("%1 bytes came on the connection for commands, such as %2.")
                            .arg(bytes.size())
                            .arg(QString(bytes.left(16).toHex(' '))));
    const QByteArray bytes = m_readsByWrites ? m_events.readWrite() : m_events.read();
    m_stream.feed(bytes, bytes.size() == Connection::readSize);
}

std::optional<SeenFrame> Session::nextFrame()
{
    std::optional<SeenFrame> frame = m_stream.next();
    if (frame)
        noteFrame(*frame);
    else if (m_stream.tooLarge())
        m_findings.note(Finding::TooLarge,
                        QString("A frame announces %1 bytes.").arg(*m_stream.tooLarge()));
    return frame;
}

void Session::noteFrame(const SeenFrame &frame)
{
    const QString name = messageName(frame.type, frame.payload);
    if (frame.magic != frameMagic)
        m_findings.note(
            Finding::Magic,
            QString("Message %1 has the magic %2.").arg(name, QString::number(frame.magic, 16)));
    // The system may have cut what is read write by write.
    if (frame.isTorn() && !m_readsByWrites)
        m_findings.note(Finding::Pieces, QString("Of message %1 the first %2 bytes came alone.")
                                             .arg(name)
                                             .arg(frame.firstPiece));
    const EventRow *row = findEvent(frame.type);
    if (!row && !findAnswer(frame.type))
        m_findings.note(Finding::UnknownType,
                        QString("A message has the type %1.").arg(frame.type));
    if (const QString fault = row ? eventFault(*row, frame.payload) : QString(); !fault.isEmpty())
        m_findings.note(Finding::EventForm, QString("Event %1 %2.").arg(name, fault));
    if (row && m_seen.size() < mostEvents)
        m_seen.push_back(frame);
    if (m_second.hasExpired()) {
        m_second = QDeadlineTimer(1000);
        m_inSecond = 0;
    }
    if (++m_inSecond == mostInSecond)
        m_findings.note(Finding::Flood,
                        QString("More than %1 messages came in a second.").arg(mostInSecond));
}
