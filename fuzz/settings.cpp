// SPDX-License-Identifier: Apache-2.0
// Whatever the settings file of a portal holds, the last setting stored is there, and the others
// of a sound file stay.
#include "api/settings_text.h"
#include "api/text_file.h"
#include "fuzz/support/input.h"

#include <QJsonDocument>

#include <algorithm>

namespace {

bool isPlain(const QString &text)
{
    return std::none_of(text.begin(), text.end(), [](QChar c) {
        return c.isSpace() || c.isSurrogate() || c == QChar::ByteOrderMark || c.isNull();
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    QVector<Setting> settings(input.byte() % 4 + 1);
    for (Setting &setting : settings) {
        setting.first = QString::fromUtf8(input.line());
        setting.second = QString::fromUtf8(input.line());
    }
    const QString stored = firstWord(input.rest());
    const QJsonObject before = settingsIn(stored);
    const QByteArray content = settingsText(stored, settings);
    const QJsonDocument document = QJsonDocument::fromJson(stored.toUtf8());
    FUZZ_CHECK(!content.isEmpty());
    const bool arePlain = isPlain(stored) && !stored.contains("\\u") &&
                          std::all_of(settings.begin(), settings.end(), [](const Setting &setting) {
                              return isPlain(setting.first) && isPlain(setting.second);
                          });
    if (document.isArray() || !arePlain)
        return 0;
    const QJsonObject after = settingsIn(firstWord(content));
    FUZZ_CHECK(after.value(settings.last().first).toString() == settings.last().second);
    return 0;
}
