// SPDX-License-Identifier: Apache-2.0
#include "desktop/script/line_pattern.h"

#include <algorithm>

namespace {

constexpr int mostLines = 10000;

} // namespace

LinePattern::LinePattern(const QString &text)
    : m_beginning(text)
    , m_isExpression(text.size() > 2 && text.startsWith('/') && text.endsWith('/'))
{
    if (!m_isExpression)
        return;
    m_expression.setPattern(text.mid(1, text.size() - 2));
    if (!m_expression.isValid())
        m_failure =
            QString("%1 is no regular expression: %2").arg(text, m_expression.errorString());
}

bool LinePattern::matches(const QString &line) const
{
    return m_isExpression ? m_expression.match(line).hasMatch() : line.startsWith(m_beginning);
}

void PrintedLines::note(const QString &printed)
{
    m_lines += printed.split('\n');
    if (m_lines.size() > mostLines)
        m_lines.erase(m_lines.begin(), m_lines.begin() + (m_lines.size() - mostLines));
}

bool PrintedLines::take(const LinePattern &pattern)
{
    const auto line = std::find_if(m_lines.begin(), m_lines.end(), [&pattern](const QString &text) {
        return pattern.matches(text);
    });
    if (line == m_lines.end())
        return false;
    m_lines.erase(line);
    return true;
}

void PrintedLines::forget(const LinePattern &pattern)
{
    while (take(pattern)) {
    }
}
