// SPDX-License-Identifier: Apache-2.0
#include "api/settings_file.h"
#include "api/text_file.h"
#include "tests/support/files.h"
#include "tests/support/gstb_page.h"
#include "tests/support/log_capture.h"
#include "tests/support/traced_child.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>

#include <memory>

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int noMounts = 77;

/** In a child, where the test's own macros do not reach the parent. */
#define CHECK(condition)                                                                           \
    if (!(condition)) {                                                                            \
        qWarning("line %d: %s", __LINE__, #condition);                                             \
        return 1;                                                                                  \
    }

bool isRename(unsigned long call)
{
#ifdef SYS_rename
    if (call == SYS_rename)
        return true;
#endif
    return call == SYS_renameat || call == SYS_renameat2;
}

QByteArray firstBytes(const QString &path) { return contentOf(path).left(100); }

} // namespace

/** What portals store outlives a full disk, a lost power and odd names. */
class TestStorage : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<GstbPage> m_page;

    QString answer(const QString &expression) { return m_page->answer(expression); }

private slots:
    void init()
    {
        m_page.reset();
        m_page = std::make_unique<GstbPage>();
    }

    void cleanupTestCase() { m_page.reset(); }

    void killedWhileWriting_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        row("SetEnv", "settings", QByteArray(R"({"a":"old"})"),
            QByteArray("{\"a\":\"new\",\"b\":\"" + QByteArray(9000, 'x') + "\"}"));
        row("SaveUserData", "data", QByteArray(9000, 'o'), QByteArray("new"));
        row("WriteCFG", "etc/stb_params", QByteArray("old=1\n"), QByteArray(100000, 'n'));
    }

    /** Between any two of its system calls: afterwards there is the old content or the new one. */
    void killedWhileWriting()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        const QString path = m_page->path(file);
        const QByteArray slot = QTest::currentDataTag();
        const auto write = [&] {
            VesprelV2 &gSTB = m_page->gSTB;
            const QString text = QString::fromUtf8(after);
            slot == "SetEnv"     ? void(gSTB.SetEnv(text))
            : slot == "WriteCFG" ? gSTB.WriteCFG(text)
                                 : gSTB.SaveUserData(file, text);
        };
        const LogCapture noLog;
        QByteArrayList order;
        bool wasKilled = true;
        int stop = 0;
        for (; wasKilled; ++stop) {
            writeFile(path, before);
            order.clear();
            wasKilled = killedAtCall(stop, write, [&order](unsigned long call) {
                if (call == SYS_fsync || call == SYS_fdatasync)
                    order.append("sync");
                else if (isRename(call))
                    order.append("rename");
            });
            if (contentOf(path) != before)
                QCOMPARE(contentOf(path), after);
            // At most a file on its way is left; the next child would choose the same name for it.
            QDir folder = QFileInfo(path).dir();
            const QStringList left =
                folder.entryList({QFileInfo(path).fileName() + ".*"}, QDir::Files);
            QVERIFY2(left.size() <= 1, qPrintable(left.join(' ')));
            for (const QString &name : left)
                folder.remove(name);
        }
        if (stop == 1)
            QSKIP("no process may be traced here");
        QVERIFY2(stop > 20, qPrintable(QString::number(stop)));
        QCOMPARE(contentOf(path), after);
        // Only what is on disk takes the place of the old, and then the folder itself is saved.
        const int renamed = order.indexOf("rename");
        QVERIFY2(renamed > 0 && renamed + 1 < order.size(), order.join(' ').constData());
        QVERIFY(order.indexOf("sync") < renamed);
    }

    /** A disk of 16 KiB: what does not fit leaves the old content, and what fits comes through. */
    void fullDisk()
    {
        const QByteArray path = QFile::encodeName(m_page->path("etc"));
        const int result = inChild([&] {
            if (!enterOwnMounts() || !QDir().mkpath(m_page->path("etc")) ||
                ::mount("none", path.constData(), "tmpfs", 0, "size=16k") != 0)
                return noMounts;
            const QString file = m_page->path("etc/stb_params");
            const QByteArray before(9000, 'o');
            writeFile(file, before);
            LogCapture log;
            m_page->gSTB.WriteCFG(QString(9000, 'n'));
            CHECK(contentOf(file) == before);
            CHECK(log.take().constLast() == "Could not write file, it stays as it was");
            m_page->gSTB.WriteCFG("short");
            CHECK(contentOf(file) == "short");
            CHECK(log.take().constLast() == "WriteCFG (): \"short\"");
            // A mount point, which nothing can take the place of.
            const QByteArray own = QFile::encodeName(file);
            CHECK(::mount(own.constData(), own.constData(), nullptr, MS_BIND, nullptr) == 0);
            for (const QByteArray &text : {QByteArray(5000, 'l'), QByteArray("shorter")}) {
                m_page->gSTB.WriteCFG(text);
                CHECK(contentOf(file) == text);
            }
            m_page->gSTB.WriteCFG(QString(20000, 'x'));
            CHECK(contentOf(file) == "shorter");
            // A folder that may not be written, with the same file in it.
            CHECK(::mount(nullptr, path.constData(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY,
                          nullptr) == 0);
            m_page->gSTB.WriteCFG("in place");
            CHECK(contentOf(file) == "in place");
            CHECK(QDir(m_page->path("etc")).entryList(QDir::Files) == QStringList("stb_params"));
            return 0;
        });
        if (result == noMounts)
            QSKIP("nothing may be mounted here");
        QCOMPARE(result, 0);
    }

    void linksOwnersAndPermissions()
    {
        const QString target = m_page->path("target");
        QVERIFY(QFile::link(target, m_page->path("link")));
        const QByteArray name = QFile::encodeName(target);
        const bool mayGiveAway = ::geteuid() == 0;
        answer("gSTB.SaveUserData('link', 'first')"); // the link leads nowhere so far
        QCOMPARE(::chmod(name.constData(), 0640), 0);
        if (mayGiveAway)
            QCOMPARE(::chown(name.constData(), 1234, 4321), 0);
        answer("gSTB.SaveUserData('link', 'second')");
        QCOMPARE(contentOf(target), QByteArray("second"));
        QVERIFY(QFileInfo(m_page->path("link")).isSymLink());
        struct stat status = {};
        QCOMPARE(::stat(name.constData(), &status), 0);
        QCOMPARE(int(status.st_mode & 07777U), 0640);
        if (mayGiveAway)
            QCOMPARE(qMakePair(status.st_uid, status.st_gid), qMakePair(1234U, 4321U));
    }

    void oddNames_data()
    {
        QTest::addColumn<QString>("expression");
        QTest::addColumn<QString>("answer");
        const QString resource = ":/qt-project.org/styles/commonstyle/images/left-32.png";
        QVERIFY(QFile::exists(resource));
        row("overwriting up to a NUL", "gSTB.SaveUserData('file\\0x', 'lost')", "null");
        row("pipe up to a NUL", "gSTB.SaveUserData('pipe\\0x', 'lost')", "null");
        row("pipe", "gSTB.SaveUserData('pipe', 'lost')", "null");
        row("reading up to a NUL", "gSTB.LoadUserData('file\\0x')", "\"\"");
        row("reading a pipe", "gSTB.LoadUserData('pipe')", "\"\"");
        row("reading without end", "gSTB.LoadUserData('zero')", "\"\"");
        row("parameters without end", "gSTB.ReadCFG()", "\"\"");
        row("removing up to a NUL", "gSTB.RDir('RemoveFile ROOT/file\\0x')", "\"Fail\"");
        row("looking up to a NUL", "gSTB.IsFileExist('ROOT/file\\0x')", "false");
        row("resource", "gSTB.IsFileExist('" + resource + "')", "false");
        row("resources", "gSTB.IsFolderExist(':/')", "false");
        row("listing resources", "gSTB.SetListFilesExt('.png'), gSTB.ListDir(':/')",
            "\"var dirs = [];var files = [];\"");
        row("file with a colon", "gSTB.IsFileExist(':name')", "true");
        row("removing it", "gSTB.RDir('RemoveFile :name')", "\"Ok\"");
    }

    void oddNames()
    {
        QFETCH(QString, expression);
        QVERIFY(QDir::setCurrent(m_page->path("")));
        writeFile(m_page->path("file"), "kept");
        writeFile(m_page->path("sub") + "/../:name", "x");
        QVERIFY(QFile::link("/dev/zero", m_page->path("zero")));
        writeFile(m_page->path("etc/x"), "");
        QVERIFY(QFile::link("/dev/zero", m_page->path("etc/stb_params")));
        QCOMPARE(::mkfifo(QFile::encodeName(m_page->path("pipe")).constData(), 0600), 0);
        LogCapture log;
        QTEST(answer(expression), "answer");
        QCOMPARE(contentOf(m_page->path("file")), QByteArray("kept"));
        QVERIFY(!QFileInfo(m_page->path("pipe")).isFile());
        // What is no file is not even begun to be read.
        QVERIFY(log.take().filter("Not read").isEmpty());
    }

    void parametersComeBack_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("rewritten");
        const auto same = [](const char *name, const QByteArray &content) {
            row(name, content, content);
        };
        same("line ends", "a=1\r\nb = \"ü\"\n\n\r");
        same("byte order mark", "\xEF\xBB\xBF"
                                "a=1\n");
        same("two marks", "\xEF\xBB\xBF\xEF\xBB\xBF");
        same("NUL", QByteArray("a\0b\0", 4));
        same("beyond 16 bits", "\xF0\x9F\x98\x80\xEF\xBF\xBF");
        same("empty", "");
        row("no UTF-8",
            QByteArray("a\xFF"
                       "b"),
            QByteArray("a\xEF\xBF\xBD"
                       "b"));
    }

    void parametersComeBack()
    {
        QFETCH(QByteArray, content);
        writeFile(m_page->path("etc/stb_params"), content);
        answer("gSTB.WriteCFG(gSTB.ReadCFG())");
        QTEST(contentOf(m_page->path("etc/stb_params")), "rewritten");
    }

    /** 16 MiB are read, a byte more is refused with a record, and only what is needed counts. */
    void longFiles()
    {
        const QByteArray most(16 << 20, 'x');
        LogCapture log;
        writeFile(m_page->path("data"), most);
        QCOMPARE(answer("gSTB.LoadUserData('data').length"), QString::number(16 << 20));
        QCOMPARE(log.take().size(), 1);
        writeFile(m_page->path("data"), most + 'x');
        QCOMPARE(answer("gSTB.LoadUserData('data')"), QString("\"\""));
        QCOMPARE(log.take().constLast(),
                 "Not read, more than 16 MiB: \"" + m_page->path("data") + '"');
        writeFile(m_page->path("data"), "word " + most);
        QCOMPARE(answer("gSTB.LoadUserData('data')"), QString("\"word\""));
        writeFile(m_page->path("etc/stb_params"), most + 'x');
        QCOMPARE(answer("gSTB.ReadCFG()"), QString("\"\""));
        QVERIFY(log.take().constLast().startsWith("Not read"));
        // What could not be read again is not stored.
        writeFile(m_page->path("settings"), R"({"a":"b"})");
        answer("gSTB.SetEnv(JSON.stringify({c: Array(" + QString::number(16 << 20) +
               ").join('x')}))");
        QCOMPARE(firstBytes(m_page->path("settings")), QByteArray(R"({"a":"b"})"));
        QVERIFY(log.take().constLast().startsWith("Not stored"));
        const int rest = (16 << 20) - int(qstrlen(R"({"a":"b","c":""})"));
        answer(QString("gSTB.SetEnv(JSON.stringify({c: Array(%1).join('x')}))").arg(rest + 1));
        QCOMPARE(contentOf(m_page->path("settings")).size(), 16 << 20);
    }

    /** A thousand settings cost one write. */
    void manySettings()
    {
        QString members;
        for (int i = 0; i < 1000; ++i)
            members += QString("%1\"name %2\":\"value\"").arg(i ? "," : "{").arg(i);
        members.replace("name ", "name");
        writeFile(m_page->path("settings"), "{}");
        const LogCapture noLog;
        int calls = 0;
        int renames = 0;
        killedAtCall(
            1 << 20, [&] { m_page->gSTB.SetEnv(members + '}'); },
            [&](unsigned long call) {
                ++calls;
                renames += isRename(call);
            });
        if (calls == 0)
            QSKIP("no process may be traced here");
        QCOMPARE(renames, 1);
        QVERIFY2(calls < 300, qPrintable(QString::number(calls)));
        QCOMPARE(answer("JSON.parse(gSTB.GetEnv('{\"varList\":[\"name999\"]}')).result.name999"),
                 QString("\"value\""));
    }

    /** Stored at once or one after the other, the same bytes are left, whatever odd is among them.
     */
    void storedAtOnce()
    {
        const QStringList texts = {"a",
                                   "b",
                                   "c",
                                   "-0",
                                   "",
                                   "x y",
                                   "\t\n",
                                   "\"\\",
                                   "é",
                                   QChar(0),
                                   "?",
                                   "{}",
                                   "z",
                                   "[",
                                   "null",
                                   QString(300, 'l'),
                                   QChar(0xA0),
                                   QChar(0x2003),
                                   QChar(0x85),
                                   QChar(0xD800),
                                   QChar(0xDC00),
                                   QChar(0xFEFF),
                                   QChar(0xFFFF),
                                   QString::fromUtf8("\xF0\x9F\x98\x80"),
                                   "ж",
                                   "漢"};
        const QByteArrayList contents = {"",
                                         "{}",
                                         R"({"a":-0,"b":1e400,"c":1.50,"?":9007199254740993})",
                                         R"({"x\u0020y":1})",
                                         R"({"\ud800":1,"?":2,"a":"\udc00"})",
                                         R"({"a":"\u00a0"})",
                                         R"(["\u0020",-0])",
                                         "[1]",
                                         "junk",
                                         R"({"a":{"b":["\u2003"]}})",
                                         R"({"a":1,"a":"2"})",
                                         " \n{\"a\":\"b\"}"};
        QRandomGenerator random(5);
        const auto one = [&random](const auto &list) { return list[random.bounded(list.size())]; };
        for (int i = 0; i < 1500; ++i) {
            QVector<Setting> settings(random.bounded(1, 8));
            for (Setting &setting : settings)
                setting = {one(texts), one(texts)};
            const QByteArray content = one(contents);
            writeFile(m_page->path("one"), content);
            writeFile(m_page->path("all"), content);
            for (const Setting &setting : qAsConst(settings))
                SettingsFile(m_page->path("one")).write({setting});
            SettingsFile(m_page->path("all")).write(settings);
            QCOMPARE(contentOf(m_page->path("all")), contentOf(m_page->path("one")));
        }
    }
};

QTEST_MAIN(TestStorage)
#include "test_storage.moc"
