// SPDX-License-Identifier: Apache-2.0
#include "app/log_sink.h"

#include <QFile>
#include <QString>
#include <QTextStream>
#include <QTime>

void writeToLog(QtMsgType, const QMessageLogContext &, const QString &message)
{
    QFile file("/tmp/vesprel.log");
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        return;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    // As one text into an unbuffered file: the line leaves in a single write, so that threads do
    // not mix theirs.
    const QString line = QTime::currentTime().toString(Qt::TextDate) + ": " + message + '\n';
    stream << line << Qt::flush;
}
