// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "enigma2/messages.h"

#include <QMutex>
#include <QString>
#include <QWaitCondition>

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>

/** An event of the receiver with what its payload carried; what its form does not carry is empty.
 */
struct ReceivedEvent
{
    Event event;
    int first = 0;
    int second = 0;
    QString text;
};

/**
 * The events on their way from the reader thread to the GUI thread, in order and without loss. A
 * full queue holds the reader thread up, and with it the receiver, until the GUI thread has taken
 * half of it; while a request waits it holds more, since the answer comes behind the events.
 */
class EventQueue
{
public:
    /** So many bytes of events, about 100,000 of them, are kept; the last one may go beyond. */
    static constexpr std::size_t capacity = std::size_t{4} * 1024 * 1024;

    /** The same while a request waits. */
    static constexpr std::size_t requestCapacity = std::size_t{64} * 1024 * 1024;

    /**
     * Wake is called on the reader thread when the queue has something to take again: once, until
     * take() found the queue empty.
     */
    explicit EventQueue(std::function<void()> wake)
        : m_wake(std::move(wake))
    {
    }

    /** Adds an event and waits while the queue is full. Reader thread. */
    void push(ReceivedEvent event);

    /** Takes the oldest event; nothing when there is none. GUI thread. */
    std::optional<ReceivedEvent> take();

    /** Says whether a request waits. GUI thread. */
    void setRequestWaiting(bool waiting);

    /** Lets push() drop its event from now on, so that the reader thread can end. */
    void close();

private:
    bool isFull() const;
    static std::size_t sizeOf(const ReceivedEvent &event);

    std::function<void()> m_wake;
    QMutex m_mutex;
    QWaitCondition m_roomMade;
    std::deque<ReceivedEvent> m_events;
    std::size_t m_size = 0; ///< Bytes, by sizeOf().
    bool m_awake = false;   ///< Wake was called and take() has not found the end since.
    bool m_isRequestWaiting = false;
    bool m_closed = false;
};
