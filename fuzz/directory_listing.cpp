// SPDX-License-Identifier: Apache-2.0
// A listing is complete whatever the names are, and is read back where they are harmless; a file of
// a folder is in it if it ends in one of the portal's extensions.
#include "api/directory_listing.h"
#include "fuzz/support/input.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>

namespace {

const QStringList fileNames = {"a.mp4", "b.TS", "c.tar.gz", ".d.ts", "e"};

/** A folder with these files and one below. */
class Folder
{
public:
    Folder()
    {
        for (const QString &name : fileNames) {
            QFile file(m_folder.filePath(name));
            FUZZ_CHECK(file.open(QIODevice::WriteOnly));
        }
        FUZZ_CHECK(QDir(m_folder.path()).mkdir("Movies"));
    }

    QString path() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
};

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

QJsonArray filesOf(const QString &listing) { return between(listing, "var files = [", "];"); }

void listNames(Input &input)
{
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
        return;
    const QJsonArray listed = between(text, "var dirs = [", "];");
    FUZZ_CHECK(listed.size() == directories.size());
    FUZZ_CHECK(filesOf(text).size() == files.size());
    for (int i = 0; i < directories.size(); ++i)
        FUZZ_CHECK(listed.at(i).toString() == directories.at(i) + '/');
}

void listFolder(const QString &below, const QString &extensions)
{
    static const Folder folder;
    const QString path = folder.path() + '/' + below;
    if (path.contains(QChar(0)) || !QFileInfo::exists(path))
        FUZZ_CHECK(directoryListing(path, extensions) == listingText({}, {}));
    static const QRegularExpression plain("^\\.\\w+( \\.\\w+)*$");
    const QString listing = directoryListing(folder.path(), extensions);
    FUZZ_CHECK(listing.startsWith("var dirs = [\"Movies/\"];"));
    const QJsonArray files = filesOf(listing);
    FUZZ_CHECK(files.size() <= fileNames.size());
    if (!plain.match(extensions).hasMatch())
        return;
    const QStringList endings = extensions.split(' ');
    const auto isWanted = [&endings](const QString &name) {
        return std::any_of(endings.begin(), endings.end(),
                           [&name](const QString &ending) { return name.endsWith(ending); });
    };
    FUZZ_CHECK(files.size() == std::count_if(fileNames.begin(), fileNames.end(), isWanted));
    for (const QJsonValue &file : files)
        FUZZ_CHECK(isWanted(file.toObject().value("name").toString()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    const QString directory = QString::fromUtf8(input.line());
    const std::optional<QString> disk = internalDiskPath(directory);
    FUZZ_CHECK(!disk || (disk->startsWith("./USB-345-1/") && directory.contains("/media/")));
    const QString extensions = QString::fromUtf8(input.line());
    FUZZ_CHECK(!listedPatterns(extensions).isEmpty());
    listFolder(directory, extensions);
    listNames(input);
    return 0;
}
