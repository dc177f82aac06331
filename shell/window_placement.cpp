// SPDX-License-Identifier: Apache-2.0
#include "shell/window_placement.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#ifdef VESPREL_DESKTOP

#include "platform/environment.h"
#include "platform/screen_size.h"
#include "platform/weston.h"

namespace {

QSize screen() { return QGuiApplication::primaryScreen()->size(); }

/** The size of an ordinary window; invalid: the whole screen. */
QSize ordinarySize()
{
    const QSize wanted = screenSize(qEnvironmentVariable(Environment::window));
    const bool fits = wanted.width() <= screen().width() && wanted.height() <= screen().height();
    return fits && wanted != screen() ? wanted : QSize();
}

void reportWrongSize()
{
    const QString text = qEnvironmentVariable(Environment::window);
    const QSize wanted = screenSize(text);
    if (!text.isEmpty() && !wanted.isValid())
        qWarning("%s=%s is no WIDTHxHEIGHT from 64x64 to 8192x8192; the window takes the screen",
                 Environment::window, qUtf8Printable(text));
    else if (wanted.isValid() && wanted.boundedTo(screen()) != wanted)
        qWarning("%s=%s is larger than the screen of %dx%d, which the window takes",
                 Environment::window, qUtf8Printable(text), screen().width(), screen().height());
}

} // namespace

QSize initialWindowSize()
{
    reportWrongSize();
    const QSize ordinary = ordinarySize();
    return ordinary.isValid() ? ordinary : screen();
}

void showInPlace(QWidget &window)
{
    if (!ordinarySize().isValid() && isWeston()) {
        if (!window.windowHandle())
            window.setWindowFlag(Qt::FramelessWindowHint);
        window.setWindowState(Qt::WindowMaximized);
    } else if (!ordinarySize().isValid())
        window.setWindowState(Qt::WindowMaximized | Qt::WindowFullScreen);
    else if (window.windowHandle() && !window.isVisible())
        // Where it was before it was hidden, not where there is room.
        window.windowHandle()->setPosition(window.geometry().topLeft());
    window.show();
}

#else

QSize initialWindowSize() { return QGuiApplication::primaryScreen()->availableGeometry().size(); }

void showInPlace(QWidget &window) { window.showMaximized(); }

#endif
