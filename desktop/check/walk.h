// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/check/findings.h"
#include "desktop/check/session.h"

#include <QDeadlineTimer>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

/** What a check found. */
struct CheckResult
{
    QStringList faults; ///< Sentences; none when the receiver does what it should.
    QString skipped;    ///< Why it could not be looked at; empty when it was.

    static CheckResult of(const QString &fault)
    {
        return {fault.isEmpty() ? QStringList() : QStringList(fault), QString()};
    }
    static CheckResult skip(const QString &reason) { return {{}, reason}; }
};

// Why a check failed, or could not be made.
constexpr char takesNoConnection[] = "The receiver takes no connection any more.";
constexpr char noProbe[] = "No request is answered as it should, which would tell.";

/** What the checks hand on to one another. Each begins with a session that works. */
class Walk
{
public:
    Walk(QByteArray path, QDeadlineTimer overall);

    QString url;                  ///< What is played; empty: nothing.
    bool sendsAll = false;        ///< What changes the screen, too.
    bool announcesPortal = false; ///< The first program was told a portal.
    bool isPlaying = false;       ///< The session has started playback.
    std::optional<int> recording; ///< The task that was made for the check.
    Findings findings;

    /** Ends the session and begins another; what went wrong as a sentence. */
    QString restart();

    /** Ends the session; the next check begins another. */
    void endSession() { m_session.reset(); }

    /** The session, begun if there is none that works; null if the receiver does not serve one. */
    Session *session();

    /** What went wrong when a session was last begun, as a sentence. */
    QString fault() const { return m_fault; }

    /** True once the receiver's socket has taken a connection. */
    bool isReached() const { return m_isReached; }

    bool isOver() const { return m_overall.hasExpired(); }

    /** Notes that this request is answered as it should. */
    void noteAnswered(Command request, const QByteArray &payload);
    bool answers(Command request) const { return m_answered.contains(static_cast<int>(request)); }

    /**
     * A request that the receiver answers as it should, which tells whether it still works; none
     * while none was found. probe() asks in the session as it is.
     */
    bool hasProbe() const { return m_probe.has_value(); }
    Reply probe();
    QByteArray probeFrame() const;
    Command probeCommand() const { return *m_probe; }

private:
    QByteArray m_path;
    QDeadlineTimer m_overall;
    std::unique_ptr<Session> m_session;
    QString m_fault;
    bool m_isReached = false;
    QSet<int> m_answered;
    std::optional<Command> m_probe;
    QByteArray m_probePayload;
};
