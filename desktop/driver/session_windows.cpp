// SPDX-License-Identifier: Apache-2.0
/*
 * Windows and frames.
 */
#include "desktop/driver/arguments.h"
#include "desktop/driver/session.h"
#include "desktop/driver/webdriver_error.h"

#include <utility>

QJsonValue Session::windowHandle(const CommandCall &)
{
    requireWindow();
    return m_window;
}

QJsonValue Session::windowHandles(const CommandCall &)
{
    return ask("windows").value("value").toObject().value("handles");
}

QJsonValue Session::closeWindow(const CommandCall &)
{
    handlePrompts();
    const QJsonArray left = ask("closeWindow").value("value").toArray();
    m_inputs.remove(m_window);
    if (left.isEmpty())
        m_over = true;
    return left;
}

QJsonValue Session::switchToWindow(const CommandCall &call)
{
    const QString handle = stringMember(call.parameters, "handle");
    const QJsonObject prompt = state().value("prompt").toObject();
    if (!prompt.isEmpty() && handle != m_window) {
        throw WebDriverError{"unexpected alert open",
                             "A dialog holds the window.",
                             {{"text", prompt.value("text").toString()}},
                             {}};
    }
    if (!windowHandles(call).toArray().contains(handle))
        fail("no such window", "There is no window " + handle.left(100) + '.');
    m_window = handle;
    m_frame.clear();
    if (prompt.isEmpty())
        ask("selectWindow");
    return {};
}

QJsonValue Session::newWindow(const CommandCall &call)
{
    const QJsonValue type = call.parameters.value("type");
    if (!type.isUndefined() && !type.isNull() && !type.isString())
        failArgument("\"type\" is to be a string");
    handlePrompts();
    const QJsonValue handle = ask("openWindow").value("value");
    // The favourites lie over the portal, in the same window of the display.
    return QJsonObject{{"handle", handle}, {"type", "tab"}};
}

QJsonValue Session::switchToFrame(const CommandCall &call)
{
    const QJsonValue id = call.parameters.value("id");
    const bool element = id.isObject() && id.toObject().contains(elementKey);
    if (id.isUndefined() || (!id.isNull() && !id.isDouble() && !element))
        failArgument("\"id\" is to be null, a number or an element");
    if (id.isNull()) {
        handlePrompts();
        m_frame.clear();
        return {};
    }
    QJsonValue index = id;
    if (id.isDouble()) {
        if (!isInteger(id) || id.toDouble() < 0 || id.toDouble() > 65535)
            failArgument("\"id\" is to be from 0 to 65535");
    } else {
        if (!id.toObject()[elementKey].isString())
            failArgument("The element's reference is to be a string");
        index = callPage("frameIndex", {id});
    }
    const QString child = ask("childFrame", {{"index", index}}).value("value").toString();
    if (m_frame.isEmpty())
        m_parentFrames.clear();
    m_parentFrames.append(std::exchange(m_frame, child));
    return {};
}

QJsonValue Session::switchToParentFrame(const CommandCall &)
{
    requireWindow();
    if (m_frame.isEmpty())
        return {};
    // The frame itself may be gone; only its parent has to be there.
    const QString child = std::exchange(m_frame, m_parentFrames.last());
    try {
        ask("enterFrame");
    } catch (const WebDriverError &) {
        m_frame = child;
        throw;
    }
    m_parentFrames.removeLast();
    return {};
}

QJsonValue Session::windowRect(const CommandCall &)
{
    const WholeWindow whole(*this);
    return callPage("outerRect");
}

QJsonValue Session::setWindowRect(const CommandCall &call)
{
    constexpr double most = 2147483647;
    constexpr std::pair<const char *, double> members[] = {
        {"width", 0}, {"height", 0}, {"x", -most - 1}, {"y", -most - 1}};
    QJsonObject wanted;
    for (const auto &[name, least] : members) {
        if (call.parameters.value(QLatin1String(name)).isNull())
            continue;
        if (const auto number = numberMember(call.parameters, name, least, most))
            wanted[QLatin1String(name)] = *number;
    }
    return arrangeWindow(wanted);
}

QJsonValue Session::changeWindowState(const CommandCall &call)
{
    // A box's window without anything around it fills the screen either way.
    return arrangeWindow({{call.name == "minimize" ? "hide" : "fill", true}});
}

QJsonValue Session::arrangeWindow(const QJsonObject &wanted)
{
    const WholeWindow whole(*this);
    handlePrompts();
    ask("arrange", wanted);
    return callPage("outerRect");
}
