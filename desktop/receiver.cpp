// SPDX-License-Identifier: Apache-2.0
#include "desktop/receiver.h"

#include "desktop/link/message_text.h"
#include "desktop/link/payload.h"
#include "desktop/link/protocol_server.h"
#include "desktop/player/media_player.h"
#include "desktop/recordings/recording_requests.h"
#include "desktop/recordings/storage_information.h"
#include "desktop/recordings/usb_disks.h"
#include "platform/one_line.h"

#include <QUrl>

#include <utility>

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
    connectProbe();
}

void Receiver::forgetProgram()
{
    // With nobody left to stop it, playback would go on for ever and report to nobody.
    m_player.stop();
    m_isAnnounced = false;
    m_probe.stop();
    setStandby(false);
    showNotice(QString(), false);
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

void Receiver::connectProbe()
{
    connect(&m_probe, &PortalProbe::failed, this, [this](const QString &reason) {
        const QString portal = QString::fromUtf8(m_current);
        m_lacksSomething = false;
        emit message(QString("cannot load %1: %2; it is loaded as soon as it is there")
                         .arg(oneLine(portal), oneLine(reason)));
        showNotice(
            QString("The portal could not be loaded:\n%1\n\n%2\n\nIt is loaded as soon as it "
                    "is there.\nPress a key to try it now.")
                .arg(portal, reason),
            true);
    });
    connect(&m_probe, &PortalProbe::answered, this, [this](bool hadFailed) {
        if (hadFailed)
            announce(m_current);
        else
            goOnWithoutAll();
    });
}

/** What one command does. */
struct Receiver::CommandHandler
{
    Command command;
    void (*handle)(Receiver &receiver, const QByteArray &payload);
};

namespace {

constexpr int volumeStep = 5;     ///< Percent.
constexpr int farthest = 1 << 24; ///< Of a video's edges, px.

QRect areaOf(const QByteArray &payload)
{
    // So far away that nothing is seen, and near enough for the sums that a rectangle makes.
    const auto at = [&payload](int index) {
        return qBound(-farthest, integerAt(payload, index), farthest);
    };
    return {at(0), at(1), at(2), at(3)};
}

template <typename Handlers>
constexpr bool handlesEachOnce(const Handlers &handlers)
{
    for (const CommandRow &row : commandRows) {
        int count = 0;
        for (const auto &handler : handlers)
            count += handler.command == row.command ? 1 : 0;
        if (count != 1)
            return false;
    }
    return true;
}

} // namespace

// clang-format off
constexpr Receiver::CommandHandler Receiver::commandHandlers[] = {
    {Command::MediaPlay,     [](Receiver &r, const QByteArray &p) { r.m_player.play(parsePlayText(commandText(p))); }},
    {Command::MediaStop,     [](Receiver &r, const QByteArray &)  { r.m_player.stop(); }},
    {Command::MediaPause,    [](Receiver &r, const QByteArray &)  { r.m_player.pause(); }},
    {Command::MediaResume,   [](Receiver &r, const QByteArray &)  { r.m_player.resume(); }},
    {Command::MediaSeek,     [](Receiver &r, const QByteArray &p) { r.m_player.seek(integerAt(p, 0)); }},
    {Command::AudioTrack,    [](Receiver &r, const QByteArray &p) { r.m_player.selectAudioTrack(integerAt(p, 0)); }},
    {Command::SubtitleTrack, [](Receiver &r, const QByteArray &p) { r.m_player.selectSubtitleTrack(integerAt(p, 0)); }},
    {Command::SubtitleOnOff, [](Receiver &r, const QByteArray &p) { r.m_player.showSubtitles(integerAt(p, 0) != 0); }},
    {Command::VolumeUp,      [](Receiver &r, const QByteArray &)  { r.m_player.changeVolume(volumeStep); }},
    {Command::VolumeDown,    [](Receiver &r, const QByteArray &)  { r.m_player.changeVolume(-volumeStep); }},
    {Command::Mute,          [](Receiver &r, const QByteArray &)  { r.m_player.toggleMute(); }},
    {Command::SetAspect,     [](Receiver &r, const QByteArray &p) { r.m_player.setAspect(static_cast<Aspect>(integerAt(p, 0))); }},
    {Command::AudioPrimaryLanguage,      [](Receiver &r, const QByteArray &p) { r.setAudioLanguage(0, p); }},
    {Command::AudioSecondaryLanguage,    [](Receiver &r, const QByteArray &p) { r.setAudioLanguage(1, p); }},
    {Command::SubtitlePrimaryLanguage,   [](Receiver &r, const QByteArray &p) { r.setSubtitleLanguage(0, p); }},
    {Command::SubtitleSecondaryLanguage, [](Receiver &r, const QByteArray &p) { r.setSubtitleLanguage(1, p); }},
    {Command::VirtualScreen, [](Receiver &r, const QByteArray &p) { r.setScreenWidth(integerAt(p, 0)); }},
    {Command::ViewPort,      [](Receiver &r, const QByteArray &p) { r.setVideoArea(areaOf(p)); }},
    {Command::GetStorageInfo,   [](Receiver &r, const QByteArray &)  { r.answer(Command::GetStorageInfo, storageInformation()); }},
    {Command::PvrCreateTask,    [](Receiver &r, const QByteArray &p) { r.answer(Command::PvrCreateTask, createRecording(r.m_recordings, p)); }},
    {Command::PvrRemoveTask,    [](Receiver &r, const QByteArray &p) { r.answer(Command::PvrRemoveTask, removeRecording(r.m_recordings, p)); }},
    {Command::PvrChangeEndTime, [](Receiver &r, const QByteArray &p) { r.answer(Command::PvrChangeEndTime, changeRecordingEnd(r.m_recordings, p)); }},
    {Command::PvrGetTaskById,   [](Receiver &r, const QByteArray &p) { r.answer(Command::PvrGetTaskById, recordingById(r.m_recordings, p)); }},
    {Command::PvrGetTasksByIds, [](Receiver &r, const QByteArray &p) { r.answer(Command::PvrGetTasksByIds, recordingsByIds(r.m_recordings, p)); }},
    {Command::PvrSetMaxRecordingCount, [](Receiver &r, const QByteArray &p) { r.answer(Command::PvrSetMaxRecordingCount, setMostRecordings(r.m_recordings, p)); }},
    {Command::PvrGetAllTasks,   [](Receiver &r, const QByteArray &)  { r.answer(Command::PvrGetAllTasks, allRecordings(r.m_recordings)); }},
    {Command::Reboot,  [](Receiver &r, const QByteArray &) { r.announce(r.m_portal); }},
    {Command::Standby, [](Receiver &r, const QByteArray &) { r.m_server.send(r.m_isStandby ? Event::PowerOn : Event::PowerOff); r.setStandby(!r.m_isStandby); }},
    {Command::RunApp,  [](Receiver &r, const QByteArray &p) { r.showApplication(commandText(p)); }},
    {Command::Exit,    [](Receiver &r, const QByteArray &)  { r.showNotice("The portal was left.\n\nPress a key to go back to it.", true); }},
};
// clang-format on

void Receiver::handleCommand(int type, const QByteArray &payload)
{
    static_assert(handlesEachOnce(commandHandlers), "each command needs one handler");
    emit message(describeCommand(type, payload));
    if (m_other) {
        m_other(type, payload);
        return;
    }
    for (const CommandHandler &handler : commandHandlers) {
        if (static_cast<int>(handler.command) == type)
            handler.handle(*this, payload);
    }
}

void Receiver::setAudioLanguage(int rank, const QByteArray &payload)
{
    m_audioLanguages[rank] = commandText(payload);
    m_player.setAudioLanguages(m_audioLanguages);
}

void Receiver::setSubtitleLanguage(int rank, const QByteArray &payload)
{
    m_subtitleLanguages[rank] = commandText(payload);
    m_player.setSubtitleLanguages(m_subtitleLanguages);
}

void Receiver::announce(const QByteArray &url)
{
    if (url.isEmpty())
        return;
    m_current = url;
    m_isAnnounced = true;
    m_lacksSomething = false;
    m_probe.stop();
    showNotice(QString(), false);
    m_server.send(Event::NewPortal, url);
}

void Receiver::reloadPortal()
{
    if (m_current.isEmpty()) {
        emit message("there is no portal to load again");
        return;
    }
    m_player.stop();
    announce(m_current);
}

void Receiver::setStandby(bool isStandby)
{
    if (std::exchange(m_isStandby, isStandby) == isStandby)
        return;
    m_player.setSilent(isStandby);
    emit standbyChanged(isStandby);
}

void Receiver::showNotice(const QString &text, bool hidesPortal)
{
    m_isPortalHidden = hidesPortal;
    emit noticeChanged(text);
}

void Receiver::showApplication(const QString &name)
{
    if (name == "show load page error")
        showLoadError();
    else
        showNotice(QString("A box would show \"%1\" here.\n\nPress a key to go back.").arg(name),
                   false);
}

void Receiver::showLoadError()
{
    if (m_current.isEmpty()) {
        showNotice("The page, or something that it asks for, could not be loaded.\n\n"
                   "Press a key to go back.",
                   false);
        return;
    }
    // Whoever has gone on once is not stopped for each picture that is missing.
    if (!m_lacksSomething)
        showNotice("The portal, or something that it asks for, could not be loaded:\n" +
                       QString::fromUtf8(m_current) + "\n\nPress a key to try it again.",
                   true);
    m_probe.start(QUrl::fromEncoded(m_current));
}

void Receiver::goOnWithoutAll()
{
    if (std::exchange(m_lacksSomething, true))
        return;
    emit message("cannot load something that the portal asks for; the portal is there");
    // Loading it again would lead here again, and nobody would ever see the portal.
    if (m_isPortalHidden)
        showNotice("Something that the portal asks for could not be loaded; the terminal tells "
                   "what.\n\nPress a key to go on without it; if nothing is there then, press "
                   "Back.",
                   false);
}

void Receiver::leaveNotice()
{
    if (m_isPortalHidden)
        announce(m_current);
    else
        showNotice(QString(), false);
}

void Receiver::setScreenWidth(int width)
{
    // This is the first that a program says, at every connection.
    if (!m_isAnnounced)
        announce(m_portal);
    m_viewport.screenWidth = width;
    emit viewportChanged(m_viewport);
}

void Receiver::setVideoArea(const QRect &area)
{
    m_viewport.area = area;
    emit viewportChanged(m_viewport);
}

void Receiver::answer(Command request, int number)
{
    m_server.send(findAnswerTo(request)->event, integerPayload(number));
}

void Receiver::answer(Command request, const QString &text)
{
    m_server.send(findAnswerTo(request)->event, text.toUtf8());
}

void Receiver::runConsoleCommand(const ConsoleCommand &command)
{
    switch (command.action) {
    case ConsoleCommand::Action::Nothing: break;
    case ConsoleCommand::Action::Help: emit message(consoleHelp()); break;
    case ConsoleCommand::Action::Quit: emit quitRequested(); break;
    case ConsoleCommand::Action::Explain: emit message(command.text); break;
    case ConsoleCommand::Action::SendEvent: sendConsoleEvent(command); break;
    case ConsoleCommand::Action::Reload: reloadPortal(); break;
    case ConsoleCommand::Action::MountUsb:
        tellUsb(mountUsbDisk(command.text), Event::UsbMounted);
        break;
    case ConsoleCommand::Action::UnmountUsb:
        tellUsb(unmountUsbDisk(command.text), Event::UsbUnmounted);
        break;
    case ConsoleCommand::Action::Silence: m_server.beSilent(command.ms); break;
    case ConsoleCommand::Action::Slow: m_server.setDelay(command.ms); break;
    case ConsoleCommand::Action::Leave: m_server.leave(); break;
    }
}

void Receiver::tellUsb(const QString &failure, Event event)
{
    if (failure.isEmpty())
        m_server.send(event);
    else
        emit message(failure);
}

void Receiver::sendConsoleEvent(const ConsoleCommand &command)
{
    switch (command.event) {
    case Event::PowerOff: setStandby(true); break;
    case Event::PowerOn: setStandby(false); break;
    case Event::NewPortal: announce(command.payload); return;
    case Event::PvrRecordingStarted:
        m_recordings.setState(integerAt(command.payload, 0), RecordingState::Recording);
        break;
    case Event::PvrRecordingFinished:
        m_recordings.setState(integerAt(command.payload, 0), RecordingState::Finished);
        break;
    case Event::PvrRecordingError:
        m_recordings.setState(integerAt(command.payload, 0), RecordingState::Failed);
        break;
    default: break;
    }
    m_server.send(command.event, command.payload);
}
