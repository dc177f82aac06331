// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/webdriver_error.h"

#include <QHash>

int statusOf(const QString &code)
{
    static const QHash<QString, int> statuses = {
        {"detached shadow root", 404},
        {"element click intercepted", 400},
        {"element not interactable", 400},
        {"insecure certificate", 400},
        {"invalid argument", 400},
        {"invalid cookie domain", 400},
        {"invalid element state", 400},
        {"invalid selector", 400},
        {"invalid session id", 404},
        {"no such alert", 404},
        {"no such cookie", 404},
        {"no such element", 404},
        {"no such frame", 404},
        {"no such shadow root", 404},
        {"no such window", 404},
        {"stale element reference", 404},
        {"unknown command", 404},
        {"unknown method", 405},
    };
    return statuses.value(code, 500);
}

QJsonObject bodyOf(const WebDriverError &error)
{
    QJsonObject value{
        {"error", error.code}, {"message", error.message}, {"stacktrace", error.stack}};
    if (!error.data.isEmpty())
        value["data"] = error.data;
    return {{"value", value}};
}

WebDriverError errorOf(const QJsonObject &answer)
{
    return {answer.value("error").toString(),
            answer.value("message").toString(),
            {},
            answer.value("stack").toString()};
}

void fail(const char *code, const QString &message) { throw WebDriverError{code, message, {}, {}}; }

void failArgument(const QString &message) { fail("invalid argument", message); }
