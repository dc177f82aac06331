// SPDX-License-Identifier: Apache-2.0
#include "desktop/screen/notice.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScreen>

namespace {

constexpr int linesOnScreen = 24; ///< So large that it can be read from the sofa.

} // namespace

Notice::Notice()
{
    setTitle("Vesprel receiver");
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setArea(screen()->geometry());
}

void Notice::setText(const QString &text)
{
    m_text = text;
    if (text.isEmpty()) {
        hide();
        return;
    }
    setVisible(true); // show() would forget the state.
    raise();
    requestActivate();
    update();
}

void Notice::paintEvent(QPaintEvent *event)
{
    BlackWindow::paintEvent(event);
    QPainter painter(this);
    QFont font = painter.font();
    font.setPixelSize(qMax(1, height() / linesOnScreen));
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRect(QPoint(0, 0), size()), Qt::AlignCenter, m_text);
}

void Notice::keyPressEvent(QKeyEvent *event)
{
    if (!event->isAutoRepeat())
        emit keyPressed();
}

StandbyCover::StandbyCover()
{
    setTitle("Vesprel stand-by");
    // The program below keeps the keys, of which only power does something.
    setFlags(Qt::Window | Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint |
             Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus |
             Qt::WindowTransparentForInput);
    setGeometry(screen()->geometry());
}
