// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "enigma2/answer_mailbox.h"
#include "enigma2/event_queue.h"
#include "enigma2/messages.h"
#include "enigma2/send_limit.h"

#include <QByteArray>
#include <QLocalSocket>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>
#include <optional>
#include <string_view>

class Enigma2Thread;
class QJsonObject;

/**
 * Client of the receiver process: one slot per command, one signal per event. It lives in the GUI
 * thread. Commands leave on its own socket; a reader thread owns a second one and hands over the
 * events by a queue, which is emptied from the event loop in slices, so that keys and the screen
 * come through however many there are, and the answers by a mailbox.
 *
 * Eight requests wait for their answer and block the GUI thread for at most the reply timeout;
 * unanswered they return their default. Commands sent while unconnected are lost; nothing
 * reconnects.
 */
class Enigma2 : public QObject
{
    Q_OBJECT

public:
    /** Starts no thread and connects to nothing yet. */
    explicit Enigma2(QObject *parent = nullptr);

    /** Ends the reader thread before the members that it uses go. */
    ~Enigma2() override;

    /** Connects both sockets to the local server of this name (a path). Call it once. */
    void ConnectServer(const QString &name);

    /**
     * Sends one frame with a single write. GUI thread. While the receiver does not read, frames
     * that go beyond SendLimit are lost, with one record when that begins and one when it ends.
     */
    void SendMessage(Command type, std::string_view payload = {});

    /** Sends the Latin-1 bytes of a text; other characters leave as question marks. */
    void SendString(Command type, const QString &text);

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
    // Of these, onDisConnected() and onStateChanged() hear of nothing: a lost receiver is silent.
    void onConnected();
    void onDisConnected();
    void onError(QLocalSocket::LocalSocketError error);
    void onStateChanged();

private:
    QByteArray sendInteger(Command type, int value);

    /** Send a request and wait for its answer; nothing, and a record with the name, without one. */
    std::optional<int> integerRequest(Command type, const QJsonObject &payload, const char *name);
    std::optional<QString> textRequest(Command type, const QByteArray &payload, const char *name);

    void dropReceived();
    void noteSent();
    void deliverEvents();
    void raise(const ReceivedEvent &event);

    QLocalSocket *m_sendSocket;
    SendLimit m_sendLimit;
    int m_replyTimeout = 3000;
    QTimer m_nextSlice;
    AnswerMailbox m_answers;
    EventQueue m_events;
    std::unique_ptr<Enigma2Thread> m_thread;
};
