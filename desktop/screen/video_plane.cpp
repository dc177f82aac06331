// SPDX-License-Identifier: Apache-2.0
#include "desktop/screen/video_plane.h"

#include <QEvent>
#include <QPainter>
#include <QScreen>

#include <utility>

void BlackWindow::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(QRect(QPoint(0, 0), size()), Qt::black);
}

VideoPlane::VideoPlane(std::unique_ptr<BlackWindow> video)
    : m_video(std::move(video))
{
    m_video->setParent(this);
    setTitle("Vesprel video");
    // Framed and maximised as the program's window is, so that a window manager gives both the
    // same place; without one both are as large as the screen.
    setFlags(Qt::Window | Qt::WindowStaysOnBottomHint | Qt::WindowDoesNotAcceptFocus);
    setGeometry(screen()->availableGeometry());
    showMaximized();
    m_video->show();
    place();
    lower();
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

void VideoPlane::exposeEvent(QExposeEvent *event)
{
    BlackWindow::exposeEvent(event);
    // A receiver that is started behind the program still belongs below it.
    lower();
}

void VideoPlane::place()
{
    // A window manager that is not done yet may report nothing.
    if (!size().isEmpty())
        m_video->setGeometry(placed(m_viewport, size()));
}
