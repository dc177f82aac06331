// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/actions.h"

#include "desktop/display/display.h"
#include "desktop/display/key_symbols.h"
#include "desktop/driver/webdriver_error.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

namespace {

using Kind = Action::Kind;
using Clock = std::chrono::steady_clock;

constexpr double stepMs = 17; ///< A pointer that moves for a while does so at about 60 Hz.

/** Carries out the actions of one tick at a time. */
class Performer
{
public:
    Performer(InputState &state, const ActionContext &context)
        : m_state(state)
        , m_context(context)
    {
    }

    /** True if a dialog came up, which ends everything. */
    bool perform(const QVector<Action> &tick)
    {
        m_begin = Clock::now();
        m_duration = 0;
        for (const Action &action : tick)
            m_duration = std::max(m_duration, action.duration);
        bool blocked = false;
        for (const Action &action : tick)
            blocked = blocked || dispatch(action);
        if (!blocked)
            std::this_thread::sleep_until(at(m_duration));
        return blocked;
    }

    bool release(const Action &action) { return dispatch(action); }

private:
    Clock::time_point at(double ms) const
    {
        return m_begin + std::chrono::milliseconds(qint64(std::min(ms, 1e9)));
    }

    bool shiftHeld() const
    {
        return std::any_of(m_state.sources.begin(), m_state.sources.end(),
                           [](const InputSource &source) { return source.shift; });
    }

    bool dispatch(const Action &action)
    {
        InputSource &source = m_state.sources[action.source];
        switch (action.kind) {
        case Kind::Pause: return false;
        case Kind::KeyDown: return keyDown(action, source);
        case Kind::KeyUp: return keyUp(action, source);
        case Kind::PointerDown: return button(action, source, true);
        case Kind::PointerUp: return button(action, source, false);
        case Kind::PointerMove: return move(action, source);
        case Kind::PointerCancel: fail("unsupported operation", "No pointer can be cancelled.");
        case Kind::Scroll: return scroll(action, source);
        }
        return false;
    }

    bool keyDown(const Action &action, InputSource &source)
    {
        const QString key = normalizedKey(action.key);
        if (source.keys.contains(key)) {
            // Held already: what the keyboard's own repetition does.
            m_context.display->pressKey(source.keys[key], false);
            m_context.display->pressKey(source.keys[key], true);
            return m_context.settle();
        }
        const quint8 code = m_context.display->keyFor(symbolOf(action.key), shiftHeld());
        source.keys[key] = code;
        if (modifierOfKey(action.key) == Modifier::Shift)
            source.shift = true;
        Action undo = action;
        undo.kind = Kind::KeyUp;
        m_state.undo.append(undo);
        if (!code)
            return false;
        m_context.display->pressKey(code, true);
        return m_context.settle();
    }

    bool keyUp(const Action &action, InputSource &source)
    {
        const QString key = normalizedKey(action.key);
        if (!source.keys.contains(key))
            return false;
        const quint8 code = source.keys.take(key);
        if (modifierOfKey(action.key) == Modifier::Shift)
            source.shift = false;
        if (!code)
            return false;
        m_context.display->pressKey(code, false);
        return m_context.settle();
    }

    bool button(const Action &action, InputSource &source, bool down)
    {
        if (source.buttons.contains(action.button) == down)
            return false;
        if (down) {
            source.buttons.insert(action.button);
            Action undo = action;
            undo.kind = Kind::PointerUp;
            m_state.undo.append(undo);
        } else {
            source.buttons.remove(action.button);
        }
        if (source.pointerType == "touch") {
            // A finger has no further buttons.
            if (action.button == 0)
                touch(source, down ? "down" : "up");
            return m_context.settle();
        }
        // The display counts from 1 and has its wheel between the middle and the further ones.
        const qint64 number = action.button < 3 ? action.button + 1 : action.button + 5;
        if (number > 255)
            return false;
        m_context.display->pressButton(quint8(number), down);
        return m_context.settle();
    }

    void touch(const InputSource &source, const char *step)
    {
        m_context.touch(source.finger, step, m_context.originX + int(std::floor(source.x)),
                        m_context.originY + int(std::floor(source.y)));
    }

    QPair<double, double> target(const Action &action, const InputSource &source) const
    {
        double x = action.x;
        double y = action.y;
        if (action.origin.isObject()) {
            const auto centre = m_context.centreOf(action.origin);
            x += centre.first;
            y += centre.second;
        } else if (action.origin.toString() == "pointer") {
            x += source.x;
            y += source.y;
        }
        if (x < 0 || y < 0 || x > m_context.width || y > m_context.height) {
            fail("move target out of bounds",
                 QString("(%1, %2) is outside of the viewport of %3x%4")
                     .arg(x)
                     .arg(y)
                     .arg(m_context.width)
                     .arg(m_context.height));
        }
        return {x, y};
    }

    bool moveTo(InputSource &source, double x, double y)
    {
        source.x = x;
        source.y = y;
        if (source.pointerType == "touch") {
            // One that is not down touches nothing on its way.
            if (source.buttons.contains(0))
                touch(source, "move");
            return m_context.settle();
        }
        m_context.display->movePointer(m_context.originX + int(std::floor(x)),
                                       m_context.originY + int(std::floor(y)));
        return m_context.settle();
    }

    bool move(const Action &action, InputSource &source)
    {
        const auto [x, y] = target(action, source);
        const double startX = source.x;
        const double startY = source.y;
        const double duration = action.duration >= 0 ? action.duration : m_duration;
        for (double time = stepMs; time < duration; time += stepMs) {
            std::this_thread::sleep_until(at(time));
            const double ratio = time / duration;
            if (moveTo(source, startX + ratio * (x - startX), startY + ratio * (y - startY)))
                return true;
        }
        std::this_thread::sleep_until(at(std::max(duration, 0.0)));
        return moveTo(source, x, y);
    }

    bool scroll(const Action &action, InputSource &source)
    {
        const auto [x, y] = target(action, source);
        std::this_thread::sleep_until(at(std::max(action.duration, 0.0)));
        m_context.scroll(m_context.originX + int(x), m_context.originY + int(y), action.deltaX,
                         action.deltaY);
        return m_context.settle();
    }

    InputState &m_state;
    const ActionContext &m_context;
    Clock::time_point m_begin;
    double m_duration = 0;
};

} // namespace

void performActions(const Ticks &ticks, InputState &state, const ActionContext &context)
{
    Performer performer(state, context);
    for (const QVector<Action> &tick : ticks) {
        if (performer.perform(tick))
            return;
    }
}

void releaseActions(InputState &state, const ActionContext &context)
{
    Performer performer(state, context);
    for (auto action = state.undo.crbegin(); action != state.undo.crend(); ++action)
        performer.release(*action);
    state = {};
}
