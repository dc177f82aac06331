// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/receiver_peer.h"

#include <QByteArray>
#include <QProcess>

/** An X server of the test's own, with no window manager, and real keys for it (xdotool). */
class BareScreen
{
public:
    /** What the machine lacks for it; empty if nothing. */
    static QByteArray missing();

    BareScreen();
    ~BareScreen();

    QString display() const { return m_display; }

    /** Presses and releases a key as X names it: "Home", "ctrl+Tab". */
    void press(const QString &key) const;

private:
    QProcess m_server;
    QString m_display;
};

/**
 * The program on a bare screen, with a receiver of the test's own and pages below the test's
 * temporary root; what it does is read from its log. Needs the path VESPREL_PROGRAM at compile time
 * of its user, handed to start().
 */
class ProgramOnScreen
{
public:
    ProgramOnScreen();
    ~ProgramOnScreen();

    /** Starts the program with this page as its portal and waits until the page is there. */
    void start(const char *program, const QString &page);

    /** The receiver announces a portal. */
    void announce(const QString &page);

    void press(const QString &key) { m_screen.press(key); }

    /** Waits until the log says this, at most so many ms, and forgets it up to there. */
    bool says(const QByteArray &text, int timeout = 20000);

    bool isRunning() const;

    /** Whether a library or plugin whose path has this in it is part of the process now. */
    bool hasLoaded(const QByteArray &library) const;

    /** The rest of the log, for the message of a failure. */
    QByteArray log() const { return m_log; }

    ReceiverPeer receiver;

private:
    BareScreen m_screen;
    QProcess m_program;
    QByteArray m_log;
};
