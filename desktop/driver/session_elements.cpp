// SPDX-License-Identifier: Apache-2.0
/*
 * Elements: finding them, what they are like, and what is done to them.
 */
#include "desktop/driver/arguments.h"
#include "desktop/driver/session.h"
#include "desktop/driver/webdriver_error.h"

#include <QFileInfo>

#include <thread>

namespace {

using std::chrono_literals::operator""ms;

constexpr auto implicitPoll = 15ms;

QString strategyOf(const CommandCall &call)
{
    static const QStringList strategies = {"css selector", "link text", "partial link text",
                                           "tag name", "xpath"};
    const QString strategy = stringMember(call.parameters, "using");
    if (!strategies.contains(strategy))
        failArgument("There is no strategy " + strategy.left(100));
    return strategy;
}

} // namespace

QJsonValue Session::activeElement(const CommandCall &) { return callPage("active"); }

QJsonArray Session::find(const CommandCall &call, bool onlyFirst)
{
    const QString strategy = strategyOf(call);
    const QString selector = stringMember(call.parameters, "value");
    const QJsonValue root =
        call.variables.contains("element id") ? QJsonValue(elementOf(call)) : QJsonValue();
    const Deadline deadline = deadlineAfter(m_request.timeouts.implicit);
    for (;;) {
        const QJsonArray found = callPage("find", {strategy, selector, root, onlyFirst}).toArray();
        if (!found.isEmpty() || (deadline && std::chrono::steady_clock::now() >= *deadline))
            return found;
        std::this_thread::sleep_for(implicitPoll);
    }
}

QJsonValue Session::findElement(const CommandCall &call)
{
    const QJsonArray found = find(call, true);
    if (found.isEmpty())
        fail("no such element",
             "Nothing matches " + call.parameters.value("value").toString().left(200));
    return found.first();
}

QJsonValue Session::findElements(const CommandCall &call) { return find(call, false); }

QJsonValue Session::findInShadowRoot(const CommandCall &call)
{
    strategyOf(call);
    stringMember(call.parameters, "value");
    handlePrompts();
    fail("no such shadow root", "The engine has no shadow roots.");
}

QJsonValue Session::elementState(const CommandCall &call)
{
    QString command = call.name;
    if (command == "computedrole")
        command = "role";
    else if (command == "computedlabel")
        command = "label";
    QJsonArray arguments{elementOf(call)};
    if (call.variables.contains("name"))
        arguments.append(call.variables.value("name"));
    return callPage(command, arguments);
}

QJsonValue Session::click(const CommandCall &call)
{
    const QJsonValue point = callPage("click", {elementOf(call)});
    if (!point.isArray())
        return {};
    const Place where = place();
    Display &display = m_box.display();
    display.movePointer(where.x + point.toArray().at(0).toInt(),
                        where.y + point.toArray().at(1).toInt());
    display.pressButton(1, true);
    display.pressButton(1, false);
    settle(where.window);
    const QJsonObject current = state();
    if (current.value("loading").toBool()) {
        try {
            waitForLoad(deadlineAfter(m_request.timeouts.pageLoad));
        } catch (const WebDriverError &error) {
            // Where a link leads to is the next command's business.
            if (error.code == "timeout")
                throw;
        }
    }
    return {};
}

QJsonValue Session::onceInteractable(const std::function<QJsonValue()> &action)
{
    const Deadline deadline = deadlineAfter(m_request.timeouts.implicit);
    for (;;) {
        try {
            return action();
        } catch (const WebDriverError &error) {
            if (error.code != "element not interactable" ||
                (deadline && std::chrono::steady_clock::now() >= *deadline))
                throw;
        }
        std::this_thread::sleep_for(implicitPoll);
    }
}

QJsonValue Session::clear(const CommandCall &call)
{
    return onceInteractable([this, &call] { return callPage("clear", {elementOf(call)}); });
}

QJsonValue Session::sendKeys(const CommandCall &call)
{
    const QString text = stringMember(call.parameters, "text");
    return onceInteractable([this, &call, &text] {
        sendToElement(elementOf(call), text);
        return QJsonValue();
    });
}

void Session::sendToElement(const QJsonObject &element, const QString &text)
{
    const QString kind =
        callPage("prepareTyping", {element, text, m_request.strictFileInteractability}).toString();
    if (kind == "done")
        return;
    if (kind == "file" || kind == "files") {
        chooseFiles(element, text.split('\n'), kind == "files");
        return;
    }
    ask("type", {{"text", text}});
}

void Session::chooseFiles(const QJsonObject &element, const QStringList &files, bool several)
{
    if (!several && files.size() != 1)
        failArgument("The field takes one file");
    QJsonArray paths = callPage("pathsOf", {element}).toArray();
    for (const QString &file : files) {
        const QFileInfo info(file);
        if (!info.isFile())
            failArgument("There is no file \"" + file.left(1000) + '"');
        paths.append(info.absoluteFilePath());
    }
    ask("dropFiles", {{"element", element}, {"paths", paths}});
}
