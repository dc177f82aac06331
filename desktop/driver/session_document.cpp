// SPDX-License-Identifier: Apache-2.0
/*
 * The document: its source, scripts in it, and its cookies.
 */
#include "desktop/driver/arguments.h"
#include "desktop/driver/session.h"
#include "desktop/driver/webdriver_error.h"

#include <thread>

namespace {

using std::chrono_literals::operator""ms;

constexpr const char *referenceKeys[] = {elementKey, "shadow-6066-11e4-a52e-4f735466cecf",
                                         "frame-075b-4da1-b6ba-e579c2d3230a",
                                         "window-fcc6-11e5-b4f8-330a88ab9d7f"};

/** Throws where an argument is a reference that cannot be one. */
void checkReferences(const QJsonValue &value)
{
    if (value.isArray()) {
        const QJsonArray items = value.toArray();
        for (const QJsonValue &item : items)
            checkReferences(item);
        return;
    }
    const QJsonObject object = value.toObject();
    for (const char *key : referenceKeys) {
        if (object.contains(key) && !object[key].isString())
            failArgument("A reference is to be a string");
    }
    if (object.contains(referenceKeys[1]))
        fail("no such shadow root", "The engine has no shadow roots.");
    for (const QJsonValue &member : object)
        checkReferences(member);
}

QJsonObject checkedCookie(const QJsonObject &parameters)
{
    const QJsonValue data = parameters.value("cookie");
    if (!data.isObject())
        failArgument("\"cookie\" is to be an object");
    QJsonObject cookie;
    const QJsonObject given = data.toObject();
    for (auto member = given.begin(); member != given.end(); ++member) {
        if (!member.value().isNull())
            cookie[member.key()] = member.value();
    }
    stringMember(cookie, "name");
    stringMember(cookie, "value");
    for (const char *name : {"path", "domain", "sameSite"}) {
        if (cookie.contains(QLatin1String(name)))
            stringMember(cookie, name);
    }
    boolMember(cookie, "secure", false);
    boolMember(cookie, "httpOnly", false);
    integerMember(cookie, "expiry", 0, maxSafeInteger);
    static const QStringList policies = {"None", "Lax", "Strict"};
    if (cookie.contains("sameSite") && !policies.contains(cookie.value("sameSite").toString()))
        failArgument("\"sameSite\" is to be None, Lax or Strict");
    return cookie;
}

/** By what the driver keeps of a cookie is found. */
QString keyOf(const QJsonObject &cookie)
{
    return cookie.value("name").toString() + ';' + cookie.value("path").toString("/");
}

} // namespace

QJsonValue Session::source(const CommandCall &) { return callPage("source"); }

QJsonValue Session::executeSync(const CommandCall &call) { return runScript(call, false); }

QJsonValue Session::executeAsync(const CommandCall &call) { return runScript(call, true); }

QJsonValue Session::runScript(const CommandCall &call, bool async)
{
    const QString body = stringMember(call.parameters, "script");
    const QJsonArray arguments = arrayMember(call.parameters, "args");
    checkReferences(arguments);
    const Deadline loadDeadline = deadlineAfter(m_request.timeouts.pageLoad);
    const QJsonObject params{{"body", body}, {"arguments", arguments}, {"async", async}};
    for (;;) {
        const auto answer = m_box.request({{"method", "script"},
                                           {"window", m_window},
                                           {"frame", m_frame},
                                           {"strategy", m_request.pageLoadStrategy},
                                           {"params", params}},
                                          deadlineAfter(m_request.timeouts.script));
        if (!answer) {
            // The answer to this is not waited for: the page may be in an endless loop.
            m_box.request({{"method", "abandonScript"}}, deadlineAfter(0));
            fail("script timeout", "The script did not end in time.");
        }
        const QString error = (*answer).value("error").toString();
        if (error.isEmpty())
            return (*answer).value("value");
        if (error == "blocked") {
            handlePrompt((*answer).value("prompt").toObject());
        } else if (error == "loading") {
            if (loadDeadline && std::chrono::steady_clock::now() >= *loadDeadline)
                fail("timeout", "The page did not load in time.");
            std::this_thread::sleep_for(3ms);
        } else {
            throw errorOf(*answer);
        }
    }
}

QJsonValue Session::allCookies(const CommandCall &)
{
    QJsonArray result;
    const auto cookies = ask("cookies").value("value").toArray();
    for (const QJsonValue &value : cookies) {
        QJsonObject cookie = value.toObject();
        // The engine sends cookies wherever they belong, whatever page asks for it.
        cookie["sameSite"] = m_sameSite.value(keyOf(cookie), "None");
        result.append(cookie);
    }
    return result;
}

QJsonValue Session::namedCookie(const CommandCall &call)
{
    const auto cookies = allCookies(call).toArray();
    for (const QJsonValue &cookie : cookies) {
        if (cookie.toObject().value("name").toString() == call.variables.value("name"))
            return cookie;
    }
    fail("no such cookie", "The page has no cookie " + call.variables.value("name"));
}

QJsonValue Session::addCookie(const CommandCall &call)
{
    const QJsonObject cookie = checkedCookie(call.parameters);
    ask("changeCookies", {{"cookie", cookie}});
    if (cookie.contains("sameSite"))
        m_sameSite[keyOf(cookie)] = cookie.value("sameSite").toString();
    else
        m_sameSite.remove(keyOf(cookie));
    return {};
}

QJsonValue Session::deleteCookie(const CommandCall &call)
{
    const QString name = call.variables.value("name");
    ask("changeCookies", {{"delete", name}});
    for (auto row = m_sameSite.begin(); row != m_sameSite.end();)
        row = row.key().startsWith(name + ';') ? m_sameSite.erase(row) : std::next(row);
    return {};
}

QJsonValue Session::deleteAllCookies(const CommandCall &)
{
    const auto cookies = ask("cookies").value("value").toArray();
    ask("changeCookies", {{"delete", QJsonValue()}});
    for (const QJsonValue &cookie : cookies)
        m_sameSite.remove(keyOf(cookie.toObject()));
    return {};
}
