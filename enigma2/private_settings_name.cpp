// SPDX-License-Identifier: Apache-2.0
#include "enigma2/private_settings_name.h"

std::optional<QString> privateSettingsName(const QString &portalUrl)
{
    const QString separator = "://";
    const int start = portalUrl.indexOf(separator);
    if (start < 0)
        return std::nullopt;
    QString host = portalUrl.mid(start + separator.size()).section('/', 0, 0);
    host.replace('.', '_').replace(':', '_');
    return "private_settings_" + host;
}
