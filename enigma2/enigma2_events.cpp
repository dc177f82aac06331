// SPDX-License-Identifier: Apache-2.0
/*
 * What comes from the receiver: events become signals, answers wake the request that waits for
 * them. Runs in the reader thread.
 */
#include "enigma2/enigma2.h"
#include "enigma2/private_settings_name.h"
#include "enigma2/struct_codec.h"
#include "platform/environment.h"
#include "platform/log_record.h"

#include <QMutexLocker>
#include <QtGlobal>

#include <algorithm>
#include <array>

namespace {

struct TwoIntegers
{
    std::int32_t first = 0;
    std::int32_t second = 0;
};

/** The first two integers of a payload; bytes that the peer left out read as zero. */
TwoIntegers unpackTwo(std::string_view payload)
{
    std::array<char, 8> bytes = {};
    std::copy_n(payload.begin(), std::min(payload.size(), bytes.size()), bytes.begin());
    TwoIntegers values;
    struct_unpack(bytes.data(), "!II", &values.first, &values.second);
    return values;
}

std::int32_t unpackInteger(std::string_view payload) { return unpackTwo(payload).first; }

std::string_view untilNul(std::string_view payload)
{
    return payload.substr(0, payload.find('\0'));
}

QString utf8Text(std::string_view payload)
{
    const std::string_view text = untilNul(payload);
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

QString latin1Text(std::string_view payload)
{
    const std::string_view text = untilNul(payload);
    return QString::fromLatin1(text.data(), static_cast<int>(text.size()));
}

} // namespace

void Enigma2::HandleMessage(std::int32_t type, std::string_view payload)
{
    switch (static_cast<Event>(type)) {
    case Event::NewPortal:
        if (!payload.empty())
            handleNewPortal(latin1Text(payload));
        break;
    case Event::PlayStart: emit OnPlayStart(); break;
    case Event::PlayEnd: emit OnPlayEnd(); break;
    case Event::PlayProgressive: emit OnPlayProgressive(); break;
    case Event::PlayTimeStatus: {
        const TwoIntegers status = unpackTwo(payload);
        emit OnPlayTStatus(status.first, status.second);
        break;
    }
    case Event::AudioPids:
        handleTrackList(payload, &Enigma2::OnAudioPids, "MsgGetAudioPids: ");
        break;
    case Event::AudioPid: handleTrack(payload, &Enigma2::OnAudioPid, "MsgGetAudioPid: "); break;
    case Event::SubtitlePids:
        handleTrackList(payload, &Enigma2::OnSubPids, "MsgGetSubPids: ");
        break;
    case Event::SubtitlePid: handleTrack(payload, &Enigma2::OnSubPid, "MsgGetSubPid: "); break;
    case Event::StorageInfo: answerText(Command::GetStorageInfo, payload); break;
    case Event::UsbMounted: emit OnUsbMounted(); break;
    case Event::UsbUnmounted: emit OnUsbUmounted(); break;
    case Event::PvrTaskCreated: answerInteger(Command::PvrCreateTask, payload); break;
    case Event::PvrTaskRemoved: answerInteger(Command::PvrRemoveTask, payload); break;
    case Event::PvrEndTimeChanged: answerInteger(Command::PvrChangeEndTime, payload); break;
    case Event::PvrTaskById: answerText(Command::PvrGetTaskById, payload); break;
    case Event::PvrTasksByIds: answerText(Command::PvrGetTasksByIds, payload); break;
    case Event::PvrMaxRecordingCountSet:
        answerInteger(Command::PvrSetMaxRecordingCount, payload);
        break;
    case Event::PvrAllTasks: answerAllTasks(payload); break;
    case Event::PvrRecordingStarted: emit OnPvrRecStarted(unpackInteger(payload)); break;
    case Event::PvrRecordingFinished: emit OnPvrRecFinished(unpackInteger(payload)); break;
    case Event::PvrRecordingError: emit OnPvrRecError(unpackInteger(payload)); break;
    case Event::PowerOff:
        logRecord("got power off msg");
        emit OnPowerOff();
        break;
    case Event::PowerOn:
        logRecord("got power on msg");
        emit OnPowerOn();
        break;
    }
}

void Enigma2::handleNewPortal(const QString &url)
{
    // Set before the signal, so that the new portal finds its own settings.
    if (const auto name = privateSettingsName(url))
        qputenv(Environment::privateSettingPath, name->toLatin1());
    emit OnNewPortal(url);
    logRecord("NewPortal: ", url);
}

void Enigma2::handleTrackList(std::string_view payload, void (Enigma2::*signal)(QString),
                              const char *record)
{
    if (payload.empty())
        return;
    const QString list = utf8Text(payload);
    emit(this->*signal)(list);
    logRecord(record, list);
}

void Enigma2::handleTrack(std::string_view payload, void (Enigma2::*signal)(int),
                          const char *record)
{
    const int pid = unpackInteger(payload);
    emit(this->*signal)(pid);
    logRecord(record, pid);
}

void Enigma2::answerInteger(Command request, std::string_view payload)
{
    QMutexLocker locker(&m_requestMutex);
    m_integerResult = unpackInteger(payload);
    wakeRequest(request);
}

void Enigma2::answerText(Command request, std::string_view payload)
{
    QMutexLocker locker(&m_requestMutex);
    // All requests share the text, and an empty answer leaves the previous one: peers rely on it.
    if (!payload.empty())
        m_stringResult = utf8Text(payload);
    wakeRequest(request);
}

void Enigma2::answerAllTasks(std::string_view payload)
{
    {
        QMutexLocker locker(&m_requestMutex);
        logRecord("MsgPvrGetAllTasks: ", "start", m_awaitedRequest);
    }
    answerText(Command::PvrGetAllTasks, payload);
    logRecord("MsgPvrGetAllTasks: ", "end");
}

void Enigma2::wakeRequest(Command request)
{
    if (m_awaitedRequest != static_cast<std::int32_t>(request))
        return;
    m_awaitedRequest = 0;
    m_replyCondition.wakeAll();
}
