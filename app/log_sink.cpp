#include "app/log_sink.h"

#include <QFile>
#include <QString>
#include <QTextStream>
#include <QTime>

void writeToLog(QtMsgType, const QMessageLogContext &, const QString &message)
{
    QFile file("/tmp/vesprel.log");
    // Unbuffered: each line leaves in a single write, so that threads do not mix theirs.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        return;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream << QTime::currentTime().toString(Qt::TextDate) << ": " << message << Qt::endl;
}
