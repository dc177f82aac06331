// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/plugin/display_mark.h"

#include "desktop/display/display_mark_format.h"

#include <QCoreApplication>
#include <QTimer>

#include <utility>

#include <xcb/xcb.h>

DisplayMark::DisplayMark(QObject *parent)
    : QObject(parent)
{
    qApp->installNativeEventFilter(this);
}

void DisplayMark::wait(quint32 number, std::function<void()> done)
{
    m_awaited = number;
    m_done = std::move(done);
    if (m_seen >= number)
        settle();
}

bool DisplayMark::nativeEventFilter(const QByteArray &type, void *message, long *)
{
    if (type != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE)
        return false;
    const auto *mark = static_cast<const xcb_client_message_event_t *>(message);
    if (mark->format != 32 || mark->data.data32[0] != displayMarkMagic)
        return false;
    m_seen = mark->data.data32[1];
    if (m_done && m_seen >= m_awaited)
        settle();
    return true;
}

void DisplayMark::settle()
{
    // The events before the mark are in Qt's queue now. What they lead to is at most two turns of
    // the event loop away: keys that the remote's translation posts, and what those do.
    auto done = std::exchange(m_done, nullptr);
    QTimer::singleShot(0, this, [this, done] {
        QTimer::singleShot(0, this, [this, done] { QTimer::singleShot(0, this, done); });
    });
}
