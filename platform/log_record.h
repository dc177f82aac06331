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
