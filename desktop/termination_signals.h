// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

/**
 * Turns the signals that ask a process to end (interrupt, terminate, hang-up) into a Qt signal of
 * the event loop. One object per process.
 */
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);

    /** Gives the process signals back their default effect. */
    ~TerminationSignals() override;

signals:
    void received();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};
