// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMap>
#include <QPoint>
#include <QTouchDevice>

class QWidget;

/**
 * A touch screen in front of the box: fingers that go down, move and go up. What a page does not
 * take as a touch comes to it as the mouse, as from any touch screen. GUI thread.
 */
class TouchScreen
{
public:
    enum class Step { Down, Move, Up };

    TouchScreen();

    /** One finger's step at a point of the screen; fingers that are not down do nothing but Down.
     */
    void touch(QWidget &view, int finger, Step step, const QPoint &where);

private:
    bool isTaken(QWidget &view, int finger, Step step);

    QTouchDevice m_device;
    QMap<int, QPoint> m_fingers; ///< Those that are down, in the view.
    int m_mouse = -1;            ///< The finger that is the mouse, if one is.
};
