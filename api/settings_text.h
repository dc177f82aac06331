// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QPair>
#include <QString>
#include <QVector>

/*
 * The stored form of a portal's small settings: one compact JSON object of texts. Any thread.
 */

using Setting = QPair<QString, QString>; ///< Name and value.

/** All settings of a stored text; empty if it is no JSON object. */
QJsonObject settingsIn(const QString &stored);

/**
 * A stored text after further settings were stored in their order, each as if the text had been
 * written and its first word read again in between. A text that is no JSON is lost; JSON that is
 * no object stays and takes nothing in.
 */
QByteArray settingsText(const QString &stored, const QVector<Setting> &settings);
