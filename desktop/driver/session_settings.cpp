// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/session_settings.h"

#include "desktop/driver/arguments.h"
#include "desktop/driver/webdriver_error.h"

#include <QHash>

namespace {

const char fallback[] = "fallbackDefault";

const QHash<QString, PromptHandler> &knownHandlers()
{
    using Action = PromptHandler::Action;
    static const QHash<QString, PromptHandler> handlers = {
        {"dismiss", {Action::Dismiss, false}}, {"dismiss and notify", {Action::Dismiss, true}},
        {"accept", {Action::Accept, false}},   {"accept and notify", {Action::Accept, true}},
        {"ignore", {Action::Ignore, true}},
    };
    return handlers;
}

QString checkedHandler(const QJsonValue &value)
{
    if (!value.isString() || !knownHandlers().contains(value.toString()))
        failArgument("unhandledPromptBehavior has no such value");
    return value.toString();
}

std::optional<double> timeoutOf(const QString &name, const QJsonValue &value)
{
    if (value.isNull())
        return std::nullopt;
    if (!isInteger(value) || value.toDouble() < 0 || value.toDouble() > maxSafeInteger)
        failArgument(QString("The timeout \"%1\" is to be an integer from 0 on").arg(name));
    return value.toDouble();
}

QJsonValue jsonOf(const std::optional<double> &timeout)
{
    return timeout ? QJsonValue(*timeout) : QJsonValue();
}

} // namespace

void readTimeouts(const QJsonValue &value, Timeouts &timeouts)
{
    if (!value.isObject())
        failArgument("Timeouts are to be an object");
    Timeouts result = timeouts;
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (member.key() == QLatin1String("script"))
            result.script = timeoutOf(member.key(), member.value());
        else if (member.key() == QLatin1String("pageLoad"))
            result.pageLoad = timeoutOf(member.key(), member.value());
        else if (member.key() == QLatin1String("implicit"))
            result.implicit = timeoutOf(member.key(), member.value());
    }
    timeouts = result;
}

QJsonObject timeoutsObject(const Timeouts &timeouts)
{
    return {{"script", jsonOf(timeouts.script)},
            {"pageLoad", jsonOf(timeouts.pageLoad)},
            {"implicit", jsonOf(timeouts.implicit)}};
}

PromptHandlers PromptHandlers::read(const QJsonValue &value)
{
    PromptHandlers handlers;
    if (!value.isObject()) {
        handlers.m_byType[fallback] = checkedHandler(value);
        return handlers;
    }
    static const QStringList types = {"alert",   "beforeUnload", "confirm",
                                      "default", "file",         "prompt"};
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (!types.contains(member.key()))
            failArgument("unhandledPromptBehavior knows no dialogs of type " + member.key());
        handlers.m_byType[member.key()] = checkedHandler(member.value());
    }
    return handlers;
}

PromptHandler PromptHandlers::forType(const QString &type) const
{
    for (const QString &key : {type, QString("default"), QString(fallback)}) {
        if (m_byType.contains(key))
            return knownHandlers().value(m_byType[key]);
    }
    return {};
}

QJsonValue PromptHandlers::toJson() const
{
    if (m_byType.isEmpty())
        return "dismiss and notify";
    if (m_byType.contains(fallback))
        return m_byType[fallback];
    QJsonObject object;
    for (auto row = m_byType.begin(); row != m_byType.end(); ++row)
        object[row.key()] = row.value();
    return object;
}
