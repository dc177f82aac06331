// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDebug>
#include <QLoggingCategory>

/**
 * Writes one debug record of the category "default": the items in order, separated as a debug
 * stream separates them (one blank, strings of type QString in quotes, string literals plain).
 * Nothing is formatted while the category's debug level is switched off. Any thread.
 */
template <typename... Items>
void logRecord(const Items &...items)
{
    if (!QLoggingCategory::defaultCategory()->isDebugEnabled())
        return;
    QDebug stream = QMessageLogger().debug();
    (stream << ... << items);
}

/** Writes a record as logRecord() does and returns the answer, which the record does not hold. */
template <typename Answer, typename... Items>
Answer loggedAnswer(const Answer &answer, const Items &...items)
{
    logRecord(items...);
    return answer;
}

/** Writes a record that ends with the result, and returns the result. */
template <typename Result, typename... Items>
Result loggedResult(const Result &result, const Items &...items)
{
    logRecord(items..., result);
    return result;
}
