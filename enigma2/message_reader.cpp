// SPDX-License-Identifier: Apache-2.0
#include "enigma2/message_reader.h"

#include "enigma2/answer_mailbox.h"
#include "enigma2/event_queue.h"
#include "enigma2/struct_codec.h"
#include "platform/log_record.h"

#include <QLocalSocket>
#include <QThread>

#include <algorithm>
#include <array>

namespace {

// So many bytes in one read are many frames in one write, which the system may have cut anywhere;
// the rest of a cut header is then on its way, if not for so long.
constexpr int burstBytes = 4096;
constexpr int restMilliseconds = 500;

bool isText(PayloadForm form) { return form == PayloadForm::Latin1 || form == PayloadForm::Utf8; }

QString unpackText(PayloadForm form, std::string_view payload)
{
    const std::string_view text = payload.substr(0, payload.find('\0'));
    const int size = static_cast<int>(text.size());
    return form == PayloadForm::Latin1 ? QString::fromLatin1(text.data(), size)
                                       : QString::fromUtf8(text.data(), size);
}

/** Reads the first two integers of a payload; bytes that the peer left out read as zero. */
void unpackIntegers(std::string_view payload, int &first, int &second)
{
    std::array<char, 8> bytes = {};
    std::copy_n(payload.begin(), std::min(payload.size(), bytes.size()), bytes.begin());
    struct_unpack(bytes.data(), "!II", &first, &second);
}

ReceivedEvent unpackEvent(const EventRow &row, std::string_view payload)
{
    ReceivedEvent event = {row.event, 0, 0, {}};
    if (isText(row.form))
        event.text = unpackText(row.form, payload);
    else if (row.form != PayloadForm::Nothing)
        unpackIntegers(payload, event.first, event.second);
    return event;
}

} // namespace

MessageReader::MessageReader(EventQueue &events, AnswerMailbox &answers)
    : m_events(events)
    , m_answers(answers)
    , m_splitter([](std::int32_t type, std::size_t length) {
        logRecord("Enigma2 skips a message of type", type, "with", static_cast<qint64>(length),
                  "bytes");
    })
{
}

void MessageReader::ReadMessages(QLocalSocket &socket)
{
    bool hasRest = feedFrom(socket) >= burstBytes;
    while (!QThread::currentThread()->isInterruptionRequested()) {
        if (hasRest && m_splitter.hasLoneHeaderPiece()) {
            hasRest = socket.waitForReadyRead(restMilliseconds);
            if (hasRest)
                feedFrom(socket);
            continue;
        }
        // A lone piece yields frames without end; nothing more is read then, as peers know it.
        const std::optional<Frame> frame = m_splitter.next();
        if (!frame)
            return;
        HandleMessage(frame->type, frame->payload);
    }
}

int MessageReader::feedFrom(QLocalSocket &socket)
{
    const QByteArray bytes = socket.readAll();
    m_splitter.feed({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    return bytes.size();
}

void MessageReader::HandleMessage(std::int32_t type, std::string_view payload)
{
    if (const EventRow *event = findEvent(type))
        handleEvent(*event, payload);
    else if (const AnswerRow *answer = findAnswer(type))
        handleAnswer(*answer, payload);
}

void MessageReader::handleEvent(const EventRow &row, std::string_view payload)
{
    if (isText(row.form) && payload.empty())
        return;
    const ReceivedEvent event = unpackEvent(row, payload);
    switch (row.event) {
    case Event::NewPortal:
        m_events.push(event);
        logRecord("NewPortal: ", event.text);
        break;
    case Event::AudioPids:
        m_events.push(event);
        logRecord("MsgGetAudioPids: ", event.text);
        break;
    case Event::AudioPid:
        m_events.push(event);
        logRecord("MsgGetAudioPid: ", event.first);
        break;
    case Event::SubtitlePids:
        m_events.push(event);
        logRecord("MsgGetSubPids: ", event.text);
        break;
    case Event::SubtitlePid:
        m_events.push(event);
        logRecord("MsgGetSubPid: ", event.first);
        break;
    case Event::PowerOff:
        logRecord("got power off msg");
        m_events.push(event);
        break;
    case Event::PowerOn:
        logRecord("got power on msg");
        m_events.push(event);
        break;
    default: m_events.push(event); break; // Most events leave no record.
    }
}

void MessageReader::handleAnswer(const AnswerRow &row, std::string_view payload)
{
    const bool isRecorded = row.event == Event::PvrAllTasks;
    if (isRecorded)
        logRecord("MsgPvrGetAllTasks: ", "start", m_answers.awaited());
    if (isText(row.form)) {
        m_answers.putText(row.request, payload.empty()
                                           ? std::nullopt
                                           : std::optional(unpackText(row.form, payload)));
    } else {
        int value = 0;
        int unused = 0;
        unpackIntegers(payload, value, unused);
        m_answers.putInteger(row.request, value);
    }
    if (isRecorded)
        logRecord("MsgPvrGetAllTasks: ", "end");
}
