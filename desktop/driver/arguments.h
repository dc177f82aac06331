// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <optional>

/*
 * Members of a command's parameters, checked. A member of the wrong type or range throws "invalid
 * argument" with its name.
 */

constexpr double maxSafeInteger = 9007199254740991.0;

/** The member that makes an object a reference to an element. */
constexpr char elementKey[] = "element-6066-11e4-a52e-4f735466cecf";

/** Whether a value is a number without a fraction. */
bool isInteger(const QJsonValue &value);

QString stringMember(const QJsonObject &object, const char *name);
QJsonArray arrayMember(const QJsonObject &object, const char *name);
bool boolMember(const QJsonObject &object, const char *name, bool fallback);

/** A number from low to high; nothing where the member is missing. */
std::optional<double> numberMember(const QJsonObject &object, const char *name, double low,
                                   double high);

/** The same for numbers without a fraction. */
std::optional<double> integerMember(const QJsonObject &object, const char *name, double low,
                                    double high);
