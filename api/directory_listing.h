// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <optional>

/**
 * Where the box really keeps a directory that a portal names as one of its internal disk; nothing
 * for any other directory. The result is relative to the working directory. Any thread.
 */
std::optional<QString> internalDiskPath(const QString &directory);

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
