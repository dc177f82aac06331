// SPDX-License-Identifier: Apache-2.0
#include "app/log_sink.h"
#include "app/startup.h"
#include "platform/box_paths.h"
#include "tests/support/files.h"
#include "tests/support/http_server.h"
#include "tests/support/portal.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cstdlib>
#include <thread>

#include <unistd.h>

namespace {

const char logFile[] = "/tmp/vesprel.log";

/** The version of this tree, and any commit. */
QString anyBuild()
{
    return QRegularExpression::escape(VESPREL_VERSION) + "(, build [0-9a-f]{7,}(-dirty)?)?\n";
}

} // namespace

/** The program as a process of its own: environment in, environment and requests out. */
class TestStartup : public QObject
{
    Q_OBJECT

private slots:
    /** Lines of two threads stay whole, however long they are, and others may write as well. */
    void logLines()
    {
        const QString marker = QString("marker %1 \u5f00 ").arg(QCoreApplication::applicationPid());
        const QString longLine = marker + QString(20000, 'x');
        std::thread other([&longLine] {
            for (int i = 0; i < 50; ++i)
                writeToLog(QtWarningMsg, QMessageLogContext(), longLine);
        });
        for (int i = 0; i < 50; ++i)
            writeToLog(QtDebugMsg, QMessageLogContext(), longLine);
        other.join();
        static const QRegularExpression form("^\\d\\d:\\d\\d:\\d\\d: (.*)$");
        int whole = 0;
        for (const QByteArray &line : contentOf(logFile).split('\n'))
            whole += form.match(QString::fromUtf8(line)).captured(1) == longLine;
        QCOMPARE(whole, 100);
    }

    void plantedLog_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<bool>("isUsed");
        row("link", QByteArray("ln -s target log"), false);
        row("hard link", QByteArray("ln target log"), false);
        row("pipe", QByteArray("mkfifo log"), false);
        row("folder", QByteArray("mkdir log"), false);
        row("another user's", QByteArray("touch log; chown 1234 log"), ::geteuid() != 0);
        row("nothing", QByteArray("true"), true);
    }

    /** Anybody may put something at the log's place; nothing of it is followed or waited for. */
    void plantedLog()
    {
        QFETCH(QByteArray, command);
        QFETCH(bool, isUsed);
        const auto run = [](QByteArray script) {
            return std::system(script.replace("target", "/tmp/target").replace("log", logFile));
        };
        QCOMPARE(run("rm -rf log target; touch target; " + command + " 2>&1"), 0);
        writeToLog(QtDebugMsg, QMessageLogContext(), "a line");
        QCOMPARE(run("test ! -s target"), 0);
        QCOMPARE(run("test -f log && grep -q ': a line$' log") == 0, isUsed);
        QCOMPARE(run("rm -rf log target"), 0);
    }

    void questions_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("question");
        QTest::addColumn<QString>("answer");
        row("version", VESPREL_PROGRAM, "--version", "^vesprel " + anyBuild() + '$');
        row("help", VESPREL_PROGRAM, "--help", "^Usage: vesprel ");
#ifdef RECEIVER
        row("receiver's version", RECEIVER, "--version", "^vesprel-receiver " + anyBuild() + '$');
        row("receiver's help", RECEIVER, "--help", "^Usage: ");
#endif
    }

    /** Without a display and without a receiver. */
    void questions()
    {
        QFETCH(QString, program);
        QFETCH(QString, question);
        QFETCH(QString, answer);
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("DISPLAY");
        environment.insert("QT_QPA_PLATFORM", "xcb");
        process.setProcessEnvironment(environment);
        process.start(program, {question});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
        const QString output = process.readAllStandardOutput();
        QVERIFY2(QRegularExpression(answer).match(output).hasMatch(), qPrintable(output));
    }

#ifdef RECEIVER
    /** Without a root of its own the box lies in the data folder of whoever runs it, as long as the
     *  path of the receiver's socket is a socket's. */
    void rootOfTheUser()
    {
        const QTemporaryDir folder;
        const QString root = "/vesprel/box";
        const int most = 107 - int(qstrlen("/home/.sock.vesprel")) - root.size();
        const QString data = folder.filePath("x").leftJustified(most, 'x');
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("VESPREL_ROOT");
        environment.insert("XDG_DATA_HOME", data);
        environment.insert("Q_VESPREL_PORTAL", "about:blank");
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(VESPREL_PROGRAM, QStringList());
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(data + root + "/home/vesprel"), 20000);
        program.terminate();
        QVERIFY(program.waitForFinished());
    }
