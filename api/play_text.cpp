// SPDX-License-Identifier: Apache-2.0
#include "api/play_text.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <limits>

int clampedInt(double value)
{
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, lowest, highest));
}

QString configuredPlayText(const QString &configuration)
{
    const QJsonObject object = QJsonDocument::fromJson(configuration.toUtf8()).object();
    const int position = clampedInt(object.value("position").toDouble());
    return object.value("uri").toString() + " position:" + QString::number(position);
}
