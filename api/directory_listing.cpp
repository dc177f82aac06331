// SPDX-License-Identifier: Apache-2.0
#include "api/directory_listing.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QStringList>

namespace {

const char diskAsPortalsNameIt[] = "/media/HDD-SATA-1/";
const char diskWithTripleSlash[] = "///media/HDD-SATA-1/";
const char diskOfTheBox[] = "./USB-345-1/";

// Also hidden entries: a portal hides for itself what it does not want to show.
constexpr QDir::Filters everyDirectory = QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot;
constexpr QDir::Filters everyFile = QDir::Files | QDir::Hidden | QDir::CaseSensitive;

// An iterator keeps the file system's order; a QDir would sort.
QString listedDirectories(const QString &directory)
{
    QStringList items;
    QDirIterator entry(directory, everyDirectory);
    while (entry.hasNext()) {
        entry.next();
        items.append('"' + entry.fileName() + "/\"");
    }
    return items.join(", ");
}

// Names go in without escapes: portals look them up again byte for byte.
QString listedFiles(const QString &directory, const QStringList &patterns)
{
    QStringList items;
    QDirIterator entry(directory, patterns, everyFile);
    while (entry.hasNext()) {
        entry.next();
        items.append("{\"name\":\"" + entry.fileName() +
                     "\",\"size\":" + QString::number(entry.fileInfo().size()) + '}');
    }
    return items.join(", ");
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

QString directoryListing(const QString &directory, const QString &extensions)
{
    // The iterator itself would cut a name at a NUL and list some other directory.
    if (!QFileInfo(directory).isDir())
        return "var dirs = [];var files = [];";
    const QStringList patterns = QString(extensions).replace(".", "*.").split(' ');
    return "var dirs = [" + listedDirectories(directory) + "];var files = [" +
           listedFiles(directory, patterns) + "];";
}
