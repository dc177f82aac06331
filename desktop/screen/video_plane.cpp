// SPDX-License-Identifier: Apache-2.0
#include "desktop/screen/video_plane.h"

#include "platform/weston.h"

#include <QEvent>
#include <QPainter>
#include <QScreen>

#include <utility>

void BlackWindow::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(QRect(QPoint(0, 0), size()), Qt::black);
}

void BlackWindow::setArea(const QRect &area)
{
    const bool isWhole = screen()->geometry() == area;
    if (!isWhole)
        setWindowStates(Qt::WindowNoState);
    setGeometry(area);
    if (isWhole)
        setWindowStates(Qt::WindowFullScreen);
}

VideoPlane::VideoPlane(std::unique_ptr<BlackWindow> video)
    : m_video(std::move(video))
{
    m_video->setParent(this);
    setTitle("Vesprel video");
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    setArea(screen()->geometry());
    // As the program's window is there, so that both get the same place.
    if (isWeston())
        setWindowStates(Qt::WindowMaximized);
    setVisible(true); // show() would forget the state.
    m_video->show();
    place();
}

void VideoPlane::setViewport(const Viewport &viewport)
{
    m_viewport = viewport;
    place();
}

bool VideoPlane::event(QEvent *event)
{
    // A window manager's close button is for the program; the plane goes with the receiver.
    if (event->type() == QEvent::Close) {
        event->ignore();
        return true;
    }
    return BlackWindow::event(event);
}

void VideoPlane::resizeEvent(QResizeEvent *event)
{
    BlackWindow::resizeEvent(event);
    place();
}

void VideoPlane::place()
{
    // A window manager that is not done yet may report nothing.
    if (!size().isEmpty())
        m_video->setGeometry(placed(m_viewport, size()));
}
