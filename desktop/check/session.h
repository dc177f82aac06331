// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/check/connection.h"
#include "desktop/check/findings.h"
#include "desktop/check/frame_stream.h"
#include "enigma2/messages.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

/** What came of a request. */
struct Reply
{
    QString fault; ///< A sentence; empty when the right answer came in time and form.
    QByteArray payload;
    bool isTorn = false; ///< Header and payload came apart.

    explicit operator bool() const { return fault.isEmpty(); }
};

/**
 * One life of the program as the receiver sees it: two connections, commands on the first, events
 * and answers on the second. Every step has a time limit. What is seen in passing goes to the
 * findings.
 */
class Session
{
public:
    /** Nothing goes beyond the overall limit. The findings must outlive the session. */
    Session(QByteArray path, QDeadlineTimer overall, Findings &findings);

    /** Looks for what comes late, then hangs up. */
    ~Session();

    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    /** Connects as the program does; what went wrong as a sentence, empty when nothing did. */
    QString open();

    /** True once the first of the two connections was made, whatever became of it. */
    bool isReached() const { return m_isReached; }

    /** True while the receiver has closed neither connection. */
    bool isOpen() const { return m_commands.isOpen() && m_events.isOpen(); }

    /** From now on reads what each write of the receiver brought for itself, if the system can. */
    void readByWrites() { m_readsByWrites = true; }

    bool send(Command command, const QByteArray &payload = {});
    bool sendBytes(const QByteArray &bytes);

    /** Sends a request and awaits its answer. */
    Reply request(Command request, const QByteArray &payload = {});

    /** Awaits the answer to a request that was sent. */
    Reply await(Command request);

    /** Takes what comes for so long, in ms, or until an event was seen that ends it. */
    bool listen(int milliseconds, const std::function<bool(Event)> &ends = {});

    /** The events since the begin, in order; at most a thousand of them. */
    const std::vector<SeenFrame> &events() const { return m_seen; }

    void closeCommands() { m_commands.close(); }
    void closeEvents() { m_events.close(); }

private:
    QDeadlineTimer within(int milliseconds) const;
    bool waitForInput(const QDeadlineTimer &deadline);
    void takeInput();
    std::optional<SeenFrame> nextFrame();
    void noteFrame(const SeenFrame &frame);

    QByteArray m_path;
    QDeadlineTimer m_overall;
    Findings &m_findings;
    Connection m_commands;
    Connection m_events;
    FrameStream m_stream;
    bool m_isReached = false;
    bool m_readsByWrites = false;
    std::vector<SeenFrame> m_seen;
    QDeadlineTimer m_second; ///< The second in which m_inSecond frames came.
    int m_inSecond = 0;
};

/** A whole frame of a command. */
QByteArray commandFrame(int type, const QByteArray &payload = {});
