// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "enigma2/messages.h"

#include <QMutex>
#include <QString>
#include <QWaitCondition>

#include <functional>
#include <optional>

/**
 * Where the reader thread leaves the answers and the GUI thread waits for one of them. One request
 * waits at a time. All requests share the two results, which are never cleared: an answer of
 * another request, or one that comes too late, is what the next one finds.
 */
class AnswerMailbox
{
public:
    /** Sends a request; called with the mailbox locked, so that no answer can slip by. */
    using Send = std::function<void()>;

    /**
     * Sends a request and waits for its answer, in ms; nothing when none came in time. GUI thread,
     * which it blocks.
     */
    std::optional<int> awaitInteger(Command request, const Send &send, int timeoutMs);
    std::optional<QString> awaitText(Command request, const Send &send, int timeoutMs);

    /** Takes an answer and wakes its request, if that is the one that waits. Reader thread. */
    void putInteger(Command request, int value);

    /** The same for a text; an empty answer leaves the previous text, and peers rely on it. */
    void putText(Command request, const std::optional<QString> &text);

    /** The number of the request that waits, 0 when none does. Any thread. */
    std::int32_t awaited() const;

private:
    bool awaitLocked(Command request, const Send &send, int timeoutMs);
    void wake(Command request);

    mutable QMutex m_mutex;
    QWaitCondition m_answered;
    QString m_text;
    int m_integer = 0;
    std::int32_t m_awaited = 0;
};
