// SPDX-License-Identifier: Apache-2.0
// A logging slot called by a page, beside a slot that does nothing at the same place of an object
// with as many: the rest is the engine's own cost, which grows with an object's slots.
#include "api/vesprelv2.h"
#include "app/log_sink.h"
#include "bench/statistics.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTextStream>
#include <QWebFrame>
#include <QWebPage>

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int calls = 20000;

/** All methods of gSTB, none of which does anything. */
class BareObject : public QObject
{
public:
    const QMetaObject *metaObject() const override { return &VesprelV2::staticMetaObject; }

    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override
    {
        id = QObject::qt_metacall(call, id, arguments);
        if (id < 0 || call != QMetaObject::InvokeMetaMethod)
            return id;
        return id - (VesprelV2::staticMetaObject.methodCount() -
                     VesprelV2::staticMetaObject.methodOffset());
    }
};

/** Nanoseconds of one call, the loop included. */
double callTime(QWebPage &page, const char *object)
{
    const QString script =
        QString("for (var i = 0; i < %1; ++i) %2.SetTopWin(i);").arg(calls).arg(object);
    QElapsedTimer timer;
    timer.start();
    page.mainFrame()->evaluateJavaScript(script);
    return double(timer.nsecsElapsed()) / calls;
}

/** Nanoseconds in which this file system opens a file, takes a line at its end, and closes it. */
double lineTime(const QByteArray &path)
{
    const QByteArray line(35, 'x'); // About a record.
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < calls; ++i) {
        const int file = ::open(path.constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
        if (file < 0 || ::write(file, line.constData(), size_t(line.size())) < 0)
            qFatal("cannot write %s", path.constData());
        ::close(file);
    }
    return double(timer.nsecsElapsed()) / calls;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QWebPage page;
    VesprelV2 gSTB;
    BareObject bare;
    page.mainFrame()->addToJavaScriptWindowObject("gSTB", &gSTB);
    page.mainFrame()->addToJavaScriptWindowObject("bare", &bare);

    Sample bareTimes;
    Sample silentTimes;
    Sample printedTimes;
    Sample keptTimes;
    Sample lineTimes;
    const QTemporaryDir folder("/tmp/vesprel-bench-XXXXXX"); // Beside the log.
    const QByteArray lines = QFile::encodeName(folder.filePath("lines"));
    for (int round = 0; round < 15; ++round) {
        QLoggingCategory::setFilterRules("*.debug=false");
        bareTimes.add(callTime(page, "bare"));
        silentTimes.add(callTime(page, "gSTB"));
        QLoggingCategory::setFilterRules("*.debug=true");
        printedTimes.add(callTime(page, "gSTB"));
        const QtMessageHandler before = qInstallMessageHandler(writeToLog);
        keptTimes.add(callTime(page, "gSTB"));
        qInstallMessageHandler(before);
        lineTimes.add(lineTime(lines));
    }
    printJson({{"bare_ns", bareTimes.median()},
               {"records_off_ns", silentTimes.median()},
               {"stderr_ns", printedTimes.median()},
               {"sink_ns", keptTimes.median()},
               {"line_ns", lineTimes.median()}});
    return 0;
}
