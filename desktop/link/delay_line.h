// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QQueue>
#include <QTimer>

#include <functional>

/**
 * Passes deliveries on in their order, at once or, to act as a slow or hanging peer, later. GUI
 * thread.
 */
class DelayLine : public QObject
{
    Q_OBJECT

public:
    using Delivery = std::function<void()>;

    explicit DelayLine(QObject *parent = nullptr);

    /** Carries out a delivery: before this returns, unless it or an earlier one has to wait. */
    void push(Delivery delivery);

    /** From now on every delivery waits for so many ms, 0 for none. */
    void setDelay(int ms) { m_delay = ms; }

    /** Delivers nothing for so many ms from now, then at once what came meanwhile. */
    void hold(int ms);

    /** Forgets what waits. */
    void clear() { m_waiting.clear(); }

private:
    struct Waiting
    {
        qint64 due = 0; ///< In ms of m_clock.
        Delivery delivery;
    };

    void deliverDue();
    void arm();

    QElapsedTimer m_clock;
    QTimer m_timer;
    QQueue<Waiting> m_waiting;
    int m_delay = 0;
    qint64 m_heldUntil = 0;
};
