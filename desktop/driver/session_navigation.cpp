// SPDX-License-Identifier: Apache-2.0
/*
 * Loading pages.
 */
#include "desktop/driver/arguments.h"
#include "desktop/driver/session.h"
#include "desktop/driver/webdriver_error.h"

#include <QUrl>

#include <thread>

namespace {

using std::chrono_literals::operator""ms;

constexpr auto poll = 3ms;
constexpr auto newLoadTime = 60ms; ///< A failed load may be one that a script replaced.

bool isPast(const Deadline &deadline)
{
    return deadline && std::chrono::steady_clock::now() >= *deadline;
}

} // namespace

void Session::waitForLoad(const Deadline &deadline)
{
    if (m_request.pageLoadStrategy == "none")
        return;
    const char *busy = m_request.pageLoadStrategy == "eager" ? "beforeCommit" : "loading";
    Deadline failed;
    for (;;) {
        const QJsonObject current = state();
        // A dialog is the next command's business.
        if (!current.contains("window") || !current.value("prompt").toObject().isEmpty())
            return;
        if (!current.value(QLatin1String(busy)).toBool()) {
            if (current.value("succeeded").toBool() || m_request.pageLoadStrategy == "eager")
                return;
            if (!failed)
                failed = std::chrono::steady_clock::now() + newLoadTime;
            else if (isPast(failed))
                fail("unknown error", "The page cannot be loaded.");
        }
        if (isPast(deadline))
            fail("timeout", "The page did not load in time.");
        std::this_thread::sleep_for(poll);
    }
}

QJsonValue Session::load(const QString &method, const QJsonObject &params)
{
    handlePrompts();
    const Deadline deadline = deadlineAfter(m_request.timeouts.pageLoad);
    QJsonObject answer = askOnce(method, params, deadline ? deadline : deadlineAfter(3e8));
    if (answer.value("error") == QLatin1String("blocked")) {
        handlePrompt(answer.value("prompt").toObject());
        answer = askOnce(method, params, deadline);
    }
    if (answer.contains("error"))
        fail(answer.value("error").toString().toLatin1().constData(),
             answer.value("message").toString());
    if (answer.value("value").toBool())
        waitForLoad(deadline);
    return {};
}

QJsonValue Session::navigate(const CommandCall &call)
{
    const QString text = stringMember(call.parameters, "url");
    const QUrl url(text, QUrl::TolerantMode);
    requireWindow();
    if (text.isEmpty() || !url.isValid() || url.scheme().isEmpty() ||
        (url.scheme().startsWith("http") && url.host().isEmpty()))
        failArgument("\"url\" is to be an absolute URL");
    load("load", {{"url", text}});
    m_frame.clear();
    return {};
}

QJsonValue Session::url(const CommandCall &)
{
    const WholeWindow whole(*this);
    return callPage("url");
}

QJsonValue Session::back(const CommandCall &)
{
    load("traverse", {{"delta", -1}});
    return {};
}

QJsonValue Session::forward(const CommandCall &)
{
    load("traverse", {{"delta", 1}});
    return {};
}

QJsonValue Session::refresh(const CommandCall &)
{
    load("reload", {});
    m_frame.clear();
    return {};
}

QJsonValue Session::title(const CommandCall &)
{
    const WholeWindow whole(*this);
    return callPage("title");
}
