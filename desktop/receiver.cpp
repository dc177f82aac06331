// SPDX-License-Identifier: Apache-2.0
#include "desktop/receiver.h"

#include "desktop/link/command_text.h"
#include "desktop/link/payload.h"
#include "desktop/link/protocol_server.h"
#include "desktop/player/media_player.h"
#include "desktop/recordings/recording_requests.h"
#include "desktop/recordings/storage_information.h"

Receiver::Receiver(ProtocolServer &server, MediaPlayer &player, Recordings &recordings,
                   QObject *parent)
    : QObject(parent)
    , m_server(server)
    , m_player(player)
    , m_recordings(recordings)
{
    connect(&m_server, &ProtocolServer::commandReceived, this, &Receiver::handleCommand);
    connect(&m_server, &ProtocolServer::message, this, &Receiver::message);
    connect(&m_server, &ProtocolServer::lastPeerLeft, this, &Receiver::forgetProgram);
    connectPlayer();
    connectRecordings();
}

void Receiver::forgetProgram()
{
    // With nobody left to stop it, playback would go on for ever and report to nobody.
    m_player.stop();
    m_viewport = {};
    emit viewportChanged(m_viewport);
}

void Receiver::connectPlayer()
{
    const auto sendText = [this](Event event) {
        return [this, event](const QString &text) { m_server.send(event, text.toUtf8()); };
    };
    const auto sendNumber = [this](Event event) {
        return [this, event](int number) { m_server.send(event, integerPayload(number)); };
    };
    connect(&m_player, &MediaPlayer::started, this, [this] { m_server.send(Event::PlayStart); });
    connect(&m_player, &MediaPlayer::ended, this, [this] { m_server.send(Event::PlayEnd); });
    connect(&m_player, &MediaPlayer::progress, this, [this](int totalMs, int positionMs) {
        m_server.send(Event::PlayTimeStatus, integerPayload(totalMs, positionMs));
    });
    connect(&m_player, &MediaPlayer::audioTracksChanged, this, sendText(Event::AudioPids));
    connect(&m_player, &MediaPlayer::subtitleTracksChanged, this, sendText(Event::SubtitlePids));
    connect(&m_player, &MediaPlayer::audioTrackChanged, this, sendNumber(Event::AudioPid));
    connect(&m_player, &MediaPlayer::subtitleTrackChanged, this, sendNumber(Event::SubtitlePid));
    connect(&m_player, &MediaPlayer::message, this, &Receiver::message);
}

void Receiver::connectRecordings()
{
    const auto sendId = [this](Event event) {
        return [this, event](int id) { m_server.send(event, integerPayload(id)); };
    };
    connect(&m_recordings, &Recordings::started, this, sendId(Event::PvrRecordingStarted));
    connect(&m_recordings, &Recordings::finished, this, sendId(Event::PvrRecordingFinished));
    connect(&m_recordings, &Recordings::failed, this, sendId(Event::PvrRecordingError));
    connect(&m_recordings, &Recordings::message, this, &Receiver::message);
}

void Receiver::handleCommand(int type, const QByteArray &payload)
{
    emit message(describeCommand(type, payload));
    controlPlayer(type, payload);
    adjustPlayer(type, payload);
    adjustScreen(type, payload);
    answerRequest(type, payload);
}

void Receiver::controlPlayer(int type, const QByteArray &payload)
{
    switch (static_cast<Command>(type)) {
    case Command::MediaPlay: m_player.play(parsePlayText(commandText(payload))); break;
    case Command::MediaStop: m_player.stop(); break;
    case Command::MediaPause: m_player.pause(); break;
    case Command::MediaResume: m_player.resume(); break;
    case Command::MediaSeek: m_player.seek(integerAt(payload, 0)); break;
    case Command::AudioTrack: m_player.selectAudioTrack(integerAt(payload, 0)); break;
    case Command::SubtitleTrack: m_player.selectSubtitleTrack(integerAt(payload, 0)); break;
    default: break;
    }
}

