// SPDX-License-Identifier: Apache-2.0
#include "desktop/traffic/traffic_replay.h"

#include "desktop/link/message_text.h"
#include "desktop/link/payload.h"
#include "enigma2/messages.h"

namespace {

using Direction = TrafficMessage::Direction;

/** So many commands ahead one is looked for that is not the expected one. */
constexpr int lookAhead = 8;

bool isCommand(const TrafficMessage &message) { return message.direction == Direction::ToReceiver; }

const AnswerRow *answerTo(int type)
{
    const CommandRow *row = findCommand(type);
    return row ? findAnswerTo(row->command) : nullptr;
}

QString described(const TrafficMessage &message)
{
    return QString("%1 (line %2)")
        .arg(describeCommand(message.type, message.payload), QString::number(message.line));
}

/** What a program takes for an answer that failed. */
TrafficMessage failedAnswer(const AnswerRow &row)
{
    TrafficMessage message;
    message.direction = Direction::ToProgram;
    message.type = int(row.event);
    message.payload = row.form == PayloadForm::Integer ? integerPayload(-1) : QByteArray("[]");
    if (row.event == Event::PvrTaskById)
        message.payload = "{}";
    return message;
}

bool isPosition(const TrafficMessage &message)
{
    return message.type == int(Event::PlayTimeStatus);
}

} // namespace

TrafficReplay::TrafficReplay(const QVector<TrafficMessage> &messages, qint64 now)
    : m_messages(messages)
{
    schedule(0, now);
}

void TrafficReplay::schedule(qint64 anchor, qint64 now)
{
    while (!isEnd() && !isCommand(m_messages.at(m_next))) {
        const TrafficMessage &message = m_messages.at(m_next++);
        m_scheduled.enqueue({now + message.ms - anchor, message});
    }
    m_hasComplained = false;
    if (!isEnd())
        m_expectedTime = now + m_messages.at(m_next).ms - anchor;
}

TrafficReplay::Step TrafficReplay::take(int type, const QByteArray &payload, qint64 now)
{
    Step step = advance(now);
    const int found = findCommand(type, payload);
    const bool isOfType = !isEnd() && m_messages.at(m_next).type == type;
    if (found < 0 && !isOfType) {
        answerUnexpected(type, payload, step);
        return step;
    }
    skipTo(found, step);
    hurry(step);
    match(payload, now, step);
    return step;
}

int TrafficReplay::findCommand(int type, const QByteArray &payload) const
{
    int seen = 0;
    for (int index = m_next; index < m_messages.size() && seen < lookAhead; ++index) {
        const TrafficMessage &message = m_messages.at(index);
        if (!isCommand(message))
            continue;
        if (message.type == type && message.payload == payload)
            return index;
        ++seen;
    }
    return -1;
}

void TrafficReplay::skipTo(int index, Step &step)
{
    for (; m_next < index; ++m_next) {
        const TrafficMessage &message = m_messages.at(m_next);
        if (isCommand(message))
            step.notes += "not sent by this program: " + described(message);
        else if (!findAnswer(message.type))
            m_scheduled.enqueue({0, message});
    }
}

void TrafficReplay::hurry(Step &step)
{
    // Recorded before the command that is here already; of many positions the last is enough.
    while (!m_scheduled.isEmpty()) {
        const TrafficMessage message = m_scheduled.dequeue().message;
        const bool isOutdated =
            isPosition(message) && !m_scheduled.isEmpty() && isPosition(m_scheduled.head().message);
        if (!isOutdated)
            step.sends += message;
    }
}

void TrafficReplay::match(const QByteArray &payload, qint64 now, Step &step)
{
    const TrafficMessage command = m_messages.at(m_next++);
    if (command.payload != payload)
        step.notes += QString("recorded was: %1").arg(described(command));
    schedule(command.ms, now);
    const AnswerRow *answer = answerTo(command.type);
    if (!answer)
        return;
    for (const Scheduled &scheduled : std::as_const(m_scheduled)) {
        if (scheduled.message.type == int(answer->event))
            return;
    }
    step.notes += "no answer was recorded, none is sent: " + described(command);
}

void TrafficReplay::answerUnexpected(int type, const QByteArray &payload, Step &step)
{
    const QString text = describeCommand(type, payload);
    const QString expected = isEnd() ? QString("nothing more") : described(m_messages.at(m_next));
    step.notes += QString("not in the recording: %1; expected is %2").arg(text, expected);
    const AnswerRow *answer = answerTo(type);
    if (!answer)
        return;
    const TrafficMessage *best = nullptr;
    for (int index = 0; index < m_messages.size(); ++index) {
        const TrafficMessage &message = m_messages.at(index);
        if (isCommand(message) || message.type != int(answer->event))
            continue;
        // The last that was given, otherwise the first that would be.
        if (!best || index < m_next)
            best = &message;
    }
    step.sends += best ? *best : failedAnswer(*answer);
    step.notes += best ? QString("answered as in line %1").arg(best->line)
                       : QString("no such answer was recorded; answered as failed");
}

TrafficReplay::Step TrafficReplay::advance(qint64 now)
{
    Step step;
    while (!m_scheduled.isEmpty() && m_scheduled.head().time <= now)
        step.sends += m_scheduled.dequeue().message;
    if (isEnd() && m_scheduled.isEmpty() && !m_hasEnded) {
        m_hasEnded = true;
        step.notes += "the recording is at its end";
    }
    if (!isEnd() && !m_hasComplained && now >= patience()) {
        m_hasComplained = true;
        step.notes += "waiting for: " + described(m_messages.at(m_next));
    }
    return step;
}

std::optional<qint64> TrafficReplay::nextTime() const
{
    std::optional<qint64> time;
    if (!m_scheduled.isEmpty())
        time = m_scheduled.head().time;
    else if (isEnd() && !m_hasEnded)
        time = 0;
    if (!isEnd() && !m_hasComplained && (!time || patience() < *time))
        time = patience();
    return time;
}
