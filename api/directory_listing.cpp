// SPDX-License-Identifier: Apache-2.0
#include "api/directory_listing.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

namespace {

const char diskAsPortalsNameIt[] = "/media/HDD-SATA-1/";
const char diskWithTripleSlash[] = "///media/HDD-SATA-1/";
const char diskOfTheBox[] = "./USB-345-1/";

// Also hidden entries: a portal hides for itself what it does not want to show.
constexpr QDir::Filters everyDirectory = QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot;
constexpr QDir::Filters everyFile = QDir::Files | QDir::Hidden | QDir::CaseSensitive;

// An iterator keeps the file system's order; a QDir would sort.
QStringList directoriesIn(const QString &directory)
{
    QStringList names;
    QDirIterator entry(directory, everyDirectory);
    while (entry.hasNext()) {
        entry.next();
        names.append(entry.fileName());
    }
    return names;
}

QVector<ListedFile> filesIn(const QString &directory, const QStringList &patterns)
{
    QVector<ListedFile> files;
    QDirIterator entry(directory, patterns, everyFile);
    while (entry.hasNext()) {
        entry.next();
        files.append({entry.fileName(), entry.fileInfo().size()});
    }
    return files;
}

} // namespace

std::optional<QString> internalDiskPath(const QString &directory)
{
    for (const char *prefix : {diskWithTripleSlash, diskAsPortalsNameIt}) {
        if (directory.startsWith(prefix))
            return QString(directory).replace(prefix, diskOfTheBox);
    }
    return std::nullopt;
}

QString listingText(const QStringList &directories, const QVector<ListedFile> &files)
{
    // Names go in without escapes: portals look them up again byte for byte.
    QStringList directoryItems;
    for (const QString &name : directories)
        directoryItems.append('"' + name + "/\"");
    QStringList fileItems;
    for (const ListedFile &file : files)
        fileItems.append("{\"name\":\"" + file.name + "\",\"size\":" + QString::number(file.size) +
                         '}');
    return "var dirs = [" + directoryItems.join(", ") + "];var files = [" + fileItems.join(", ") +
           "];";
}

QStringList listedPatterns(const QString &extensions)
{
    return QString(extensions).replace(".", "*.").split(' ');
}

QString directoryListing(const QString &directory, const QString &extensions)
{
    // The iterator itself would cut a name at a NUL and list some other directory.
    if (!QFileInfo(directory).isDir())
        return listingText({}, {});
    return listingText(directoriesIn(directory), filesIn(directory, listedPatterns(extensions)));
}
