// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>
#include <QTest>

/** Makes content the whole of a file, creating its folders; ends the test program on failure. */
void writeFile(const QString &path, const QByteArray &content);

/** Whole content of a file; "(no file)" for one that cannot be read. */
QByteArray contentOf(const QString &path);

/** Adds one row of test data. */
template <typename... Values>
void row(const char *name, const Values &...values)
{
    (QTest::newRow(name) << ... << values);
}
