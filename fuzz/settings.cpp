// SPDX-License-Identifier: Apache-2.0
// Whatever the settings file of a portal holds, the last setting stored is there, and the others
// of a sound file stay; a text that was read of a file is written and read again as it is.
#include "api/settings_file.h"
#include "api/settings_text.h"
#include "api/text_file.h"
#include "fuzz/support/input.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <algorithm>
#include <numeric>

namespace {

bool isPlain(const QString &text)
{
    return std::none_of(text.begin(), text.end(), [](QChar c) {
        return c.isSpace() || c.isSurrogate() || c == QChar::ByteOrderMark || c.isNull();
    });
}

void store(const QString &stored, const QVector<Setting> &settings)
{
    const QByteArray content = settingsText(stored, settings);
    const QJsonDocument document = QJsonDocument::fromJson(stored.toUtf8());
    FUZZ_CHECK(!content.isEmpty());
    QByteArray oneByOne = stored.toUtf8();
    for (const Setting &setting : settings)
        oneByOne = settingsText(firstWord(oneByOne), {setting});
    FUZZ_CHECK(content == oneByOne);
    const bool arePlain = isPlain(stored) && !stored.contains("\\u") &&
                          std::all_of(settings.begin(), settings.end(), [](const Setting &setting) {
                              return isPlain(setting.first) && isPlain(setting.second);
                          });
    if (document.isArray() || !arePlain)
        return;
    const QJsonObject before = settingsIn(stored);
    const QJsonObject after = settingsIn(firstWord(content));
    FUZZ_CHECK(after.value(settings.last().first).toString() == settings.last().second);
    for (auto old = before.begin(); old != before.end(); ++old) {
        const bool isStored =
            std::any_of(settings.begin(), settings.end(),
                        [&](const Setting &set) { return set.first == old.key(); });
        FUZZ_CHECK(isStored || after.contains(old.key()));
    }
}

/** The same in a file. */
void storeInFile(const QByteArray &bytes, const QVector<Setting> &settings)
{
    // In memory, where there is such a folder: each file waits for its disk.
    static const QTemporaryDir folder(
        QFileInfo("/dev/shm").isWritable() ? QString("/dev/shm/vesprel-fuzz-XXXXXX") : QString());
    const QString path = folder.filePath("settings");
    QFile file(path);
    FUZZ_CHECK(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    const QString word = firstWord(bytes);
    FUZZ_CHECK(firstWordOfFile(path) == word);
    const SettingsFile settingsFile(path);
    settingsFile.write(settings);
    const QString content = QString::fromUtf8(settingsText(word, settings));
    FUZZ_CHECK(textOfFile(path) == content);
    const QJsonValue last = settingsIn(firstWord(content.toUtf8())).value(settings.last().first);
    FUZZ_CHECK(settingsFile.read(settings.last().first, "none") == last.toString("none"));

    FUZZ_CHECK(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    const std::optional<QString> text = textOfFile(path);
    FUZZ_CHECK(text && replaceFile(path, *text) == Replacement::Done && textOfFile(path) == text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    QVector<Setting> settings(input.byte() % 8 + 1);
    for (Setting &setting : settings) {
        setting.first = QString::fromUtf8(input.line());
        setting.second = QString::fromUtf8(input.line());
    }
    const QByteArray bytes = input.rest();
    store(firstWord(bytes), settings);
    // A file takes a hundred times as long, so few inputs have one.
    if (std::accumulate(data, data + size, 0U) % 256 == 0)
        storeInFile(bytes, settings);
    return 0;
}
