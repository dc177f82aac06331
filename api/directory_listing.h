// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/**
 * Where the box really keeps a directory that a portal names as one of its internal disk; nothing
 * for any other directory. The result is relative to the working directory. Any thread.
 */
std::optional<QString> internalDiskPath(const QString &directory);

/** A file as a listing tells of it. */
struct ListedFile
{
    QString name;
    qint64 size = 0; ///< Bytes.
};

/**
 * The script source of a listing, in the order of the names; names go in as they are. Any thread.
 */
QString listingText(const QStringList &directories, const QVector<ListedFile> &files);

/** The patterns of file names that a portal's list of extensions means. Any thread. */
QStringList listedPatterns(const QString &extensions);

/**
 * A directory's content as script source for the portal's media browser:
 *
 *     var dirs = ["Movies/"];var files = [{"name":"a.mp4","size":1024}];
 *
 * Entries stand in the file system's order, names as they are, sizes in bytes. The extensions are
 * separated by single blanks, each with its dot; a file is listed if it ends in one of them in
 * exactly that spelling. Both lists are empty for a directory that cannot be read. GUI thread.
 */
QString directoryListing(const QString &directory, const QString &extensions);
