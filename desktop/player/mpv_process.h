// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/child_process.h"
#include "desktop/player/mpv_channel.h"

#include <QByteArray>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QLocalSocket>
#include <QString>
#include <QStringList>

#include <memory>

/**
 * A running mpv and the JSON lines that are exchanged with it. They go over a socket pair that
 * exists only in the two processes, so there is no file to protect or to leave behind; mpv ends by
 * itself when our end closes.
 */
class MpvProcess : public MpvChannel
{
    Q_OBJECT

public:
    MpvProcess(const QString &program, const QStringList &arguments, QObject *parent = nullptr);

    /** Ends mpv, by force if it does not go within a second. */
    ~MpvProcess() override;

    bool isRunning() const override { return m_socket != nullptr; }
    qint64 processId() const override { return m_process ? m_process->processId() : 0; }
    bool start(QString *failure) override;
    void kill() override;
    void command(const QJsonArray &words, const Reply &reply = {}) override;

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
