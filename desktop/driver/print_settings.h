// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QSet>

/**
 * The paper of Print Page from its parameters, complete and in cm, turned on its side where that is
 * asked for: "width", "height", "top", "bottom", "left", "right", "scale", "background". Throws
 * "invalid argument".
 */
QJsonObject readPrintSettings(const QJsonObject &parameters);

/** The wanted pages of so many, from 1 on; empty for all. Throws "invalid argument". */
QSet<int> readPageRanges(const QJsonArray &ranges, int pageCount);

/** How many pages a PDF that Qt wrote has; -1 for anything else. */
int pageCountOf(const QByteArray &pdf);

/** The PDF with only some of its pages. */
QByteArray withPages(const QByteArray &pdf, const QSet<int> &pages);
