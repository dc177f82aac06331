#include "api/user_data.h"

#include "api/settings_file.h"
#include "platform/box_paths.h"

#include <QFile>

namespace {

bool replaceContent(const QString &path, const QString &text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(text.toUtf8());
    return true;
}

} // namespace

QString loadUserData(const QString &fileName)
{
    // Portals count on these layouts, whatever anybody saved under the name.
    if (fileName == "keyboard.json")
        return R"({"layouts":["en", "ru", "uk", "de", "tr"],"order":["en", "ru", "uk", "de", "tr"] })";
    return firstWordOfFile(homeFile(fileName)).value_or(QString());
}

void saveUserData(const QString &fileName, const QString &data)
{
    replaceContent(homeFile(fileName), data);
}

std::optional<QString> readBoxParameters()
{
    QFile file(BoxPaths::parameterFile());
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return QString::fromUtf8(file.readAll());
}

bool writeBoxParameters(const QString &text)
{
    return replaceContent(BoxPaths::parameterFile(), text);
}
