// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/child_process.h"

#include <QByteArray>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QLocalSocket>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

/**
 * A running mpv and the JSON lines that are exchanged with it. They go over a socket pair that
 * exists only in the two processes, so there is no file to protect or to leave behind; mpv ends by
 * itself when our end closes.
 */
class MpvProcess : public QObject
{
    Q_OBJECT

public:
    /** The object of an answer: "error" is "success" or says what went wrong, "data" the result. */
    using Reply = std::function<void(const QJsonObject &answer)>;

    MpvProcess(const QString &program, const QStringList &arguments, QObject *parent = nullptr);

    /** Ends mpv, by force if it does not go within a second. */
    ~MpvProcess() override;

    bool isRunning() const { return m_socket != nullptr; }

    /** Process id of the running mpv, 0 when there is none. */
    qint64 processId() const { return m_process ? m_process->processId() : 0; }

    /** Starts mpv unless it runs; false with a text in failure if that cannot be. */
    bool start(QString *failure);

    /** Ends an mpv that no longer answers; exited() is not emitted. */
    void kill();

    /** Sends a command. Without a running mpv nothing is sent and no answer comes. */
    void command(const QJsonArray &words, const Reply &reply = {});

signals:
    /** An event of mpv; its name is the member "event". */
    void eventReceived(const QJsonObject &event);

    /** mpv has gone without being asked to. */
    void exited();

private:
    void readLines();
    void handle(const QJsonObject &object);
    void forget();

    QString m_program;
    QStringList m_arguments;
    std::unique_ptr<ChildProcess> m_process;
    std::unique_ptr<QLocalSocket> m_socket;
    QHash<int, Reply> m_replies;
    int m_lastRequest = 0;
};
