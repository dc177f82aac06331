// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/display/display.h"
#include "desktop/driver/box_records.h"
#include "desktop/driver/capabilities.h"
#include "desktop/driver/process.h"
#include "desktop/driver/profile.h"

#include <QJsonObject>
#include <QSize>
#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

/** Where the programs of a box are. */
struct BoxPrograms
{
    QString driver;        ///< This program, for the keeper.
    QString program;       ///< vesprel
    QString receiver;      ///< vesprel-receiver
    QString plugins;       ///< The folder with generic/libvesprel-driver-plugin.so.
    QString keyboardPages; ///< The pages of the on-screen keyboard.
    QString profiles;      ///< The folder with NAME.env for each model.
    QString clips;         ///< The demo portal's clips; need not be there.
};

/** A point in time after which nobody waits any more; none: for ever. */
using Deadline = std::optional<std::chrono::steady_clock::time_point>;

Deadline deadlineAfter(std::optional<double> milliseconds);

/**
 * A whole box of one session: a folder that is its file system, a display, the receiver and the
 * program. Everything ends with the object. Its functions may be called from any thread, but
 * request() from one at a time.
 */
class Box
{
public:
    /** Starts the box; throws "session not created" with what was missing or went wrong. */
    Box(const BoxPrograms &programs, const SessionRequest &request);
    ~Box();
    Box(const Box &) = delete;
    Box &operator=(const Box &) = delete;

    /**
     * Asks the plugin in the program and waits for the answer. Nothing: no answer came in time.
     * Throws "unknown error" with the log's last lines if the program is gone.
     */
    std::optional<QJsonObject> request(const QJsonObject &message, const Deadline &deadline);

    /**
     * Writes a line to the receiver's console. False if it is gone or does not read before the
     * deadline; half a line then closes the console.
     */
    bool tellReceiver(const QString &line, const Deadline &deadline);

    /** Whether the program has ended. */
    bool isGone() const { return m_gone; }

    /** Lets waiting requests fail at once. */
    void giveUp();

    BoxRecords &records() { return m_records; }
    Display &display() { return *m_display; }
    QString folder() const { return m_folder; }

private:
    void makeFolder(const BoxPrograms &programs, const BoxOptions &options);
    void startKeeper(const QString &driver);
    void startDisplay(const QSize &screen);
    void startReceiver(const BoxPrograms &programs, const BoxOptions &options);
    void startProgram(const BoxPrograms &programs, const SessionRequest &request,
                      const Profile &profile);
    void startCompositor();
    void listen();
    void waitForProgram();
    void stop();

    QStringList environment() const;
    void startChild(Process &process, ProcessStart how, const char *package);
    void watch();
    bool acceptPlugin(const Descriptor &listener);
    bool readPlugin();
    void takeMessage(const QByteArray &line);
    bool write(const QByteArray &bytes, const Deadline &deadline);
    [[noreturn]] void failGone();

    QString m_folder;
    QString m_displayName;
    Descriptor m_keeperPipe;
    Process m_keeper;
    Process m_xvfb;
    Process m_receiver;
    Process m_compositor;
    Process m_program;
    pid_t m_group = 0;
    std::unique_ptr<Display> m_display;
    Descriptor m_receiverInput;
    Descriptor m_receiverOutput;
    Descriptor m_programOutput;
    Descriptor m_listener;
    Descriptor m_plugin;
    Pipe m_wake;
    QByteArray m_pluginInput;
    BoxRecords m_records;

    std::thread m_watcher;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<int, QJsonObject> m_answers;
    int m_awaited = 0;
    bool m_ready = false;
    std::atomic<bool> m_gone{false};
    int m_lastId = 0;
};
