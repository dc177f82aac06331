// SPDX-License-Identifier: Apache-2.0
#include "platform/log_record.h"

#include <QLoggingCategory>

void writeLogRecord(std::initializer_list<LogItem> items)
{
    if (!QLoggingCategory::defaultCategory()->isDebugEnabled())
        return;
    QDebug stream = QMessageLogger().debug();
    for (const LogItem &item : items)
        item.write(stream, item.value);
}

void writeLogText(QDebug &stream, const void *text) { stream << static_cast<const char *>(text); }

void writeLogManipulator(QDebug &stream, const void *manipulator)
{
    stream << reinterpret_cast<QTextStream &(*)(QTextStream &)>(const_cast<void *>(manipulator));
}