#endif

    void start_data()
    {
        QTest::addColumn<QString>("logSwitch");
        QTest::newRow("log") << "true";
        QTest::newRow("no log") << "True";
    }

    /**
     * The start page is asked for exactly, its script reaches the receiver, and child processes
     * see what was set for them.
     */
    void start()
    {
        QFETCH(QString, logSwitch);
        int count = 0;
        const QCoreApplication events(count, nullptr);
        const TemporaryRoot root;
        const ReceiverPeer receiver(BoxPaths::receiverSocket());
        HttpServer server;
        server.page("/c/?a=b%20c", "<script>gSTB.Debug('marker ' + location.href);"
                                   "gSTB.ExecAction('dump'); gSTB.Play('/a.ts')</script>");
        const QString script =
            root.write("home/default/action.sh",
                       "#!/bin/sh\nenv > " + BoxPaths::root().toUtf8() + "/environment\n");
        QFile::setPermissions(script, QFile::permissions(script) | QFile::ExeUser);
        const int logged = QFile::exists(logFile) ? contentOf(logFile).size() : 0;

        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("VESPREL_ROOT", BoxPaths::root());
        environment.insert("Q_VESPREL_PORTAL", server.url("/c/?a=b c").toString());
        environment.insert("Q_VESPREL_LOG", logSwitch);
        program.setProcessEnvironment(environment);
        // Arguments mean nothing to the program, whatever they are.
        program.start(VESPREL_PROGRAM, {"--version", "http://127.0.0.1:1/", "--help"});
        QVERIFY(program.waitForStarted());
        // The screen at the connection, then the play request of the page.
        QTRY_COMPARE_WITH_TIMEOUT(receiver.received(),
                                  QByteArray("3ade68b1000004b00000000400000500"
                                             "3ade68b1000003e800000005") +
                                      QByteArray("/a.ts").toHex(),
                                  20000);
        QCOMPARE(server.requests().first().split('\r').first(),
                 QByteArray("GET /c/?a=b%20c HTTP/1.1"));
        const QList<QByteArray> variables =
            contentOf(BoxPaths::root() + "/environment").split('\n');
        const QByteArray home = BoxPaths::applicationHome().toLocal8Bit();
        for (const QByteArray &expected :
             {QByteArray("portal1=") + server.url("/c/?a=b c").toEncoded(), "APP_HOME=" + home,
              QByteArray("LC_ALL=C.UTF-8"), QByteArray("QT_IM_MODULE=none"),
              QByteArray("QT_ENABLE_HIGHDPI_SCALING=0")})
            QVERIFY2(variables.contains(expected), expected.constData());
        QVERIFY(QDir(home).exists());
        program.terminate();
        QVERIFY(program.waitForFinished());

        const QByteArray written = contentOf(logFile).mid(logged);
        static const QRegularExpression firstLine("^\\d\\d:\\d\\d:\\d\\d: vesprel " + anyBuild());
        QCOMPARE(firstLine.match(written).hasMatch(), logSwitch == "true");
        const QByteArray marker = "[Web] \"marker " + server.url("/c/").toEncoded();
        QCOMPARE(written.contains(marker), logSwitch == "true");
        QCOMPARE(program.readAllStandardError().contains(marker), logSwitch != "true");
    }

    /** The loop's value is the process's, with the reader thread busy to the end. */
    void endedFromOutside()
    {
        const TemporaryRoot root;
        ReceiverPeer receiver(BoxPaths::receiverSocket());
        qputenv("Q_VESPREL_PORTAL", "about:blank");
        QString seen;
        std::thread other([&receiver, &seen] {
            while (!receiver.isConnected())
                std::this_thread::yield();
            receiver.send(QByteArray("3ade68b1000003e900000000").repeated(3000));
            QMetaObject::invokeMethod(qApp, [&seen] {
                const QCursor *cursor = QApplication::overrideCursor();
                seen = QString("cursor %1").arg(cursor ? cursor->shape() : -1);
                const QWidgetList windows = QApplication::topLevelWidgets();
                for (const QWidget *window : windows)
                    seen += window->inherits("Window") && window->isMaximized() ? " maximised" : "";
                QCoreApplication::exit(7);
            });
        });
        int count = 1;
        char name[] = "vesprel";
        char *arguments[] = {name, nullptr};
        const int result = runVesprel(count, arguments);
        other.join();
        QCOMPARE(result, 7);
        QCOMPARE(seen, QString("cursor %1 maximised").arg(Qt::BlankCursor));
    }
};

QTEST_APPLESS_MAIN(TestStartup)
#include "test_startup.moc"
