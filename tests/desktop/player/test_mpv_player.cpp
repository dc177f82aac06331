// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/mpv_player.h"
#include "desktop/player/track_list.h"
#include "desktop/screen/viewport.h"
#include "platform/box_paths.h"
#include "tests/support/clip.h"
#include "tests/support/files.h"
#include "tests/support/http_server.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <algorithm>
#include <csignal>
#include <cstdlib>

namespace {

constexpr int patienceMs = 20000;

MpvOptions quietOptions()
{
    MpvOptions options;
    options.arguments = QStringList{"--vo=null", "--ao=null"};
    options.tickMs = 100;
    return options;
}

/** A real mpv without picture and sound, and what it reports. */
struct Player
{
    explicit Player(const MpvOptions &options = quietOptions())
        : mpv(options)
    {
    }

    int position() const { return progress.isEmpty() ? -1 : progress.last()[1].toInt(); }
    QString lastMessage() const
    {
        return messages.isEmpty() ? QString() : messages.last().first().toString();
    }

    MpvPlayer mpv;
    QSignalSpy started{&mpv, &MediaPlayer::started};
    QSignalSpy ended{&mpv, &MediaPlayer::ended};
    QSignalSpy progress{&mpv, &MediaPlayer::progress};
    QSignalSpy audioTracks{&mpv, &MediaPlayer::audioTracksChanged};
    QSignalSpy audioTrack{&mpv, &MediaPlayer::audioTrackChanged};
    QSignalSpy subtitleTracks{&mpv, &MediaPlayer::subtitleTracksChanged};
    QSignalSpy subtitleTrack{&mpv, &MediaPlayer::subtitleTrackChanged};
    QSignalSpy messages{&mpv, &MediaPlayer::message};
};

bool exists(qint64 processId) { return ::kill(static_cast<pid_t>(processId), 0) == 0; }

} // namespace

