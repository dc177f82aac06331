// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/screen/viewport.h"

#include <QRasterWindow>

#include <memory>

/** A window that is black. */
class BlackWindow : public QRasterWindow
{
    Q_OBJECT

public:
    using QRasterWindow::QRasterWindow;

    /** Covers this area (px of the display), above panels if it is a whole screen. */
    void setArea(const QRect &area);

protected:
    void paintEvent(QPaintEvent *event) override;
};

/**
 * The plane below the portal: a black window where the program's is, directly below it, with the
 * video in the window inside it. Without a portal area that is transparent, and a
 * compositor, nothing of it is seen.
 */
class VideoPlane : public BlackWindow
{
    Q_OBJECT

public:
    /** The given window is the video's. */
    explicit VideoPlane(std::unique_ptr<BlackWindow> video);

    /** The native window into which a player draws; as long as this object lives. */
    WId videoWindow() const { return m_video->winId(); }

    /** Moves the video. */
    void setViewport(const Viewport &viewport);

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void place();

    std::unique_ptr<BlackWindow> m_video;
    Viewport m_viewport;
};
