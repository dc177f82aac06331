// SPDX-License-Identifier: Apache-2.0
#include "platform/box_paths.h"
#include "tests/support/files.h"
#include "tests/support/portal.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

#include <csignal>

#ifdef __SANITIZE_ADDRESS__ // which takes more memory than any box has
#define MEMORY_KB "unlimited"
#else
#define MEMORY_KB "700000"
#endif

namespace {

const QString packaging = PACKAGING_DIR;

/** A box without systemd: the start script, the desktop's receiver, the program and one page. */
class Box
{
public:
    explicit Box(const QStringList &shell)
    {
        root.write("portal.html",
                   "<script>gSTB.Debug('portal up');"
                   "setInterval(function () {"
                   "  if (gSTB.LoadUserData('greedy') !== 'yes') return;"
                   "  gSTB.SaveUserData('greedy', 'no');"
                   "  for (var all = [];;) all.push(new Array(1e6).join('x') + all.length);"
                   "}, 200);</script>");
        writeStarter("receiver", RECEIVER " --player simulated");
        writeStarter("program", VESPREL_PROGRAM);
        const QString settings = root.write(
            "settings",
            "RECEIVER_COMMAND=\"%/receiver\"\nVESPREL_PROGRAM=\"%/program\"\n"
            "VESPREL_SOCKET=\"%/home/.sock.vesprel\"\nVESPREL_RUN=\"%/run\"\n"
            "VESPREL_LOG=\"%/log\"\nVESPREL_MEDIA=\"%\"\nVESPREL_HOME=\"%/home\"\n"
            "VESPREL_SILENCE=\"" SILENCE "\"\nVESPREL_MEMORY_KB=\"" MEMORY_KB "\"\nRUN_AS=\"\"\n"
            "Q_VESPREL_PORTAL=\"file://%/portal.html\"\nVESPREL_ROOT=\"%\"\n");
        const QByteArray folder = BoxPaths::root().toLocal8Bit();
        writeFile(settings, contentOf(settings).replace("%", folder));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("VESPREL_SETTINGS", settings);
        script.setProcessEnvironment(environment);
        script.setProcessChannelMode(QProcess::MergedChannels);
        script.start(shell.first(), shell.mid(1) << packaging + "/vesprel-start");
    }
    ~Box()
    {
        script.terminate();
        if (!script.waitForFinished())
            script.kill();
    }

    /** Process of "receiver" or "program" that was started last; 0 before the first, which for
     *  kill() would be all processes of the test. */
    pid_t process(const QString &name) const
    {
        return contentOf(BoxPaths::root() + '/' + name + ".pid").trimmed().toInt();
    }

    /** How often the text was written by the script or what it has started. */
    int count(const char *text)
    {
        m_output += script.readAll();
        return m_output.count(text);
    }

    const QByteArray &output() const { return m_output; }

    TemporaryRoot root;
    QProcess script;

private:
    void writeStarter(const QString &name, const QByteArray &command) const
    {
        const QByteArray pidFile = (BoxPaths::root() + '/' + name + ".pid").toLocal8Bit();
        const QString file =
            root.write(name, "#!/bin/sh\necho $$ >" + pidFile + "\nexec " + command + '\n');
        QFile::setPermissions(file, QFile::permissions(file) | QFile::ExeUser);
    }

    QByteArray m_output;
};

/** Whether it has not ended; where nobody takes up orphans, those that have are still there. */
bool isRunning(pid_t process)
{
    return process > 0 && ::kill(process, 0) == 0 &&
           !contentOf(QString("/proc/%1/stat").arg(process)).contains(") Z ");
}

} // namespace

/** What a box's init system gets: nights that a viewer sleeps through. */
class TestSupervision : public QObject
{
    Q_OBJECT

private slots:
    void startScript_data()
    {
        QTest::addColumn<QStringList>("shell");
        row("the system's shell", QStringList("sh"));
        row("busybox", QStringList({"busybox", "sh"}));
    }

