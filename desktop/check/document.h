// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/**
 * The first paragraphs, up to a list or a table, of a section of docs/receiver-protocol.md, which
 * is compiled in; empty if it has no section with this heading.
 */
QString sectionText(const QString &heading);

/** Where the section is, such as docs/receiver-protocol.md#one-write. */
QString sectionAddress(const QString &heading);
