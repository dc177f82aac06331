// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "enigma2/frame.h"
#include "enigma2/messages.h"

#include <QByteArray>
#include <QLocalSocket>
#include <QMutex>
#include <QObject>
#include <QString>
#include <QWaitCondition>

#include <memory>
#include <string_view>

class Enigma2Thread;
class QIODevice;
class QJsonObject;

/**
 * Client of the receiver process: one slot per command, one signal per event. Commands leave on a
 * socket of the GUI thread; a reader thread owns a second socket and emits the signals, so that
 * receivers in the GUI thread get them queued.
 *
 * Eight requests wait for their answer and block the GUI thread for at most the reply timeout;
 * unanswered they return their default. Commands sent while unconnected are lost; nothing
 * reconnects.
 */
class Enigma2 : public QObject
{
    Q_OBJECT

public:
    explicit Enigma2(QObject *parent = nullptr);

    /** Ends the reader thread before the members that it uses go. */
    ~Enigma2() override;

    /** Connects both sockets to the local server of this name (a path). Call it once. */
    void ConnectServer(const QString &name);

    /** Sends one frame with a single write. GUI thread. */
    void SendMessage(Command type, std::string_view payload = {});

    /** Sends the Latin-1 bytes of a text; other characters leave as question marks. */
    void SendString(Command type, const QString &text);

    /** Takes all that can be read from the receive socket and handles it. Reader thread. */
    void ReadMessages(QIODevice &socket);

    /** Handles one message. A payload that is too short reads as zeros. Reader thread. */
    void HandleMessage(std::int32_t type, std::string_view payload);

    /** How long a request waits for its answer, in ms; 3000 unless set. */
    void setReplyTimeout(int milliseconds) { m_replyTimeout = milliseconds; }

signals:
    void OnNewPortal(QString url);
    void OnPlayStart();
    void OnPlayEnd();
    void OnPlayProgressive();
    void OnPlayTStatus(int total, int pos);
    void OnAudioPids(QString list);
    void OnSubPids(QString list);
    void OnAudioPid(int pid);
    void OnSubPid(int pid);
    void OnUsbMounted();
    void OnUsbUmounted();
    void OnPvrRecStarted(int rec_id);
    void OnPvrRecFinished(int rec_id);
    void OnPvrRecError(int rec_id);
    void OnPowerOff();
    void OnPowerOn();

public slots:
    void MediaPlay(const QString &url);
    void MediaStop();
    void MediaPause();
    void MediaResume();
    void MediaSeek(int val);
    void VolUp();
    void VolDown();
    void Mute();
    void Exit();
    void Reboot();
    void Standby();
    void VirtualScreen(int val);
    void ViewPort(int x, int y, int w, int h);
    void AudioTrack(int pid);
    void SubTrack(int pid);
    void AudioLangs(const QString &pri, const QString &sec);
    void SubLangs(const QString &pri, const QString &sec);
    void SubOnOff(bool enable);
    QString GetStorageInfo();
    void SetAspect(int aspect);
    int PvrCreateTask(const QString &url, const QString &fileName, const QString &startTime,
                      const QString &endTime);
    void PvrRemoveTask(int id, int removeType);
    int PvrChangeEndTime(int id, const QString &endTime);
    QString PvrGetTaskByID(int id);
    QString PvrGetTasksByIDs(const QString &idList);
    void PvrSetMaxRecordingCnt(int maxCnt);
    QString PvrGetAllTasks();
    void RunApp(const QString &app);

private slots:
    void onConnected();
    void onDisConnected();
    void onError(QLocalSocket::LocalSocketError error);
    void onStateChanged();

private:
    QByteArray sendInteger(Command type, int value);

    /**
     * Sends a request and waits for its answer; false when it timed out. The request mutex is
     * held by the caller, so an answer cannot slip by between sending and waiting.
     */
    bool requestLocked(Command type, const QByteArray &payload, const char *name);
    void voidRequest(Command type, const QJsonObject &payload, const char *name);
    int integerRequest(Command type, const QJsonObject &payload, const char *name);
    QString textRequest(Command type, const QByteArray &payload, const char *name,
                        const QString &unanswered);

    void handleNewPortal(const QString &url);
    void handleTrackList(std::string_view payload, void (Enigma2::*signal)(QString),
                         const char *record);
    void handleTrack(std::string_view payload, void (Enigma2::*signal)(int), const char *record);
    void answerInteger(Command request, std::string_view payload);
    void answerText(Command request, std::string_view payload);
    void answerAllTasks(std::string_view payload);
    void wakeRequest(Command request);

    QLocalSocket *m_sendSocket;
    FrameSplitter m_splitter;
    QMutex m_requestMutex;
    QWaitCondition m_replyCondition;
    QString m_stringResult;
    std::int32_t m_integerResult = 0;
    std::int32_t m_awaitedRequest = 0;
    int m_replyTimeout = 3000;
    std::unique_ptr<Enigma2Thread> m_thread;
};
