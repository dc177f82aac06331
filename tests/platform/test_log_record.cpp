// SPDX-License-Identifier: Apache-2.0
#include "platform/log_record.h"
#include "tests/support/log_capture.h"

#include <QLoggingCategory>
#include <QStringList>
#include <QTest>
#include <QUrl>
#include <QVariant>

#include <functional>

using Write = std::function<void()>;
Q_DECLARE_METATYPE(Write)

/** What stands in the log for each kind of item, to the byte. */
class TestLogRecord : public QObject
{
    Q_OBJECT

private:
    static void row(const char *name, const QString &text, const Write &write)
    {
        QTest::newRow(name) << text << write;
    }

private slots:
    void record_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<Write>("write");
        row("literals", "Stop ()", [] { logRecord("Stop", "()"); });
        row("one of them ends with a blank", "SetVolume ():  50",
            [] { logRecord("SetVolume", "(): ", 50); });
        row("text", QString::fromUtf8("Play \"a \\\"b\\\" €\" \"\""),
            [] { logRecord("Play", QString::fromUtf8("a \"b\" €"), QString()); });
        row("byte array", "sent \"a\\x00z\"", [] { logRecord("sent", QByteArray("a\0z", 3)); });
        const char *pointer = "a pointer";
        row("pointer to text", "is a pointer", [=] { logRecord("is", pointer); });
        row("truth", "true false", [] { logRecord(true, false); });
        row("numbers", "-1 4294967295 9007199254740993 0.5",
            [] { logRecord(-1, 4294967295U, Q_INT64_C(9007199254740993), 0.5); });
        row("manipulator", "key 1b 27", [] { logRecord("key", Qt::hex, 27, Qt::dec, 27); });
        row("list", "(\"a\", \"b\")", [] { logRecord(QStringList{"a", "b"}); });
        row("address", "QUrl(\"http://a/?b=c\")", [] { logRecord(QUrl("http://a/?b=c")); });
        row("variant", "QVariant(double, 1)", [] { logRecord(QVariant(1.0)); });
    }

    void record()
    {
        QFETCH(QString, text);
        QFETCH(Write, write);
        LogCapture log;
        write();
        QCOMPARE(log.take(), QStringList(text));
        QLoggingCategory::setFilterRules("default.debug=false");
        write();
        QLoggingCategory::setFilterRules(QString());
        QCOMPARE(log.take(), QStringList());
    }

    void results()
    {
        LogCapture log;
        QCOMPARE(loggedAnswer(QString("kept"), "Get", "():"), QString("kept"));
        QCOMPARE(loggedResult(7, "Get", "():"), 7);
        QCOMPARE(log.take(), QStringList({"Get ():", "Get (): 7"}));
    }
};

QTEST_GUILESS_MAIN(TestLogRecord)
#include "test_log_record.moc"
