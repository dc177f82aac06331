// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

/** What a supervisor wants to hear of the program; docs/box.md names the variables. */
struct WatchdogOptions
{
    QByteArray notifySocket; ///< Takes datagrams; "@" begins an abstract name; empty: none.
    QByteArray lifeFile;     ///< Made anew at each sign of life; empty: none.
    /** Longest silence of the main thread; 0: nobody watches, as long as nobody asks. */
    std::chrono::milliseconds limit{0};

    /** Takes the options from the environment, so that child processes don't answer to them. */
    static WatchdogOptions takeFromEnvironment();
};

/**
 * Tells the supervisor that the main thread runs, and ends the process when it has not run for
 * nine tenths of the limit: with one line in the log and the status `silenceStatus`, shortly before
 * the supervisor would kill it without a word. Pages run in the main thread, so a page that never
 * ends is such a silence. Main thread; a thread of its own watches.
 */
class Watchdog
{
public:
    /** Status of a process that ended itself because its main thread no longer ran. */
    static constexpr int silenceStatus = 75;

    /** Watches from now on; reports readiness once the event loop runs. */
    explicit Watchdog(const WatchdogOptions &options);
    ~Watchdog();

    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;

private:
    void giveSign();
    void watch();

    const WatchdogOptions m_options;
    const std::chrono::milliseconds m_interval;
    QTimer m_timer;
    std::atomic<unsigned> m_signs{0};
    std::mutex m_mutex;
    std::condition_variable m_ended;
    bool m_isEnding = false;
    std::thread m_watcher;
};