class TestMpvPlayer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!isInstalled("mpv") || !isInstalled("ffmpeg"))
            QSKIP("mpv and ffmpeg are needed, and one of them is not installed");
        BoxPaths::setRoot(m_root.path());
        QVERIFY(QDir(m_root.path()).mkpath("media"));
        QVERIFY(makeClip(clip(), 2));
        QVERIFY(makeClip(m_root.path() + "/media/long.mkv", 60));
    }

    void loudness_data()
    {
        QTest::addColumn<QString>("steps"); // A volume, or a word.
        QTest::addColumn<double>("low");    // Of the loudest sample, 0 to 1.
        QTest::addColumn<double>("high");
        QTest::newRow("as it is") << "" << 0.1 << 0.2;
        QTest::newRow("half") << "50" << 0.01 << 0.05;
        QTest::newRow("loud again") << "50 100" << 0.1 << 0.2;
        QTest::newRow("none") << "0" << 0.0 << 0.0;
        QTest::newRow("muted") << "muted" << 0.0 << 0.0;
        QTest::newRow("stand-by") << "standby" << 0.0 << 0.0;
        QTest::newRow("after stand-by") << "standby on" << 0.1 << 0.2;
        QTest::newRow("volume in stand-by") << "standby 90" << 0.0 << 0.0;
        QTest::newRow("muted before stand-by") << "muted standby on" << 0.0 << 0.0;
    }

    /** What comes out of mpv in the end. */
    void loudness()
    {
        QFETCH(QString, steps);
        QFETCH(double, low);
        QFETCH(double, high);
        const QString file = m_root.path() + "/heard.wav";
        MpvOptions options = quietOptions();
        options.arguments = QStringList{"--vo=null", "--ao=pcm", "--ao-pcm-file=" + file};
        {
            Player player(options);
            for (const QString &step : steps.split(' ', Qt::SkipEmptyParts)) {
                if (step == "standby" || step == "on")
                    player.mpv.setSilent(step == "standby");
                else
                    player.mpv.setSound(step == "muted" ? 100 : step.toInt(), step == "muted");
            }
            player.mpv.play({"/media/clip.ts", 0});
            QTRY_COMPARE_WITH_TIMEOUT(player.ended.count(), 1, patienceMs);
        }
        const QByteArray wave = contentOf(file);
        int loudest = 0;
        for (int at = wave.indexOf("data") + 8; at + 1 < wave.size(); at += 2)
            loudest = std::max(loudest, std::abs(int(qFromLittleEndian<qint16>(wave.data() + at))));
        QVERIFY(wave.size() > 100000);
        const double level = loudest / 32768.0;
        QVERIFY2(level >= low && level <= high, qPrintable(QString::number(level)));
    }

    void playsToTheEnd()
    {
        Player player;
        // Pages ask for the length when they hear of the start.
        int lengthAtStart = 0;
        connect(&player.mpv, &MediaPlayer::started, this,
                [&] { lengthAtStart = player.progress.value(0).value(0).toInt(); });
        player.mpv.play({"/media/clip.ts?duration=9", 0}); // A path of the box.
        QTRY_COMPARE_WITH_TIMEOUT(player.ended.count(), 1, patienceMs);
        QCOMPARE(player.started.count(), 1);
        QCOMPARE(player.messages.count(), 0);
        QCOMPARE(player.audioTracks.last().first().toString(),
                 QString("[{\"lang\":[\"eng\",\"en\"],\"pid\":257},"
                         "{\"lang\":[\"deu\",\"de\",\"ger\"],\"pid\":258}]"));
        QCOMPARE(player.audioTrack.last().first().toInt(), 257);
        QCOMPARE(player.subtitleTracks.count(), 0); // There were none, and there are none.
        const int total = player.progress.last()[0].toInt();
        QVERIFY2(total > 1900 && total < 2200, qPrintable(QString::number(total)));
        QCOMPARE(lengthAtStart, total);
        QVERIFY(player.progress.count() > 5);
        const auto earlier = [](const QVariantList &a, const QVariantList &b) {
            return a[1].toInt() < b[1].toInt();
        };
        QVERIFY(std::is_sorted(player.progress.begin(), player.progress.end(), earlier));
    }

    /** The same medium again: its properties do not change, and must be reported all the same. */
    void playsAgainAndFromAPosition()
    {
        Player player;
        player.mpv.play({clip(), 0});
        QTRY_COMPARE_WITH_TIMEOUT(player.audioTracks.count(), 1, patienceMs);
        player.progress.clear();
        player.mpv.play({clip(), 1000});
        QTRY_COMPARE_WITH_TIMEOUT(player.audioTracks.count(), 2, patienceMs);
        QTRY_VERIFY(!player.progress.isEmpty());
        QVERIFY(player.progress.first()[0].toInt() > 1900);
        QVERIFY(player.progress.first()[1].toInt() >= 900);
        QCOMPARE(player.ended.count(), 0); // Of the first one no end is reported.
        player.mpv.stop();
        player.progress.clear();
        QVERIFY(!player.progress.wait(300));
        QCOMPARE(player.ended.count(), 0);
    }

    void startsSoon()
    {
        Player player;
        player.mpv.play({clip(), 0}); // mpv itself may still be on its way here.
        QTRY_COMPARE_WITH_TIMEOUT(player.started.count(), 1, patienceMs);
        QElapsedTimer clock;
        clock.start();
        player.mpv.play({"/media/long.mkv", 0});
        QTRY_COMPARE_WITH_TIMEOUT(player.started.count(), 2, patienceMs);
        qInfo("a local clip starts after %lld ms", clock.elapsed());
    }

    void pausesAndSeeks()
    {
        Player player;
        player.mpv.seek(5000); // Nothing plays yet.
        player.mpv.play({"/media/long.mkv", 0});
        player.mpv.seek(20000); // Before the start it is where to start.
        QTRY_VERIFY_WITH_TIMEOUT(player.position() >= 20000, patienceMs);
        player.mpv.pause();
        player.progress.clear();
        QVERIFY(!player.progress.wait(400));
        player.mpv.seek(40000);
        QTRY_VERIFY_WITH_TIMEOUT(qAbs(player.position() - 40000) < 40, patienceMs);
        player.mpv.resume();
        QTRY_VERIFY_WITH_TIMEOUT(player.position() > 40000, patienceMs);
        player.mpv.seek(-5);
        QTRY_VERIFY_WITH_TIMEOUT(player.position() < 1000, patienceMs);
        player.mpv.seek(2147483647);
        QTRY_COMPARE_WITH_TIMEOUT(player.ended.count(), 1, patienceMs);
    }

    void selectsTracks()
    {
        Player player;
        player.mpv.setAudioLanguages({"de", ""});
        player.mpv.showSubtitles(false);
        player.mpv.play({"/media/long.mkv", 0});
        QTRY_COMPARE_WITH_TIMEOUT(player.subtitleTrack.count(), 1, patienceMs);
        const QJsonArray tracks =
            QJsonDocument::fromJson(player.audioTracks.last().first().toByteArray()).array();
        QCOMPARE(tracks.size(), 2);
        const int english = tracks[0].toObject()["pid"].toInt();
        QCOMPARE(player.audioTrack.count(), 1);
        QCOMPARE(player.audioTrack.last().first().toInt(), tracks[1].toObject()["pid"].toInt());
        player.mpv.selectAudioTrack(99); // No such track.
        player.mpv.selectAudioTrack(english);
        QTRY_COMPARE(player.audioTrack.count(), 2);
        QCOMPARE(player.audioTrack.last().first().toInt(), english);
        player.mpv.showSubtitles(true);
        QTRY_VERIFY(player.subtitleTrack.last().first().toInt() > 0);
    }

    /** What is chosen for one play is forgotten by the next, which starts with its own tracks. */
    void choicesBelongToOnePlay()
    {
        Player player;
        PlayRequest request = {"/media/long.mkv"};
        player.mpv.play(request);
        QTRY_COMPARE_WITH_TIMEOUT(player.subtitleTrack.count(), 1, patienceMs);
        QCOMPARE(player.subtitleTracks.count(), 1);
        const auto tracks = [](const QSignalSpy &lists) {
            return QJsonDocument::fromJson(lists.last().first().toByteArray()).array();
        };
        const int first = player.audioTrack.last().first().toInt();
        request.audioPid = tracks(player.audioTracks)[1].toObject()["pid"].toInt();
        QVERIFY(first != request.audioPid);
        player.mpv.play(request);
        QTRY_COMPARE_WITH_TIMEOUT(player.audioTracks.count(), 2, patienceMs);
        QTRY_COMPARE(player.audioTrack.last().first().toInt(), request.audioPid);
        player.mpv.play({clip()});
        QTRY_COMPARE_WITH_TIMEOUT(player.audioTrack.last().first().toInt(), 257, patienceMs);
        // The page still has the list of the medium before.
        QTRY_COMPARE(player.subtitleTracks.last().first().toString(), QString("[]"));
        player.mpv.play({clip()});
        QTRY_COMPARE_WITH_TIMEOUT(player.started.count(), 4, patienceMs);
        QTRY_VERIFY(player.position() > 0);
        QCOMPARE(player.subtitleTracks.count(), 3);
    }

    void pictureStays()
    {
        QProcess ffmpeg;
        ffmpeg.start("ffmpeg", {"-loglevel", "error", "-y", "-i", clip(), "-frames:v", "1",
                                m_root.path() + "/media/a.png"});
        QVERIFY(ffmpeg.waitForFinished() && ffmpeg.exitCode() == 0);
        Player player;
        player.mpv.play({"/media/a.png"});
        QTRY_COMPARE_WITH_TIMEOUT(player.started.count(), 1, patienceMs);
        QVERIFY(!player.ended.wait(2500)); // mpv shows a picture for a second by itself.
        player.mpv.stop();
        QCOMPARE(player.ended.count(), 0);
    }

    void pictureShapes_data()
    {
        QTest::addColumn<int>("aspect");
        QTest::addColumn<double>("mediumRatio");
        QTest::addColumn<double>("ratio");
        QTest::addColumn<bool>("keepsRatio");
        QTest::addColumn<double>("panscan");
        QTest::newRow("exploded") << 0x00 << 4.0 / 3 << 0.0 << false << 0.0;
        QTest::newRow("standard") << 1 << 16.0 / 9 << 4.0 / 3 << true << 0.0;
        QTest::newRow("wide") << 2 << 4.0 / 3 << 16.0 / 9 << true << 0.0;
        QTest::newRow("fit") << 0x10 << 4.0 / 3 << 0.0 << true << 0.0;
        QTest::newRow("combined") << 0x30 << 4.0 / 3 << 0.0 << true << 0.5;
        QTest::newRow("big") << 0x40 << 4.0 / 3 << 0.0 << true << 1.0;
        QTest::newRow("optimal") << 0x50 << 1.0 << 4.0 / 3 << true << 1.0;
        QTest::newRow("optimal, unknown") << 0x50 << 0.0 << 0.0 << true << 1.0;
        QTest::newRow("shape of the TV") << 0x13 << 4.0 / 3 << 0.0 << true << 0.0;
        QTest::newRow("unknown") << -1 << 4.0 / 3 << 0.0 << true << 0.0;
    }

    void pictureShapes()
    {
        QFETCH(int, aspect);
        QFETCH(double, mediumRatio);
        const PictureShape shape = pictureShape(static_cast<Aspect>(aspect), mediumRatio);
        QTEST(shape.ratio, "ratio");
        QTEST(shape.keepsRatio, "keepsRatio");
        QTEST(shape.panscan, "panscan");
    }

    void whatCannotBePlayed_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no address") << ""
                                    << "no address";
        QTest::newRow("no file") << "/media/missing.ts"
                                 << "No such file";
        QTest::newRow("no medium") << "/media/junk.ts"
                                   << "cannot play /media/junk.ts: ";
        QTest::newRow("no server") << "http://127.0.0.1:1/a.ts"
                                   << "refused";
        QTest::newRow("not on the server") << "SERVER/a.ts"
                                           << "404 Not Found";
        QTest::newRow("no scheme of ours") << "av://lavfi:testsrc"
                                           << "does not play addresses of av:";
        QTest::newRow("not the box's") << "/etc/hostname"
                                       << "only what lies below /media/";
        QTest::newRow("silent source") << "SILENT"
                                       << "/a%2F.ts: nothing to show within 5 s";
    }

    void whatCannotBePlayed()
    {
        QFETCH(QString, url);
        QFETCH(QString, reason);
        QFile junk(m_root.path() + "/media/junk.ts");
        QVERIFY(junk.open(QIODevice::WriteOnly));
        junk.write("this is not a medium");
        junk.close();
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        MpvOptions options = quietOptions();
        if (url == "SILENT") {
            url = QString("http://127.0.0.1:%1/a%2F.ts").arg(silent.serverPort());
            // Long enough for the clip behind it to start on a loaded machine.
            options.startPatienceMs = 5000;
        }
        HttpServer server;
        url.replace("SERVER", server.url("").toString());
        Player player(options);
        player.mpv.play({url, 0});
        QTRY_COMPARE_WITH_TIMEOUT(player.ended.count(), 1, patienceMs);
        QCOMPARE(player.started.count(), 0);
        QCOMPARE(player.messages.count(), 1);
        QVERIFY2(player.lastMessage().contains(reason), qPrintable(player.lastMessage()));
        player.mpv.play({clip(), 0}); // And it plays on.
        QTRY_COMPARE_WITH_TIMEOUT(player.started.count(), 1, patienceMs);
    }

    void listsLeadNowhereElse_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("list");
        QTest::addColumn<bool>("plays");
        const QByteArray clipUrl = "file://" + QFile::encodeName(clip());
        const QByteArray head = "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\n";
        const QByteArray tail = "\n#EXT-X-ENDLIST\n";
        const auto row = [](const char *name, const QByteArray &list, bool plays = false) {
            QTest::newRow(name) << QString(name) << list << plays;
        };
        row("list.m3u", "#EXTM3U\n" + QFile::encodeName(clip()) + '\n');
        row("list.pls", "[playlist]\nFile1=" + clipUrl + "\nNumberOfEntries=1\n");
        row("edit.edl", "# mpv EDL v0\n" + QFile::encodeName(clip()) + '\n');
        row("sheet.cue", "FILE \"clip.ts\" WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
        row("joined.ffconcat", "ffconcat version 1.0\nfile " + clipUrl + '\n');
        row("file.m3u8", head + clipUrl + tail);
        row("device.m3u8", head + "concat:/" + QFile::encodeName(clip()) + tail);
        row("server.m3u8", head + "http://SERVER/clip.ts" + tail, true);
    }

    void listsLeadNowhereElse()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, list);
        QFETCH(bool, plays);
        HttpServer server;
        list.replace("SERVER", server.url("").authority().toLatin1());
        server.page("/clip.ts", contentOf(clip()));
        server.page('/' + name.toLatin1(), list);
        writeFile(m_root.path() + "/media/" + name, list);
        Player player;
        player.mpv.play({server.url('/' + name).toString(), 0});
        QTRY_COMPARE_WITH_TIMEOUT(player.started.count() + player.ended.count(), 1, patienceMs);
        QVERIFY2(player.started.count() == (plays ? 1 : 0), qPrintable(player.lastMessage()));
        if (plays)
            return;
        player.mpv.play({"/media/" + name, 0});
        QTRY_COMPARE_WITH_TIMEOUT(player.ended.count(), 2, patienceMs);
        QCOMPARE(player.started.count(), 0);
    }

    void killedMpvIsStartedAgain()
    {
        Player player;
        player.mpv.setAudioLanguages({"ger", ""});
        player.mpv.play({clip(), 0});
        QTRY_COMPARE_WITH_TIMEOUT(player.started.count(), 1, patienceMs);
        const qint64 killed = player.mpv.processId();
        QVERIFY(killed > 0 && ::kill(static_cast<pid_t>(killed), SIGKILL) == 0);
        QTRY_COMPARE_WITH_TIMEOUT(player.ended.count(), 1, patienceMs);
        QVERIFY(player.lastMessage().contains("mpv has gone"));
        player.mpv.play({clip(), 0});
        QTRY_COMPARE_WITH_TIMEOUT(player.audioTrack.count(), 2, patienceMs);
        QVERIFY(player.mpv.processId() != killed);
        QCOMPARE(player.audioTrack.last().first().toInt(), 258); // It remembers the language.
    }

    void mpvEndsWithThePlayer()
    {
        qint64 processId = 0;
        {
            Player player;
            processId = player.mpv.processId();
            QVERIFY(exists(processId));
        }
        QVERIFY(!exists(processId));
    }

    void missingMpv()
    {
        MpvOptions options;
        options.program = "vesprel-no-such-player";
        Player player(options);
        player.mpv.play({clip(), 0});
        QCOMPARE(player.ended.count(), 1);
        QVERIFY(player.lastMessage().contains("could not be started"));
    }

    void trackLists_data()
    {
        QTest::addColumn<QByteArray>("mpv");
        QTest::addColumn<QString>("json");
        QTest::addColumn<int>("selected");
        const auto row = [](const char *name, const QByteArray &mpv, const char *json, int pid) {
            QTest::newRow(name) << "[{\"type\":\"video\",\"id\":1,\"selected\":true}" + mpv + "]"
                                << QString(json) << pid;
        };
        row("none", "", "[]", 0);
        row("no pid", ",{\"type\":\"audio\",\"id\":2,\"selected\":true}",
            "[{\"lang\":[\"und\"],\"pid\":2}]", 2);
        row("same pid twice",
            ",{\"type\":\"audio\",\"id\":1,\"src-id\":257,\"lang\":\"xx\"}"
            ",{\"type\":\"audio\",\"id\":2,\"src-id\":257,\"lang\":\"rus\",\"selected\":true}",
            "[{\"lang\":[\"xx\"],\"pid\":257},{\"lang\":[\"rus\",\"ru\"],\"pid\":2}]", 2);
    }

    void trackLists()
    {
        QFETCH(QByteArray, mpv);
        const TrackList list = TrackList::of("audio", QJsonDocument::fromJson(mpv).array());
        QTEST(list.json(), "json");
        QTEST(list.selectedPid(), "selected");
    }

    void videoWindow_data()
    {
        QTest::addColumn<QRect>("area");
        QTest::addColumn<int>("screenWidth");
        QTest::addColumn<QRect>("expected");
        QTest::newRow("full") << QRect(0, 0, 0, 0) << 1280 << QRect(0, 0, 1920, 1080);
        QTest::newRow("preview") << QRect(640, 90, 320, 180) << 1280 << QRect(960, 135, 480, 270);
        QTest::newRow("own size") << QRect(10, 20, 30, 40) << 1920 << QRect(10, 20, 30, 40);
        QTest::newRow("standard") << QRect(360, 288, 360, 288) << 720 << QRect(960, 540, 960, 540);
        QTest::newRow("no screen") << QRect(640, 0, 640, 720) << 0 << QRect(960, 0, 960, 1080);
        QTest::newRow("beyond") << QRect(640, 360, 9999, 9999) << 1280 << QRect(960, 540, 960, 540);
        QTest::newRow("outside") << QRect(5000, 0, 10, 10) << 1280 << QRect(0, 0, 1920, 1080);
        QTest::newRow("far away") << QRect(-(1 << 24), 0, (1 << 24) + 10, 1 << 24) << 1
                                  << QRect(0, 0, 1920, 1080);
        QTest::newRow("no height") << QRect(9, 9, 100, 0) << 1280 << QRect(0, 0, 1920, 1080);
    }

    void videoWindow()
    {
        QFETCH(QRect, area);
        QFETCH(int, screenWidth);
        QFETCH(QRect, expected);
        QTEST(placed({area, screenWidth}, {1920, 1080}), "expected");
        // A title bar above a window takes from its height and does not shrink the page.
        if (expected.bottom() < 1000)
            QCOMPARE(placed({area, screenWidth}, {1920, 1050}), expected);
    }

private:
    QString clip() const { return m_root.path() + "/media/clip.ts"; }

    QTemporaryDir m_root;
};

QTEST_GUILESS_MAIN(TestMpvPlayer)
#include "test_mpv_player.moc"
