// SPDX-License-Identifier: Apache-2.0
#include "desktop/recordings/box_media.h"
#include "platform/box_paths.h"
#include "tests/support/files.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

/** What a page may have played; the root that stands for the box is written ROOT. */
class TestMediaSource : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        BoxPaths::setRoot(m_root.path());
        QVERIFY(QDir(m_root.path()).mkpath("media"));
        writeFile(m_root.path() + "/media/a.ts", "a");
        writeFile(m_root.path() + "/media/q?x.ts", "q");
    }

    void sources_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("location");
        const auto row = [](const char *address, const char *location) {
            QTest::newRow(address) << QString(address) << QString(location);
        };
        row("http://a/b?c", "http://a/b?c");
        row("HTTPS://a/b", "HTTPS://a/b");
        row("udp://@239.0.0.1:1234", "udp://@239.0.0.1:1234");
        row("rtsp://a", "rtsp://a");
        row("/media/a.ts", "ROOT/media/a.ts");
        row("/media/a.ts?duration=9", "ROOT/media/a.ts");
        row("/media/q?x.ts", "ROOT/media/q?x.ts");
        row("/media/missing.ts?x", "ROOT/media/missing.ts?x");
        row("/media//b/../a.ts", "ROOT/media/a.ts");
        row("file:///media/a%2Ets", "ROOT/media/a.ts");
        row("ROOT/media/a.ts", "ROOT/media/a.ts");

        row("", "");
        row("a.ts", "");
        row("/etc/passwd", "");
        row("/mediaa/a.ts", "");
        row("/media/", "");
        row("/media/../etc/passwd", "");
        row("/media/x?/../../../etc/passwd", "");
        row("ROOT/media/../home/recordings.json", "");
        row("file:///etc/passwd", "");
        row("file:///media/%2e%2e/etc/passwd", "");
        row("file://host/media/a.ts", "");
        for (const char *scheme :
             {"av",      "lavf",    "ffmpeg", "edl",   "memory", "hex", "data",    "concat",
              "concatf", "subfile", "async",  "cache", "pipe",   "fd",  "fdclose", "unix",
              "tcp",     "mf",      "dvd",    "bd",    "cdda",   "dvb", "archive", "appending",
              "slice",   "smb",     "sftp",   "AV",    "ytdl"})
            QTest::newRow(scheme) << QString("%1://lavfi:testsrc").arg(scheme) << QString();
        row("concat:/media/a.ts|/etc/passwd", "");
        row("av:lavfi", "");
    }

    void sources()
    {
        QFETCH(QString, address);
        QFETCH(QString, location);
        const MediaSource source = mediaSource(address.replace("ROOT", m_root.path()));
        QCOMPARE(source.location, location.replace("ROOT", m_root.path()));
        QCOMPARE(source.refusal.isEmpty(), !location.isEmpty());
    }

private:
    QTemporaryDir m_root;
};

QTEST_GUILESS_MAIN(TestMediaSource)
#include "test_media_source.moc"
