// SPDX-License-Identifier: Apache-2.0
/*
 * Actions as clients write them; what they do is in actions.cpp.
 */
#include "desktop/driver/actions.h"

#include "desktop/driver/arguments.h"
#include "desktop/driver/webdriver_error.h"

#include <QTextBoundaryFinder>

#include <cmath>

namespace {

using Kind = Action::Kind;

double durationOf(const QJsonObject &item)
{
    return integerMember(item, "duration", 0, maxSafeInteger).value_or(-1);
}

double required(const std::optional<double> &number, const char *name)
{
    if (!number)
        failArgument(QString("\"%1\" is missing").arg(name));
    return *number;
}

QJsonValue originOf(const QJsonObject &item, bool pointer)
{
    const QJsonValue origin = item.value("origin");
    if (origin.isUndefined())
        return "viewport";
    const bool element = origin.isObject() && origin.toObject().value(elementKey).isString();
    if (!element && origin != QJsonValue("viewport") &&
        !(pointer && origin == QJsonValue("pointer")))
        failArgument("\"origin\" is neither viewport, pointer nor an element");
    return origin;
}

void checkPointerShape(const QJsonObject &item)
{
    const double pi = std::acos(-1.0);
    numberMember(item, "width", 0, 1e300);
    numberMember(item, "height", 0, 1e300);
    numberMember(item, "pressure", 0, 1);
    numberMember(item, "tangentialPressure", -1, 1);
    integerMember(item, "tiltX", -90, 90);
    integerMember(item, "tiltY", -90, 90);
    integerMember(item, "twist", 0, 359);
    numberMember(item, "altitudeAngle", 0, pi / 2);
    numberMember(item, "azimuthAngle", 0, 2 * pi);
}

QString keyOf(const QJsonObject &item)
{
    const QString key = stringMember(item, "value");
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, key);
    if (key.isEmpty() || finder.toNextBoundary() != key.size())
        failArgument("\"value\" is to be one character");
    return key;
}

Action readKey(const QString &subtype, const QJsonObject &item)
{
    Action action;
    if (subtype != "keyDown" && subtype != "keyUp")
        failArgument("A key does no " + subtype);
    action.kind = subtype == "keyDown" ? Kind::KeyDown : Kind::KeyUp;
    action.key = keyOf(item);
    return action;
}

Action readPointer(const QString &subtype, const QJsonObject &item)
{
    Action action;
    if (subtype == "pointerDown" || subtype == "pointerUp") {
        action.kind = subtype == "pointerDown" ? Kind::PointerDown : Kind::PointerUp;
        action.button =
            qint64(required(integerMember(item, "button", 0, maxSafeInteger), "button"));
    } else if (subtype == "pointerMove") {
        action.kind = Kind::PointerMove;
        action.duration = durationOf(item);
        action.origin = originOf(item, true);
        action.x = required(numberMember(item, "x", -1e300, 1e300), "x");
        action.y = required(numberMember(item, "y", -1e300, 1e300), "y");
    } else if (subtype == "pointerCancel") {
        action.kind = Kind::PointerCancel;
    } else {
        failArgument("A pointer does no " + subtype);
    }
    checkPointerShape(item);
    return action;
}

Action readWheel(const QString &subtype, const QJsonObject &item)
{
    Action action;
    if (subtype != "scroll")
        failArgument("A wheel does no " + subtype);
    constexpr double most = 2147483647;
    action.kind = Kind::Scroll;
    action.duration = durationOf(item);
    action.origin = originOf(item, false);
    action.x = required(integerMember(item, "x", -most, most), "x");
    action.y = required(integerMember(item, "y", -most, most), "y");
    action.deltaX = int(required(integerMember(item, "deltaX", -most, most), "deltaX"));
    action.deltaY = int(required(integerMember(item, "deltaY", -most, most), "deltaY"));
    return action;
}

Action readItem(const QString &type, const QJsonValue &value)
{
    if (!value.isObject())
        failArgument("An action is to be an object");
    const QJsonObject item = value.toObject();
    const QString subtype = stringMember(item, "type");
    if (subtype == "pause") {
        Action pause;
        pause.duration = durationOf(item);
        return pause;
    }
    if (type == "key")
        return readKey(subtype, item);
    if (type == "pointer")
        return readPointer(subtype, item);
    if (type == "wheel")
        return readWheel(subtype, item);
    failArgument("A source without a device only pauses");
}

QString pointerTypeOf(const QJsonObject &sequence)
{
    const QJsonValue parameters = sequence.value("parameters");
    if (parameters.isUndefined())
        return "mouse";
    if (!parameters.isObject())
        failArgument("\"parameters\" is to be an object");
    const QJsonValue type = parameters.toObject().value("pointerType");
    if (type.isUndefined())
        return "mouse";
    if (!QStringList{"mouse", "pen", "touch"}.contains(type.toString()))
        failArgument("\"pointerType\" is to be mouse, pen or touch");
    return type.toString();
}

} // namespace

Ticks readActions(const QJsonObject &parameters, InputState &state)
{
    Ticks ticks;
    const QJsonArray sources = arrayMember(parameters, "actions");
    for (const QJsonValue &value : sources) {
        if (!value.isObject())
            failArgument("A sequence of actions is to be an object");
        const QJsonObject sequence = value.toObject();
        const QString type = stringMember(sequence, "type");
        if (!QStringList{"none", "key", "pointer", "wheel"}.contains(type))
            failArgument("There is no input source of type " + type);
        const QString id = stringMember(sequence, "id");
        InputSource fresh;
        fresh.type = type;
        fresh.finger = state.sources.size();
        if (type == "pointer")
            fresh.pointerType = pointerTypeOf(sequence);
        const auto known = state.sources.constFind(id);
        if (known != state.sources.constEnd() &&
            (known->type != type || known->pointerType != fresh.pointerType))
            failArgument("The input source \"" + id + "\" is of another type");
        const QJsonArray items = arrayMember(sequence, "actions");
        if (known == state.sources.constEnd())
            state.sources[id] = fresh;
        for (int index = 0; index < items.size(); ++index) {
            Action action = readItem(type, items[index]);
            action.source = id;
            if (ticks.size() <= index)
                ticks.append(QVector<Action>());
            ticks[index].append(action);
        }
    }
    return ticks;
}
