// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMap>
#include <QStringList>

/** What can be wrong with anything that a receiver sends, whatever was asked of it. */
enum class Finding {
    OtherConnection, ///< Bytes on the connection that only takes commands.
    Magic,
    Pieces,      ///< A frame that was not written at once.
    TooLarge,    ///< A payload that the program skips.
    UnknownType, ///< A message of no row.
    EventForm,
    UnaskedAnswer,
    Flood,
};

/** Collects what is seen in passing during all checks; a few of each kind. */
class Findings
{
public:
    void note(Finding finding, const QString &sentence)
    {
        QStringList &noted = m_noted[finding];
        if (noted.size() < mostKept && !noted.contains(sentence))
            noted += sentence;
    }

    QStringList of(Finding finding) const { return m_noted.value(finding); }

private:
    static constexpr int mostKept = 5;

    QMap<Finding, QStringList> m_noted;
};
