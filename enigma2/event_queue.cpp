// SPDX-License-Identifier: Apache-2.0
#include "enigma2/event_queue.h"

#include <QMutexLocker>

#include <utility>

void EventQueue::push(ReceivedEvent event)
{
    QMutexLocker locker(&m_mutex);
    while (isFull() && !m_closed)
        m_roomMade.wait(&m_mutex);
    if (m_closed)
        return;
    m_size += sizeOf(event);
    m_events.push_back(std::move(event));
    const bool mustWake = !std::exchange(m_awake, true);
    locker.unlock();
    if (mustWake)
        m_wake();
}

std::optional<ReceivedEvent> EventQueue::take()
{
    const QMutexLocker locker(&m_mutex);
    if (m_events.empty()) {
        m_awake = false;
        return std::nullopt;
    }
    ReceivedEvent event = std::move(m_events.front());
    m_events.pop_front();
    const bool wasHigh = m_size >= capacity / 2;
    m_size -= sizeOf(event);
    // The reader goes on when half is taken, not at each event, or both would run in lockstep.
    if (wasHigh && m_size < capacity / 2)
        m_roomMade.wakeAll();
    return event;
}

void EventQueue::setRequestWaiting(bool waiting)
{
    const QMutexLocker locker(&m_mutex);
    m_isRequestWaiting = waiting;
    if (waiting)
        m_roomMade.wakeAll();
}

void EventQueue::close()
{
    const QMutexLocker locker(&m_mutex);
    m_closed = true;
    m_roomMade.wakeAll();
}

bool EventQueue::isFull() const
{
    return m_size >= (m_isRequestWaiting ? requestCapacity : capacity);
}

std::size_t EventQueue::sizeOf(const ReceivedEvent &event)
{
    return sizeof event + static_cast<std::size_t>(event.text.size()) * sizeof(QChar);
}
