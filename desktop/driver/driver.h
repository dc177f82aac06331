// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/driver/box.h"
#include "desktop/driver/session.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

/** An answer of the driver. */
struct DriverAnswer
{
    int status = 200;
    QByteArray body;
};

/** What the driver was started with. */
struct DriverOptions
{
    int port = 4444;
    int maxSessions = 32;
    std::chrono::seconds idleTime{600}; ///< Sessions that nobody uses so long end; 0: never.
    QStringList allowedHosts;           ///< Names beside those of this machine.
    QStringList allowedOrigins;         ///< Of pages that may send requests; none otherwise.
    QString failure;                    ///< What is wrong with the command line.
    bool wantsHelp = false;
    bool wantsVersion = false;
};

/** The sessions of this driver, and the commands that begin and end them. Any thread. */
class Driver
{
public:
    Driver(const BoxPrograms &programs, const DriverOptions &options);
    ~Driver();

    /** Ends all sessions; their running commands fail, and no further one begins. */
    void endSessions();

    /** Carries out a request. */
    DriverAnswer handle(const QString &method, const QString &path, const QByteArray &body);

private:
    QJsonValue run(const QString &method, const QString &path, const QByteArray &body);
    QJsonValue newSession(const QJsonObject &parameters);
    QJsonValue status();
    std::shared_ptr<Session> find(const QString &id);
    void remove(const QString &id);
    void endIdleSessions();

    BoxPrograms m_programs;
    DriverOptions m_options;
    std::mutex m_mutex;
    std::condition_variable m_ending;
    QMap<QString, std::shared_ptr<Session>> m_sessions;
    int m_starting = 0;
    bool m_ended = false;
    std::thread m_reaper;
};
