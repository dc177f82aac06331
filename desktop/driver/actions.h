// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <QJsonObject>
#include <QMap>
#include <QSet>
#include <QString>
#include <QVector>

#include <functional>

class Display;

/** One action of one input source in one tick. */
struct Action
{
    enum class Kind {
        Pause,
        KeyDown,
        KeyUp,
        PointerDown,
        PointerUp,
        PointerMove,
        PointerCancel,
        Scroll
    };

    Kind kind = Kind::Pause;
    QString source;
    double duration = -1; ///< ms; negative: none was given.
    QString key;
    qint64 button = 0;
    QJsonValue origin = "viewport"; ///< "viewport", "pointer" or an element.
    double x = 0;
    double y = 0;
    int deltaX = 0;
    int deltaY = 0;
};

/** An input device that a client made up, and what it holds. */
struct InputSource
{
    QString type;                  ///< "none", "key", "pointer" or "wheel".
    QString pointerType = "mouse"; ///< Or "touch", or "pen", which moves the mouse, too.
    int finger = 0;                ///< The number of a touch's finger.
    double x = 0;                  ///< In the viewport.
    double y = 0;
    QMap<QString, quint8> keys; ///< Held keys, with those of the display.
    QSet<qint64> buttons;
    bool shift = false;
};

/** The devices of a window, and what releases what they hold, the oldest first. */
struct InputState
{
    QMap<QString, InputSource> sources;
    QVector<Action> undo;
};

using Ticks = QVector<QVector<Action>>;

/**
 * Reads the parameters of Perform Actions into ticks and adds the new devices to the state. Throws
 * "invalid argument".
 */
Ticks readActions(const QJsonObject &parameters, InputState &state);

/** What carrying out actions needs of the session. */
struct ActionContext
{
    Display *display = nullptr;
    int originX = 0; ///< The viewport's corner on the display.
    int originY = 0;
    double width = 0; ///< The viewport's size.
    double height = 0;
    /** The centre of an element in the viewport; throws if it has none. */
    std::function<QPair<double, double>(const QJsonValue &element)> centreOf;
    /** A finger's step, "down", "move" or "up", at a point of the display. */
    std::function<void(int finger, const char *step, int x, int y)> touch;
    /** Turns the wheel at a point of the display by pixels. */
    std::function<void(int x, int y, int deltaX, int deltaY)> scroll;
    /** Returns when the program has seen all input; true if a dialog is open now. */
    std::function<bool()> settle;
};

/** Carries out ticks one after the other, up to a dialog. Throws WebDriverError. */
void performActions(const Ticks &ticks, InputState &state, const ActionContext &context);

/** Releases what is held, the youngest first. */
void releaseActions(InputState &state, const ActionContext &context);
