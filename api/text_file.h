// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/*
 * Text files of the box in UTF-8, opened and closed within each call. Names come from portals
 * unchecked: only regular files are touched, since a device or a pipe could hold the caller for
 * ever, and a name with a NUL in it, which the system would cut there, names no file. GUI thread.
 */

/** Bytes that are read of one file; a text that needs more is not read, and a record says so. */
constexpr qint64 longestText = 16LL * 1024 * 1024;

/**
 * A file's name as the box means it. A leading ":" is a letter like any other there, while Qt looks
 * for such names among the resources inside the program. Any thread.
 */
QString diskPath(const QString &path);

/** First word of a content in UTF-8, as firstWordOfFile() finds it. Any thread. */
QString firstWord(const QByteArray &content);

/**
 * First word of a file, words being separated by white space; empty if there is none or if it is
 * too long. Nothing if the file is missing, unreadable or no regular file.
 */
std::optional<QString> firstWordOfFile(const QString &path);

/**
 * Whole text of a file, a byte order mark and NULs included; what is no UTF-8 becomes U+FFFD. Empty
 * if it is too long; nothing if the file is missing, unreadable or no regular file.
 */
std::optional<QString> textOfFile(const QString &path);

/** How replacing a file went. All but Done leave its old content as it was. */
enum class Replacement { Done, NotOpened, NotWritten };

/**
 * Makes text the whole content of a file, which need not exist. The file has either its old or its
 * new content, whatever happens in between, even if the power goes; owner and permissions stay, and
 * links are followed. Only where no other file can take its place (a folder that may not be
 * written, a file that is a mount point) it is written over, once the disk has room for all of it.
 */
Replacement replaceFile(const QString &path, const QString &text);
