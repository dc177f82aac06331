// SPDX-License-Identifier: Apache-2.0
#include "desktop/link/delay_line.h"

#include <algorithm>
#include <utility>

DelayLine::DelayLine(QObject *parent)
    : QObject(parent)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &DelayLine::deliverDue);
}

void DelayLine::push(Delivery delivery)
{
    const qint64 now = m_clock.elapsed();
    if (m_delay == 0 && m_waiting.isEmpty() && now >= m_heldUntil) {
        delivery();
        return;
    }
    m_waiting.enqueue({now + m_delay, std::move(delivery)});
    arm();
}

void DelayLine::hold(int ms)
{
    m_heldUntil = m_clock.elapsed() + ms;
    arm();
}

void DelayLine::deliverDue()
{
    while (!m_waiting.isEmpty() && m_clock.elapsed() >= std::max(m_waiting.head().due, m_heldUntil))
        m_waiting.dequeue().delivery();
    arm();
}

void DelayLine::arm()
{
    if (m_waiting.isEmpty())
        return;
    const qint64 due = std::max(m_waiting.head().due, m_heldUntil);
    m_timer.start(int(std::max(due - m_clock.elapsed(), qint64{0})));
}
