// SPDX-License-Identifier: Apache-2.0
#include "api/directory_listing.h"
#include "api/system_action.h"
#include "tests/support/files.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include <dirent.h>
#include <sys/stat.h>

using Kind = SystemAction::Kind;

Q_DECLARE_METATYPE(SystemAction::Kind)

namespace {

/** Whether the process is gone or only its exit status is left. */
bool hasEnded(const QByteArray &pid)
{
    const QByteArray status = contentOf("/proc/" + QString::fromLatin1(pid) + "/stat");
    return status == "(no file)" || status.mid(status.lastIndexOf(')') + 2, 1) == "Z";
}

// As the C library hands them out, which is the file system's order.
QStringList entryNames(const QString &path)
{
    QStringList names;
    DIR *directory = opendir(QFile::encodeName(path).constData());
    while (const dirent *entry = directory ? readdir(directory) : nullptr)
        names.append(QFile::decodeName(entry->d_name));
    if (directory)
        closedir(directory);
    return names;
}

} // namespace

class TestSystemActions : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
    }

    void decision_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<SystemAction::Kind>("kind");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("screenMode");
        row("mode", "graphicres 1080", Kind::ScreenMode, "1080", 1080);
        row("any separator", "graphicres1080", Kind::ScreenMode, "080", 80);
        row("no mode", "graphicres", Kind::ScreenMode, "", 0);
        row("only a separator", "graphicres ", Kind::ScreenMode, "", 0);
        row("no number", "graphicres 1080p", Kind::ScreenMode, "1080p", 0);
        row("negative", "graphicres -1", Kind::ScreenMode, "-1", -1);
        row("too big", "graphicres 9999999999", Kind::ScreenMode, "9999999999", 0);
        row("DHCP", "RebootDHCP", Kind::Ignored, "", 0);
        row("update", "UpdateSW http://x/", Kind::Ignored, "", 0);
        row("panel", "front_panel led", Kind::Ignored, "", 0);
        row("television system", "tvsystem1080i", Kind::Ignored, "", 0);
        row("reboot", "reboot", Kind::Reboot, "", 0);
        row("reboot and more", "reboot_now", Kind::Reboot, "", 0);
        row("other spelling", "Reboot", Kind::Script, "", 0);
        row("not at the start", " reboot", Kind::Script, "", 0);
        row("empty", "", Kind::Script, "", 0);
    }

    void decision()
    {
        QFETCH(QString, action);
        QFETCH(SystemAction::Kind, kind);
        QFETCH(QString, text);
        QFETCH(int, screenMode);
        const SystemAction decided = parseSystemAction(action);
        QVERIFY(decided.kind == kind);
        QCOMPARE(decided.screenModeText, text);
        QCOMPARE(decided.screenMode, screenMode);
    }

    /** The script sees no argument and no part of the action is run as a command. */
    void scriptRuns()
    {
        const QString script = makeScript("echo \"$#\" > \"$0.out\"; exit 3");
        runActionScript(script, "a'b \"c\" $(touch " + m_dir->filePath("injected") + ")\nü");
        QCOMPARE(contentOf(script + ".out"), QByteArray("0\n"));
        QVERIFY(!QFile::exists(m_dir->filePath("injected")));
    }

    /** The box's own path reaches the shell as it is; a desk's may have any letters. */
    void scriptInOddFolder()
    {
        QCOMPARE(shellWord("/home/default/action.sh"), QString("/home/default/action.sh"));
        const QString folder = m_dir->filePath("o'd d $(x) \"ü");
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(QFile::rename(makeScript("echo \"$#\" > \"$0.out\""), folder + "/a.sh"));
        runActionScript(shellWord(folder + "/a.sh"), "x");
        QCOMPARE(contentOf(folder + "/a.sh.out"), QByteArray("0\n"));
    }

    /** A script text in place of a path shows what the shell itself gets. */
    void shellGetsTheActionAsItsName()
    {
        const QString out = m_dir->filePath("out");
        runActionScript("printf '%s|%s' \"$0\" \"$#\" > " + out, "volume up \"ü\"");
        QCOMPARE(contentOf(out), QByteArray("volume up \"ü\"|0"));
    }

    void missingScriptCostsNoTime()
    {
        QElapsedTimer timer;
        timer.start();
        runActionScript(m_dir->filePath("none.sh"), "x");
        runActionScript("", "");
        runActionScript(m_dir->filePath("none.sh"), QString(1 << 20, 'x')); // too long to start
        QVERIFY(timer.elapsed() < 10000);
    }

    void floodOfOutputEnds()
    {
        const QString done = m_dir->filePath("done");
        runActionScript(
            "head -c 100000000 /dev/zero; head -c 1000000 /dev/zero >&2; echo > " + done, "x");
        QVERIFY(QFile::exists(done));
    }

    void timeLimitOfTheBox() { QCOMPARE(actionTimeoutMs, 30000); }

    void killedWithItsChildren_data()
    {
        QTest::addColumn<QByteArray>("body");
        row("silent", QByteArray("wait"));
        row("flooding", QByteArray("cat /dev/zero"));
        row("deaf to signals", QByteArray("trap '' TERM HUP INT; wait; wait"));
        row("waits for input", QByteArray("read line"));
    }

    void killedWithItsChildren()
    {
        QFETCH(QByteArray, body);
        const QString script = makeScript("echo $$ > \"$0.shell\"\nsleep 300 &\n"
                                          "echo $! > \"$0.child\"\n" +
                                          body + "\necho > \"$0.done\"");
        QElapsedTimer timer;
        timer.start();
        runActionScript(script, "x", 1000);
        QVERIFY2(timer.elapsed() >= 990 && timer.elapsed() < 10000,
                 qPrintable(QString::number(timer.elapsed())));
        for (const char *suffix : {".shell", ".child"}) {
            const QByteArray pid = contentOf(script + suffix).trimmed();
            QVERIFY(!pid.isEmpty());
            QTRY_VERIFY(hasEnded(pid));
        }
        QVERIFY(!QFile::exists(script + ".done"));
    }

    /** A script may leave a service running; only a script that never ends is cleared away. */
    void serviceOutlivesItsScript()
    {
        const QString out = m_dir->filePath("service");
        const QString go = m_dir->filePath("go");
        QCOMPARE(mkfifo(QFile::encodeName(go).constData(), 0600), 0);
        runActionScript("(read line < " + go + "; echo; echo served > " + out + ") &", "x");
        QVERIFY(!QFile::exists(out));
        writeFile(go, "now\n");
        QTRY_COMPARE(contentOf(out), QByteArray("served\n"));
    }

    void diskPath_data()
    {
        QTest::addColumn<QString>("directory");
        QTest::addColumn<QString>("expected");
        row("triple slash", "///media/HDD-SATA-1/video/", "./USB-345-1/video/");
        row("single slash", "/media/HDD-SATA-1/video/", "./USB-345-1/video/");
        row("the disk", "/media/HDD-SATA-1/", "./USB-345-1/");
        row("no slash behind", "/media/HDD-SATA-1", "unchanged");
        row("two slashes", "//media/HDD-SATA-1/", "unchanged");
        row("not at the start", "/mnt/media/HDD-SATA-1/", "unchanged");
        row("other spelling", "/media/hdd-sata-1/", "unchanged");
        row("every occurrence", "/media/HDD-SATA-1/a/media/HDD-SATA-1/b",
            "./USB-345-1/a./USB-345-1/b");
        row("only the spelling found", "///media/HDD-SATA-1/a/media/HDD-SATA-1/b",
            "./USB-345-1/a/media/HDD-SATA-1/b");
        row("empty", "", "unchanged");
    }

    void diskPath()
    {
        QFETCH(QString, directory);
        QFETCH(QString, expected);
        QCOMPARE(internalDiskPath(directory).value_or("unchanged"), expected);
    }

    void listing_data()
    {
        QTest::addColumn<QStringList>("directories");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("extensions");
        QTest::addColumn<QString>("expected");
        const QString nothing = "var dirs = [];var files = [];";
        const auto oneFile = [](const QString &name) {
            return "var dirs = [];var files = [{\"name\":\"" + name + "\",\"size\":3}];";
        };
        row("both", QStringList{"Movies"}, QStringList{"a.mp4"}, ".mp4",
            "var dirs = [\"Movies/\"];var files = [{\"name\":\"a.mp4\","
            "\"size\":3}];");
        row("no extensions", QStringList{}, QStringList{"a.mp4", "b"}, "", nothing);
        row("exact spelling", QStringList{}, QStringList{"a.MP4", "b.mp4", "c.Mp4"}, ".MP4",
            oneFile("a.MP4"));
        row("two blanks", QStringList{}, QStringList{"a.avi", "b", "c.mkv"}, ".mp4  .avi",
            oneFile("a.avi"));
        row("only at the end", QStringList{}, QStringList{"a.mp4.part", "mp4"}, ".mp4", nothing);
        row("double extension", QStringList{}, QStringList{"a.tar.gz", "b.gz"}, ".tar.gz",
            oneFile("a.tar.gz"));
        row("without a dot", QStringList{}, QStringList{"a.mp4", "mp4"}, "mp4", oneFile("mp4"));
        row("broken pattern", QStringList{}, QStringList{"a.mp4"}, ".[mp4", nothing);
        row("directory with an extension", QStringList{"x.mp4"}, QStringList{}, ".mp4",
            "var dirs = [\"x.mp4/\"];var files = [];");
        row("quotes, backslash, blank, line break, non-ASCII", QStringList{"\"d\" \\"},
            QStringList{"a\"\n ж.mp4"}, ".mp4",
            "var dirs = [\"\"d\" \\/\"];var files = [{\"name\":\"a\"\n ж.mp4\",\"size\":3}];");
        row("hidden", QStringList{".d"}, QStringList{".a.mp4"}, ".mp4",
            "var dirs = [\".d/\"];var files = [{\"name\":\".a.mp4\","
            "\"size\":3}];");
    }

    void listing()
    {
        QFETCH(QStringList, directories);
        QFETCH(QStringList, files);
        QFETCH(QString, extensions);
        QFETCH(QString, expected);
        for (const QString &name : qAsConst(directories))
            QVERIFY(QDir(m_dir->path()).mkdir(name));
        for (const QString &name : qAsConst(files))
            writeFile(m_dir->filePath(name), "123");
        QCOMPARE(directoryListing(m_dir->path(), extensions), expected);
        QCOMPARE(directoryListing(m_dir->path() + '/', extensions), expected);
    }

    void fileSystemOrder()
    {
        QStringList files;
        QStringList directories;
        for (int i = 0; i < 40; ++i) {
            const QString name = QString::number((i * 17) % 40);
            writeFile(m_dir->filePath(name + ".ts"), QByteArray(i, 'x'));
            QVERIFY(QDir(m_dir->path()).mkdir(name));
        }
        for (const QString &name : entryNames(m_dir->path())) {
            if (name.endsWith(".ts"))
                files.append(QString("{\"name\":\"%1\",\"size\":%2}")
                                 .arg(name)
                                 .arg(contentOf(m_dir->filePath(name)).size()));
            else if (name != "." && name != "..")
                directories.append('"' + name + "/\"");
        }
        QCOMPARE(files.size(), 40);
        QCOMPARE(directoryListing(m_dir->path(), ".ts"), "var dirs = [" + directories.join(", ") +
                                                             "];var files = [" + files.join(", ") +
                                                             "];");
    }

    void linksAndSpecialFiles()
    {
        writeFile(m_dir->filePath("target"), "12345");
        QVERIFY(QFile::link(m_dir->filePath("target"), m_dir->filePath("link.ts")));
        QVERIFY(QFile::link(m_dir->filePath("none"), m_dir->filePath("dangling.ts")));
        QCOMPARE(mkfifo(QFile::encodeName(m_dir->filePath("pipe.ts")).constData(), 0600), 0);
        QCOMPARE(directoryListing(m_dir->path(), ".ts"),
                 QString("var dirs = [];var files = [{\"name\":\"link.ts\",\"size\":5}];"));
    }

    void bigFile()
    {
        QFile file(m_dir->filePath("big.ts"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(5000000000)); // sparse
        QCOMPARE(directoryListing(m_dir->path(), ".ts"),
                 QString("var dirs = [];var files = [{\"name\":\"big.ts\",\"size\":5000000000}];"));
    }

    void unreadableDirectory_data()
    {
        QTest::addColumn<QString>("path");
        row("missing", "/no/such/folder");
        row("empty", "");
        row("null", QString());
        row("file", "/proc/self/stat");
        row("NUL", QString("/proc") + QChar(0));
        row("very long", QString(100000, '/') + QString(100000, 'x'));
    }

    void unreadableDirectory()
    {
        QFETCH(QString, path);
        QCOMPARE(directoryListing(path, "*"), QString("var dirs = [];var files = [];"));
    }

private:
    QString makeScript(const QByteArray &body)
    {
        const QString path = m_dir->filePath("action.sh");
        writeFile(path, "#!/bin/sh\n" + body + '\n');
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(TestSystemActions)
#include "test_system_actions.moc"
