// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/check/walk.h"

#include <QString>

#include <cstdio>
#include <vector>

/** A check that was made. */
struct ReportLine
{
    QString name;
    QString section;
    CheckResult result;
    qint64 milliseconds = 0;
};

/** Prints results as they come, in the Test Anything Protocol, version 13. */
class TapReport
{
public:
    explicit TapReport(std::FILE *stream);

    void add(const ReportLine &line);

    /** Says that the checks end before their time, and why. */
    void bailOut(const QString &reason);

    /** Why the checks ended before their time; empty if they did not. */
    QString cutShort() const { return m_cutShort; }

    /** Prints the number of checks and a summary. */
    void finish();

    const std::vector<ReportLine> &lines() const { return m_lines; }
    bool hasFailed() const { return m_failed > 0 || !m_cutShort.isEmpty(); }

private:
    void print(const QString &text);

    std::FILE *m_stream;
    std::vector<ReportLine> m_lines;
    int m_failed = 0;
    int m_skipped = 0;
    QString m_cutShort;
};

/**
 * Writes the lines as JUnit, and why there are no more, if they were cut short; false if the file
 * cannot be written.
 */
bool writeJunit(const QString &fileName, const std::vector<ReportLine> &lines,
                const QString &cutShort);
