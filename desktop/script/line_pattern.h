// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>

/** What a printed line has to be like: begin with a text or, written /.../, match an expression. */
class LinePattern
{
public:
    LinePattern() = default;

    /** Matches the lines that begin with this text, or whose some part matches /EXPRESSION/. */
    explicit LinePattern(const QString &text);

    /** What is wrong with the expression, otherwise empty. */
    QString failure() const { return m_failure; }

    bool matches(const QString &line) const;

private:
    QString m_beginning;
    QRegularExpression m_expression;
    bool m_isExpression = false;
    QString m_failure;
};

/** The lines that may still meet an expectation: each meets one. */
class PrintedLines
{
public:
    /** Adds what was printed, one line or several; of very many the first are forgotten. */
    void note(const QString &printed);

    /** Takes the first line that matches away; false if there is none. */
    bool take(const LinePattern &pattern);

    void forget() { m_lines.clear(); }

    /** Forgets the lines that match. */
    void forget(const LinePattern &pattern);

private:
    QStringList m_lines;
};
