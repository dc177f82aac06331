// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/plugin/touch_screen.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QTouchEvent>
#include <QWidget>

TouchScreen::TouchScreen()
{
    m_device.setType(QTouchDevice::TouchScreen);
    m_device.setCapabilities(QTouchDevice::Position);
}

void TouchScreen::touch(QWidget &view, int finger, Step step, const QPoint &where)
{
    if (m_fingers.contains(finger) == (step == Step::Down))
        return;
    const QPointer<QWidget> guard(&view);
    const QPoint point = view.mapFromGlobal(where);
    const bool first = m_fingers.isEmpty();
    m_fingers[finger] = point;
    const bool taken = isTaken(view, finger, step);
    if (step == Step::Up)
        m_fingers.remove(finger);
    if (step == Step::Down && first && !taken)
        m_mouse = finger;
    if (finger != m_mouse || !guard)
        return;
    if (step == Step::Up)
        m_mouse = -1;
    const QEvent::Type types[] = {QEvent::MouseButtonPress, QEvent::MouseMove,
                                  QEvent::MouseButtonRelease};
    QMouseEvent mouse(types[int(step)], point, where,
                      step == Step::Move ? Qt::NoButton : Qt::LeftButton,
                      step == Step::Up ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &mouse);
}

bool TouchScreen::isTaken(QWidget &view, int finger, Step step)
{
    view.setAttribute(Qt::WA_AcceptTouchEvents);
    const Qt::TouchPointState states[] = {Qt::TouchPointPressed, Qt::TouchPointMoved,
                                          Qt::TouchPointReleased};
    const Qt::TouchPointState state = states[int(step)];
    QList<QTouchEvent::TouchPoint> points;
    for (auto row = m_fingers.begin(); row != m_fingers.end(); ++row) {
        QTouchEvent::TouchPoint point(row.key());
        point.setState(row.key() == finger ? state : Qt::TouchPointStationary);
        point.setPos(*row);
        point.setScreenPos(view.mapToGlobal(*row));
        point.setPressure(step == Step::Up && row.key() == finger ? 0 : 1);
        points += point;
    }
    const bool only = m_fingers.size() == 1;
    QEvent::Type type = QEvent::TouchUpdate;
    if (only && step == Step::Down)
        type = QEvent::TouchBegin;
    else if (only && step == Step::Up)
        type = QEvent::TouchEnd;
    QTouchEvent event(type, &m_device, Qt::NoModifier, state, points);
    return QCoreApplication::sendEvent(&view, &event);
}
