// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <functional>

/**
 * Tells when the program has seen all input that came from the display before a mark. The mark is
 * a client message that the driver sends to the window after the input. GUI thread.
 */
class DisplayMark : public QObject, public QAbstractNativeEventFilter
{
public:
    explicit DisplayMark(QObject *parent = nullptr);

    /** Calls done once the mark of this number, or a later one, and what it follows are handled. */
    void wait(quint32 number, std::function<void()> done);

    bool nativeEventFilter(const QByteArray &type, void *message, long *result) override;

private:
    void settle();

    quint32 m_seen = 0;
    quint32 m_awaited = 0;
    std::function<void()> m_done;
};