void Receiver::adjustPlayer(int type, const QByteArray &payload)
{
    constexpr int volumeStep = 5;
    const auto setLanguage = [&payload](QStringList &languages, int rank) {
        languages[rank] = commandText(payload);
        return languages;
    };
    switch (static_cast<Command>(type)) {
    case Command::AudioPrimaryLanguage:
        m_player.setAudioLanguages(setLanguage(m_audioLanguages, 0));
        break;
    case Command::AudioSecondaryLanguage:
        m_player.setAudioLanguages(setLanguage(m_audioLanguages, 1));
        break;
    case Command::SubtitlePrimaryLanguage:
        m_player.setSubtitleLanguages(setLanguage(m_subtitleLanguages, 0));
        break;
    case Command::SubtitleSecondaryLanguage:
        m_player.setSubtitleLanguages(setLanguage(m_subtitleLanguages, 1));
        break;
    case Command::SubtitleOnOff: m_player.showSubtitles(integerAt(payload, 0) != 0); break;
    case Command::VolumeUp: m_player.changeVolume(volumeStep); break;
    case Command::VolumeDown: m_player.changeVolume(-volumeStep); break;
    case Command::Mute: m_player.toggleMute(); break;
    default: break;
    }
}

void Receiver::adjustScreen(int type, const QByteArray &payload)
{
    switch (static_cast<Command>(type)) {
    case Command::VirtualScreen: m_viewport.screenWidth = integerAt(payload, 0); break;
    case Command::ViewPort:
        m_viewport.area = QRect(integerAt(payload, 0), integerAt(payload, 1), integerAt(payload, 2),
                                integerAt(payload, 3));
        break;
    case Command::SetAspect: m_player.setAspect(static_cast<Aspect>(integerAt(payload, 0))); return;
    default: return;
    }
    emit viewportChanged(m_viewport);
}

void Receiver::answerRequest(int type, const QByteArray &payload)
{
    const auto answerNumber = [this](Event event, int number) {
        m_server.send(event, integerPayload(number));
    };
    const auto answerText = [this](Event event, const QString &text) {
        m_server.send(event, text.toUtf8());
    };
    switch (static_cast<Command>(type)) {
    case Command::GetStorageInfo: answerText(Event::StorageInfo, storageInformation()); break;
    case Command::PvrCreateTask:
        answerNumber(Event::PvrTaskCreated, createRecording(m_recordings, payload));
        break;
    case Command::PvrRemoveTask:
        answerNumber(Event::PvrTaskRemoved, removeRecording(m_recordings, payload));
        break;
    case Command::PvrChangeEndTime:
        answerNumber(Event::PvrEndTimeChanged, changeRecordingEnd(m_recordings, payload));
        break;
    case Command::PvrGetTaskById:
        answerText(Event::PvrTaskById, recordingById(m_recordings, payload));
        break;
    case Command::PvrGetTasksByIds:
        answerText(Event::PvrTasksByIds, recordingsByIds(m_recordings, payload));
        break;
    case Command::PvrSetMaxRecordingCount:
        answerNumber(Event::PvrMaxRecordingCountSet, setMostRecordings(m_recordings, payload));
        break;
    case Command::PvrGetAllTasks:
        answerText(Event::PvrAllTasks, allRecordings(m_recordings));
        break;
    default: break;
    }
}

void Receiver::runConsoleCommand(const ConsoleCommand &command)
{
    switch (command.action) {
    case ConsoleCommand::Action::Nothing: break;
    case ConsoleCommand::Action::Help: emit message(consoleHelp()); break;
    case ConsoleCommand::Action::Quit: emit quitRequested(); break;
    case ConsoleCommand::Action::Explain: emit message(command.text); break;
    case ConsoleCommand::Action::SendEvent: sendConsoleEvent(command); break;
    }
}

void Receiver::sendConsoleEvent(const ConsoleCommand &command)
{
    switch (command.event) {
    case Event::PvrRecordingStarted:
        m_recordings.setState(command.first, RecordingState::Recording);
        break;
    case Event::PvrRecordingFinished:
        m_recordings.setState(command.first, RecordingState::Finished);
        break;
    case Event::PvrRecordingError:
        m_recordings.setState(command.first, RecordingState::Failed);
        break;
    default: break;
    }
    m_server.send(command.event, eventPayload(command));
}
