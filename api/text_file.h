// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <optional>

/*
 * Text files of the box in UTF-8, opened and closed within each call. Names come from portals
 * unchecked, so only regular files are touched: a device or a pipe could hold the caller for ever.
 * GUI thread.
 */

/**
 * First word of a file, words being separated by white space; empty if there is none. Nothing if
 * the file is missing, unreadable or no regular file.
 */
std::optional<QString> firstWordOfFile(const QString &path);

/** Makes text the whole content of a file, which need not exist; false if it cannot be opened. */
bool replaceFile(const QString &path, const QString &text);
