// SPDX-License-Identifier: Apache-2.0
#include "api/setting_defaults.h"

#include <QLatin1String>

namespace {

struct SettingDefault
{
    const char *name;
    const char *byName;  ///< For GetEnv, which looks the exact name up.
    const char *byQuery; ///< For RDir, where the first row whose name begins the query's name wins.
};

// Uneven on purpose: timezone_conf_int is empty by name, but its query begins like timezone_conf's
// and so gets a usable time zone; portals rely on both.
constexpr SettingDefault settingDefaults[] = {
    {"language", "en", "en"},
    {"timezone_conf", "Europe/Kiev", "Europe/Kiev"},
    {"clock_format", "12h", nullptr},
    {"ntpurl", nullptr, "pool.ntp.org"},
    {"mtdparts", nullptr, "boot RootFs2"},
};

} // namespace

QString settingDefault(const QString &name)
{
    for (const SettingDefault &row : settingDefaults) {
        if (row.byName && name == QLatin1String(row.name))
            return QLatin1String(row.byName);
    }
    return QString();
}

QString queriedSettingDefault(const QString &query)
{
    for (const SettingDefault &row : settingDefaults) {
        if (row.byQuery && query.contains(QLatin1String("getenv ") + QLatin1String(row.name)))
            return QLatin1String(row.byQuery);
    }
    return QString();
}
