// SPDX-License-Identifier: Apache-2.0
#include "enigma2/answer_mailbox.h"

#include <QDeadlineTimer>
#include <QMutexLocker>

std::optional<int> AnswerMailbox::awaitInteger(Command request, const Send &send, int timeoutMs)
{
    const QMutexLocker locker(&m_mutex);
    if (!awaitLocked(request, send, timeoutMs))
        return std::nullopt;
    return m_integer;
}

std::optional<QString> AnswerMailbox::awaitText(Command request, const Send &send, int timeoutMs)
{
    const QMutexLocker locker(&m_mutex);
    if (!awaitLocked(request, send, timeoutMs))
        return std::nullopt;
    return m_text;
}

void AnswerMailbox::putInteger(Command request, int value)
{
    const QMutexLocker locker(&m_mutex);
    m_integer = value;
    wake(request);
}

void AnswerMailbox::putText(Command request, const std::optional<QString> &text)
{
    const QMutexLocker locker(&m_mutex);
    m_text = text.value_or(m_text);
    wake(request);
}

std::int32_t AnswerMailbox::awaited() const
{
    const QMutexLocker locker(&m_mutex);
    return m_awaited;
}

bool AnswerMailbox::awaitLocked(Command request, const Send &send, int timeoutMs)
{
    send();
    m_awaited = static_cast<std::int32_t>(request);
    const QDeadlineTimer deadline(timeoutMs);
    while (m_awaited != 0) {
        if (!m_answered.wait(&m_mutex, deadline)) {
            m_awaited = 0;
            return false;
        }
    }
    return true;
}

void AnswerMailbox::wake(Command request)
{
    if (m_awaited != static_cast<std::int32_t>(request))
        return;
    m_awaited = 0;
    m_answered.wakeAll();
}
