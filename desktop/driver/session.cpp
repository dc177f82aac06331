// SPDX-License-Identifier: Apache-2.0
/*
 * How a session asks its box; the commands are in the files session_*.cpp.
 */
#include "desktop/driver/session.h"

#include "desktop/driver/arguments.h"
#include "desktop/driver/webdriver_error.h"

#include <thread>

namespace {

using std::chrono_literals::operator""ms;

/** How long the program may take for what is no script and no load, in ms. */
constexpr double programTime = 30000;

/** What a dialog says; null where it says nothing. */
QJsonValue messageOf(const QJsonObject &prompt)
{
    const QString text = prompt.value("text").toString();
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

auto now() { return std::chrono::steady_clock::now().time_since_epoch().count(); }

} // namespace

Session::Session(const QString &id, const BoxPrograms &programs, const SessionRequest &request)
    : m_id(id)
    , m_request(request)
    , m_box(programs, request)
    , m_lastUse(now())
{
    const QJsonObject question{{"method", "call"},
                               {"window", m_window},
                               {"strategy", "none"},
                               {"params", QJsonObject{{"command", "userAgent"}}}};
    const auto answer = m_box.request(question, deadlineAfter(programTime));
    if (answer)
        m_request.matched["userAgent"] = (*answer).value("value");
}

void Session::giveUp()
{
    m_over = true;
    m_box.giveUp();
}

std::chrono::steady_clock::duration Session::idleTime() const
{
    return std::chrono::steady_clock::duration(m_commands > 0 ? 0 : now() - m_lastUse);
}

Session::Use::Use(Session &session)
    : m_session(session)
{
    ++m_session.m_commands;
}

Session::Use::~Use()
{
    m_session.m_lastUse = now();
    --m_session.m_commands;
}

QJsonValue Session::execute(const Endpoint &endpoint, const CommandCall &call)
{
    const Use use(*this);
    const std::lock_guard<std::mutex> turn(m_turn);
    try {
        if (!m_over)
            return (this->*endpoint.handler)(call);
    } catch (const WebDriverError &) {
        // What was ended on purpose has no last words.
        if (!m_over)
            throw;
    }
    fail("invalid session id", "The session has ended.");
}

QJsonObject Session::askOnce(const QString &method, const QJsonObject &params,
                             const Deadline &deadline)
{
    const auto answer = m_box.request({{"method", method},
                                       {"window", m_window},
                                       {"frame", m_frame},
                                       {"strategy", m_request.pageLoadStrategy},
                                       {"params", params}},
                                      deadline);
    if (!answer)
        fail("timeout", "The program does not answer; does a script of its page never end?");
    return *answer;
}

QJsonObject Session::ask(const QString &method, const QJsonObject &params)
{
    const Deadline loadDeadline = deadlineAfter(m_request.timeouts.pageLoad);
    auto pause = 1ms;
    for (;;) {
        const QJsonObject answer = askOnce(method, params, deadlineAfter(programTime));
        const QString error = answer.value("error").toString();
        if (error.isEmpty())
            return answer;
        if (error == "blocked") {
            handlePrompt(answer.value("prompt").toObject());
        } else if (error == "loading") {
            if (loadDeadline && std::chrono::steady_clock::now() >= *loadDeadline)
                fail("timeout", "The page did not load in time.");
            std::this_thread::sleep_for(pause);
            pause = std::min(pause + 1ms, 10ms);
        } else {
            throw errorOf(answer);
        }
    }
}

QJsonValue Session::callPage(const QString &command, const QJsonArray &arguments)
{
    return ask("call", {{"command", command}, {"arguments", arguments}}).value("value");
}

QJsonObject Session::elementOf(const CommandCall &call) const
{
    return {{elementKey, call.variables.value("element id")}};
}

QJsonObject Session::state()
{
    return askOnce("state", {}, deadlineAfter(programTime)).value("value").toObject();
}

void Session::requireWindow()
{
    if (!state().contains("window"))
        fail("no such window", "The window is closed.");
}

void Session::closePrompt(bool accept)
{
    const QJsonObject answer =
        askOnce("closePrompt", {{"accept", accept}}, deadlineAfter(programTime));
    if (answer.contains("error"))
        throw errorOf(answer);
}

void Session::handlePrompt(const QJsonObject &prompt)
{
    using Reaction = PromptHandler::Action;
    const PromptHandler handler = m_request.promptHandlers.forType(prompt.value("type").toString());
    if (handler.action != Reaction::Ignore)
        closePrompt(handler.action == Reaction::Accept);
    if (handler.notify) {
        const QJsonValue text = messageOf(prompt);
        throw WebDriverError{
            "unexpected alert open", "A dialog was open: " + text.toString(), {{"text", text}}, {}};
    }
}

void Session::handlePrompts()
{
    const QJsonObject current = state();
    if (!current.contains("window"))
        fail("no such window", "The window is closed.");
    const QJsonObject prompt = current.value("prompt").toObject();
    if (!prompt.isEmpty())
        handlePrompt(prompt);
}

void Session::requirePrompt()
{
    const QJsonObject current = state();
    if (!current.contains("window"))
        fail("no such window", "The window is closed.");
    if (current.value("prompt").toObject().isEmpty())
        fail("no such alert", "No dialog is open.");
}

QJsonValue Session::dismissAlert(const CommandCall &)
{
    requirePrompt();
    closePrompt(false);
    return {};
}

QJsonValue Session::acceptAlert(const CommandCall &)
{
    requirePrompt();
    closePrompt(true);
    return {};
}

QJsonValue Session::alertText(const CommandCall &)
{
    requirePrompt();
    return messageOf(state().value("prompt").toObject());
}

QJsonValue Session::getTimeouts(const CommandCall &) { return timeoutsObject(m_request.timeouts); }

QJsonValue Session::setTimeouts(const CommandCall &call)
{
    readTimeouts(call.parameters, m_request.timeouts);
    return {};
}
