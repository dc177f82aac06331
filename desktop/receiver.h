// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/console/console_command.h"
#include "desktop/screen/viewport.h"
#include "desktop/watch/portal_probe.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class MediaPlayer;
class ProtocolServer;
class Recordings;

/**
 * Joins the server with what does the work: commands go to the player, requests are answered from
 * the recordings and the machine's storage, and what the player reports becomes events. The three
 * given objects must outlive it.
 */
class Receiver : public QObject
{
    Q_OBJECT

public:
    Receiver(ProtocolServer &server, MediaPlayer &player, Recordings &recordings,
             QObject *parent = nullptr);

    /**
     * The portal that programs are to load, percent-encoded: each hears of it once it is connected,
     * and again when it asks for the previous site or a reboot. Empty: none is announced.
     */
    void setPortal(const QByteArray &url) { m_portal = m_current = url; }

    /** Loads the portal again, in place of what plays and of the receiver's own screen. */
    void reloadPortal();

    /** From now on commands are told and handed on to this instead of being carried out. */
    void handCommandsTo(const std::function<void(int type, const QByteArray &payload)> &other)
    {
        m_other = other;
    }

    /** Goes back from the receiver's own screen to what was there, or to the portal. */
    void leaveNotice();

    /** Carries out one line of the console. */
    void runConsoleCommand(const ConsoleCommand &command);

signals:
    /** Something that a person may want to read, one line or several. */
    void message(const QString &lines);

    /** The console asked for the end. */
    void quitRequested();

    /** The portal moved the video, or nobody is left who did. */
    void viewportChanged(const Viewport &viewport);

    /** The receiver's own screen shows this text; an empty one ends it. */
    void noticeChanged(const QString &text);

    /** The box goes to stand-by, or is on again. */
    void standbyChanged(bool isStandby);

private:
    struct CommandHandler;
    static const CommandHandler commandHandlers[];

    void connectPlayer();
    void connectRecordings();
    void connectProbe();
    void forgetProgram();
    void handleCommand(int type, const QByteArray &payload);
    void setAudioLanguage(int rank, const QByteArray &payload);
    void setSubtitleLanguage(int rank, const QByteArray &payload);
    void announce(const QByteArray &url);
    void setStandby(bool isStandby);
    void showNotice(const QString &text, bool hidesPortal);
    void showApplication(const QString &name);
    void showLoadError();
    void goOnWithoutAll();
    void tellUsb(const QString &failure, Event event);
    void setScreenWidth(int width);
    void setVideoArea(const QRect &area);
    void answer(Command request, int number);
    void answer(Command request, const QString &text);
    void sendConsoleEvent(const ConsoleCommand &command);

    ProtocolServer &m_server;
    MediaPlayer &m_player;
    Recordings &m_recordings;
    Viewport m_viewport;
    PortalProbe m_probe;
    QByteArray m_portal;
    QByteArray m_current; ///< The portal that was announced last.
    std::function<void(int, const QByteArray &)> m_other;
    bool m_isAnnounced = false;
    bool m_isStandby = false;
    bool m_isPortalHidden = false; ///< Behind the receiver's own screen there is no portal.
    bool m_lacksSomething = false; ///< The portal is there, but not all that it asks for.
    QStringList m_audioLanguages = {QString(), QString()};    ///< The first choice, the second.
    QStringList m_subtitleLanguages = {QString(), QString()}; ///< The same.
};
