// SPDX-License-Identifier: Apache-2.0
// A listing is complete whatever the names are, and is read back where they are harmless.
#include "api/directory_listing.h"
#include "fuzz/support/input.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace {

bool isHarmless(const QString &name)
{
    return std::none_of(name.begin(), name.end(), [](QChar c) {
        return c < ' ' || c == '"' || c == '\\' || c == ']' || c.isSurrogate() ||
               c == QChar::ByteOrderMark;
    });
}

QJsonArray between(const QString &text, const QString &begin, const QString &end)
{
    const int from = text.indexOf(begin) + begin.size();
    const QString list = text.mid(from, text.indexOf(end, from) - from);
    return QJsonDocument::fromJson(('[' + list + ']').toUtf8()).array();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    internalDiskPath(QString::fromUtf8(input.line()));
    FUZZ_CHECK(!listedPatterns(QString::fromUtf8(input.line())).isEmpty());
    QStringList directories;
    QVector<ListedFile> files;
    bool areHarmless = true;
    while (!input.atEnd()) {
        const int kind = input.byte();
        const QString name = QString::fromUtf8(input.line());
        areHarmless = areHarmless && isHarmless(name);
        if (kind % 2 == 0)
            directories.append(name);
        else
            files.append({name, kind});
    }
    const QString text = listingText(directories, files);
    FUZZ_CHECK(text.startsWith("var dirs = [") && text.endsWith("];"));
    if (!areHarmless)
        return 0;
    const QJsonArray listed = between(text, "var dirs = [", "];");
    FUZZ_CHECK(listed.size() == directories.size());
    FUZZ_CHECK(between(text, "var files = [", "];").size() == files.size());
    for (int i = 0; i < directories.size(); ++i)
        FUZZ_CHECK(listed.at(i).toString() == directories.at(i) + '/');
    return 0;
}