    void startScript()
    {
        QFETCH(QStringList, shell);
        if (QStandardPaths::findExecutable(shell.first()).isEmpty())
            QSKIP("this shell is not installed");
        Box box(shell);
        int expected = 0;
        const auto isPortalUp = [&box, &expected] { return box.count("portal up") == expected; };
        const auto portalComes = [&] {
            ++expected;
            const bool isUp = QTest::qWaitFor(isPortalUp, 60000);
            if (!isUp)
                qWarning("%s", box.output().constData());
            return isUp;
        };
        QVERIFY2(portalComes(), "the start");
        const pid_t firstReceiver = box.process("receiver");

        const pid_t killed = box.process("program");
        QVERIFY(isRunning(killed));
        QCOMPARE(::kill(killed, SIGSEGV), 0);
        QVERIFY2(portalComes(), "a crash of the program");
        QVERIFY(!isRunning(killed));

        const pid_t stopped = box.process("program");
        QVERIFY(isRunning(stopped));
        QCOMPARE(::kill(stopped, SIGSTOP), 0);
        QVERIFY2(portalComes(), "silence of the whole program");
        QCOMPARE(box.count("no sign of life for " SILENCE " s"), 1);
        QVERIFY(!isRunning(stopped));

#ifndef __SANITIZE_ADDRESS__
        const pid_t greedy = box.process("program");
        box.root.write("home/vesprel/greedy", "yes");
        QVERIFY2(portalComes(), "a greedy page");
        QVERIFY(!isRunning(greedy));
#endif
        QCOMPARE(box.process("receiver"), firstReceiver);
        QVERIFY(isRunning(firstReceiver));

        const pid_t orphan = box.process("program");
        QCOMPARE(::kill(firstReceiver, SIGKILL), 0);
        QVERIFY2(portalComes(), "a crash of the receiver");
        QVERIFY(!isRunning(orphan));
        QVERIFY(box.process("receiver") != firstReceiver);

        const QString log = box.root.write("log", QByteArray(7 * 1024 * 1024, 'x'));
        box.root.write("log.1", "older");
        QTest::qWait(1500);
        QCOMPARE(contentOf(log + ".1"), QByteArray("older"));
        writeFile(log, QByteArray(7 * 1024 * 1024 + 1, 'x'));
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(log), 30000);
        QCOMPARE(QFileInfo(log + ".1").size(), 7 * 1024 * 1024 + 1);

        const pid_t left[] = {box.process("receiver"), box.process("program")};
        box.script.kill();
        QVERIFY(box.script.waitForFinished());
        box.script.start();
        QVERIFY2(portalComes(), "a crash of the script");
        for (const pid_t process : left)
            QVERIFY(!isRunning(process) && process != box.process("receiver"));

        box.script.terminate();
        QVERIFY(box.script.waitForFinished());
        QCOMPARE(box.script.exitCode(), 0);
        QVERIFY(!isRunning(box.process("receiver")));
        QVERIFY(!isRunning(box.process("program")));
    }

    /** systemd finds nothing wrong with the units, and little that the program may do. */
    void units()
    {
        QProcess analyze;
        analyze.setProcessChannelMode(QProcess::MergedChannels);
        analyze.start("systemd-analyze", {"security", "--offline=yes", "--threshold=25",
                                          "--no-pager", packaging + "/systemd/vesprel.service"});
        if (!analyze.waitForStarted())
            QSKIP("systemd-analyze is not installed");
        QVERIFY(analyze.waitForFinished());
        const QByteArray output = analyze.readAll();
        QVERIFY2(analyze.exitCode() == 0, output.constData());
        // Lines of the unit that it doesn't understand are named by number.
        static const QRegularExpression complaint("vesprel\\.service:\\d+: .*");
        const QString found = complaint.match(QString::fromLocal8Bit(output)).captured();
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }
};

QTEST_GUILESS_MAIN(TestSupervision)
#include "test_supervision.moc"
