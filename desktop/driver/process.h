// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>

#include <sys/types.h>

/** A descriptor that is closed with its owner. */
class Descriptor
{
public:
    explicit Descriptor(int number = -1)
        : m_number(number)
    {
    }
    ~Descriptor() { reset(); }
    Descriptor(Descriptor &&other) noexcept;
    Descriptor &operator=(Descriptor &&other) noexcept;
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int number() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }
    void reset(int number = -1);

private:
    int m_number = -1;
};

/** A pipe with both of its ends. */
struct Pipe
{
    Descriptor read;
    Descriptor write;
};

/** Both ends are closed on exec. */
Pipe makePipe();

/** What a program is started with. */
struct ProcessStart
{
    QString program;
    QStringList arguments;
    QStringList environment; ///< NAME=VALUE
    pid_t group = 0;         ///< The process group to join; 0: one of its own.
    int input = -1;          ///< Its standard input; -1: nothing to read.
    int output = -1;         ///< Its standard output and errors; -1: dropped.
    int extra = -1;          ///< Its descriptor 3; -1: none.
};

/**
 * A child process, started from any thread. It inherits nothing but what it is given. Not killed
 * when the object goes: the keeper of the box sees to that.
 */
class Process
{
public:
    /** False if the program cannot be started. */
    bool start(const ProcessStart &how);

    pid_t id() const { return m_id; }

    /** Whether it runs; takes note of its end. */
    bool isRunning();

    /** Waits for the end; false if it still runs after that time. */
    bool waitForEnd(std::chrono::milliseconds time);

    /** Whether it ended with 0. */
    bool hasSucceeded() const;

    /** How it ended, in words: "ended with 1", "was killed by signal 11". */
    QString end() const;

private:
    pid_t m_id = -1;
    bool m_running = false;
    int m_status = 0;
};
