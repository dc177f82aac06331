// SPDX-License-Identifier: Apache-2.0
/*
 * The commands of the receiver link, one slot each, and the eight requests that wait.
 */
#include "enigma2/enigma2.h"
#include "enigma2/struct_codec.h"
#include "platform/log_record.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

std::string_view view(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

QByteArray packInteger(int value)
{
    QByteArray payload(struct_calcsize("!I"), Qt::Uninitialized);
    struct_pack(payload.data(), "!I", value);
    return payload;
}

/** A JSON payload travels as text does: Latin-1, with question marks for other characters. */
QByteArray packJson(const QJsonObject &object)
{
    const QByteArray json = QJsonDocument(object).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(json).toLatin1();
}

/** Lets the reader thread read on while a request waits: the answer may come behind many events. */
class WaitingRequest
{
public:
    explicit WaitingRequest(EventQueue &queue)
        : m_queue(queue)
    {
        m_queue.setRequestWaiting(true);
    }

    ~WaitingRequest() { m_queue.setRequestWaiting(false); }

    WaitingRequest(const WaitingRequest &) = delete;
    WaitingRequest &operator=(const WaitingRequest &) = delete;

private:
    EventQueue &m_queue;
};

} // namespace

QByteArray Enigma2::sendInteger(Command type, int value)
{
    const QByteArray payload = packInteger(value);
    SendMessage(type, view(payload));
    return payload;
}

void Enigma2::MediaPlay(const QString &url)
{
    logRecord("Enigma2 OnPlay: ", url);
    SendString(Command::MediaPlay, url);
}

void Enigma2::MediaStop() { SendMessage(Command::MediaStop); }
void Enigma2::MediaPause() { SendMessage(Command::MediaPause); }
void Enigma2::MediaResume() { SendMessage(Command::MediaResume); }

void Enigma2::MediaSeek(int val) { logRecord("MediaSeek: ", sendInteger(Command::MediaSeek, val)); }

void Enigma2::VolUp() { SendMessage(Command::VolumeUp); }
void Enigma2::VolDown() { SendMessage(Command::VolumeDown); }
void Enigma2::Mute() { SendMessage(Command::Mute); }
void Enigma2::Exit() { SendMessage(Command::Exit); }
void Enigma2::Reboot() { SendMessage(Command::Reboot); }
void Enigma2::Standby() { SendMessage(Command::Standby); }

void Enigma2::VirtualScreen(int val)
{
    logRecord("VirtualScreen: ", val, sendInteger(Command::VirtualScreen, val));
}

void Enigma2::ViewPort(int x, int y, int w, int h)
{
    QByteArray payload(struct_calcsize("!IIII"), Qt::Uninitialized);
    struct_pack(payload.data(), "!IIII", x, y, w, h);
    SendMessage(Command::ViewPort, view(payload));
}

void Enigma2::AudioTrack(int pid)
{
    logRecord("AudioTrack: ", sendInteger(Command::AudioTrack, pid));
}

void Enigma2::SubTrack(int pid)
{
    logRecord("SubTrack: ", sendInteger(Command::SubtitleTrack, pid));
}

void Enigma2::AudioLangs(const QString &pri, const QString &sec)
{
    SendString(Command::AudioPrimaryLanguage, pri);
    SendString(Command::AudioSecondaryLanguage, sec);
}

void Enigma2::SubLangs(const QString &pri, const QString &sec)
{
    SendString(Command::SubtitlePrimaryLanguage, pri);
    SendString(Command::SubtitleSecondaryLanguage, sec);
}

void Enigma2::SubOnOff(bool enable) { sendInteger(Command::SubtitleOnOff, enable ? 1 : 0); }

void Enigma2::SetAspect(int aspect) { sendInteger(Command::SetAspect, aspect); }

void Enigma2::RunApp(const QString &app)
{
    logRecord("Enigma2 RunApp: ", app);
    SendString(Command::RunApp, app);
}

QString Enigma2::GetStorageInfo()
{
    return textRequest(Command::GetStorageInfo, {}, "GetStorageInfo").value_or("[]");
}

int Enigma2::PvrCreateTask(const QString &url, const QString &fileName, const QString &startTime,
                           const QString &endTime)
{
    return integerRequest(Command::PvrCreateTask,
                          {{"url", url},
                           {"fileName", fileName},
                           {"startTime", startTime},
                           {"endTime", endTime}},
                          "PvrCreateTask")
        .value_or(-1);
}

void Enigma2::PvrRemoveTask(int id, int removeType)
{
    integerRequest(Command::PvrRemoveTask, {{"id", id}, {"removeType", removeType}},
                   "PvrRemoveTask");
}

int Enigma2::PvrChangeEndTime(int id, const QString &endTime)
{
    return integerRequest(Command::PvrChangeEndTime, {{"id", id}, {"endTime", endTime}},
                          "PvrChangeEndTime")
        .value_or(-1);
}

QString Enigma2::PvrGetTaskByID(int id)
{
    return textRequest(Command::PvrGetTaskById, packJson({{"id", id}}), "PvrGetTaskByID")
        .value_or("{}");
}

QString Enigma2::PvrGetTasksByIDs(const QString &idList)
{
    return textRequest(Command::PvrGetTasksByIds, packJson({{"idList", idList}}),
                       "PvrGetTasksByIDs")
        .value_or("[]");
}

void Enigma2::PvrSetMaxRecordingCnt(int maxCnt)
{
    integerRequest(Command::PvrSetMaxRecordingCount, {{"maxCnt", maxCnt}}, "PvrSetMaxRecordingCnt");
}

QString Enigma2::PvrGetAllTasks()
{
    return textRequest(Command::PvrGetAllTasks, {}, "PvrGetAllTasks").value_or("[]");
}

std::optional<int> Enigma2::integerRequest(Command type, const QJsonObject &payload,
                                           const char *name)
{
    const WaitingRequest waiting(m_events);
    const auto send = [&] { SendMessage(type, view(packJson(payload))); };
    const auto answer = m_answers.awaitInteger(type, send, m_replyTimeout);
    if (!answer)
        logRecord(name, "timeout");
    return answer;
}

std::optional<QString> Enigma2::textRequest(Command type, const QByteArray &payload,
                                            const char *name)
{
    const WaitingRequest waiting(m_events);
    const auto send = [&] { SendMessage(type, view(payload)); };
    const auto answer = m_answers.awaitText(type, send, m_replyTimeout);
    if (!answer)
        logRecord(name, "timeout");
    return answer;
}
