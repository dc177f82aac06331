// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/arguments.h"

#include "desktop/driver/webdriver_error.h"

#include <cmath>

bool isInteger(const QJsonValue &value)
{
    return value.isDouble() && std::trunc(value.toDouble()) == value.toDouble();
}

QString stringMember(const QJsonObject &object, const char *name)
{
    const QJsonValue value = object.value(QLatin1String(name));
    if (!value.isString())
        failArgument(QString("\"%1\" is to be a string").arg(name));
    return value.toString();
}

QJsonArray arrayMember(const QJsonObject &object, const char *name)
{
    const QJsonValue value = object.value(QLatin1String(name));
    if (!value.isArray())
        failArgument(QString("\"%1\" is to be an array").arg(name));
    return value.toArray();
}

bool boolMember(const QJsonObject &object, const char *name, bool fallback)
{
    const QJsonValue value = object.value(QLatin1String(name));
    if (value.isUndefined())
        return fallback;
    if (!value.isBool())
        failArgument(QString("\"%1\" is to be true or false").arg(name));
    return value.toBool();
}

std::optional<double> numberMember(const QJsonObject &object, const char *name, double low,
                                   double high)
{
    const QJsonValue value = object.value(QLatin1String(name));
    if (value.isUndefined())
        return std::nullopt;
    if (!value.isDouble() || value.toDouble() < low || value.toDouble() > high)
        failArgument(
            QString("\"%1\" is to be a number from %2 to %3").arg(name).arg(low).arg(high));
    return value.toDouble();
}

std::optional<double> integerMember(const QJsonObject &object, const char *name, double low,
                                    double high)
{
    const auto number = numberMember(object, name, low, high);
    if (number && std::trunc(*number) != *number)
        failArgument(QString("\"%1\" is to be an integer").arg(name));
    return number;
}
