// SPDX-License-Identifier: Apache-2.0
/*
 * Input through the display, and the text of dialogs.
 */
#include "desktop/driver/arguments.h"
#include "desktop/driver/session.h"
#include "desktop/driver/webdriver_error.h"

namespace {

constexpr double settleTime = 10000; ///< ms

} // namespace

Session::Place Session::place()
{
    const QJsonObject answer = ask("place").value("value").toObject();
    const QJsonArray size = answer.value("size").toArray();
    return {answer.value("x").toInt(), answer.value("y").toInt(), size.at(0).toDouble(),
            size.at(1).toDouble(), quint32(answer.value("window").toDouble())};
}

void Session::settle(quint32 window)
{
    m_box.display().mark(window, ++m_mark);
    askOnce("waitForMark", {{"number", double(m_mark)}}, deadlineAfter(settleTime));
}

ActionContext Session::actionContext()
{
    const Place where = place();
    ActionContext context;
    context.display = &m_box.display();
    context.originX = where.x;
    context.originY = where.y;
    context.width = where.width;
    context.height = where.height;
    context.centreOf = [this](const QJsonValue &element) {
        const QJsonArray point = callPage("centre", {element}).toArray();
        return QPair<double, double>(point.at(0).toDouble(), point.at(1).toDouble());
    };
    context.scroll = [this](int x, int y, int deltaX, int deltaY) {
        ask("scroll", {{"x", x}, {"y", y}, {"deltaX", deltaX}, {"deltaY", deltaY}});
    };
    context.touch = [this](int finger, const char *step, int x, int y) {
        ask("touch", {{"finger", finger}, {"step", step}, {"x", x}, {"y", y}});
    };
    context.settle = [this, where] {
        m_box.display().mark(where.window, ++m_mark);
        return askOnce("waitForMark", {{"number", double(m_mark)}}, deadlineAfter(settleTime))
            .value("prompt")
            .toBool();
    };
    return context;
}

QJsonValue Session::performActions(const CommandCall &call)
{
    handlePrompts();
    InputState changed = inputState();
    const Ticks ticks = readActions(call.parameters, changed);
    inputState() = changed;
    ::performActions(ticks, inputState(), actionContext());
    return {};
}

QJsonValue Session::releaseActions(const CommandCall &)
{
    handlePrompts();
    ::releaseActions(inputState(), actionContext());
    return {};
}

QJsonValue Session::sendAlertText(const CommandCall &call)
{
    const QString text = stringMember(call.parameters, "text");
    requirePrompt();
    const QJsonObject answer = askOnce("writePrompt", {{"text", text}}, deadlineAfter(settleTime));
    if (answer.contains("error"))
        throw errorOf(answer);
    return {};
}
