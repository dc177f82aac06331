// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDebug>

#include <initializer_list>
#include <type_traits>

/** An item of a record: a value that outlives the record, and what writes it to the stream. */
struct LogItem
{
    const void *value;
    void (*write)(QDebug &stream, const void *value);
};

/** Writes items as logRecord() does, which is what to call. */
void writeLogRecord(std::initializer_list<LogItem> items);

/** Writes text as logRecord() does; its value is the text itself. */
void writeLogText(QDebug &stream, const void *text);

/** Applies a manipulator to the stream; its value is the function itself. */
void writeLogManipulator(QDebug &stream, const void *manipulator);

/** A manipulator, such as Qt::hex. */
inline LogItem logItem(QTextStream &(&manipulator)(QTextStream &))
{
    return {reinterpret_cast<const void *>(manipulator), writeLogManipulator};
}

template <typename Item>
LogItem logItem(const Item &item)
{
    // A byte array converts to a text too, but is written with quotes and up to its end.
    if constexpr (std::is_convertible_v<const Item &, const char *> && !std::is_class_v<Item>) {
        return {static_cast<const char *>(item), writeLogText};
    } else {
        return {&item, [](QDebug &stream, const void *value) {
                    stream << *static_cast<const Item *>(value);
                }};
    }
}

/**
 * Writes one debug record of the category "default": the items in order, separated as a debug
 * stream separates them (one blank, strings of type QString in quotes, string literals plain).
 * Nothing is formatted while the category's debug level is switched off. Any thread.
 *
 * Two words an item are all that a call adds to the program: hundreds of slots make one.
 */
template <typename... Items>
void logRecord(const Items &...items)
{
    writeLogRecord({logItem(items)...});
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
