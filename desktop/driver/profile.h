// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMap>
#include <QString>

/** The variables by which a box is one model or another, by name. */
using Profile = QMap<QString, QString>;

/**
 * Reads lines NAME=VALUE: the value is the rest of the line as it is, without quotes or escapes;
 * lines that are empty or begin with "#" say nothing. The failure names the first line that is
 * none of these and the profile is then empty.
 */
Profile parseProfile(const QByteArray &text, QString &failure);

/**
 * Reads the profile NAME from a folder's file NAME.env. The failure says what is wrong with it,
 * or which profiles there are.
 */
Profile readProfile(const QString &folder, const QString &name, QString &failure);
