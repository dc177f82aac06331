// SPDX-License-Identifier: Apache-2.0
/*
 * What a receiver for the PC does with what it is told.
 */
#include "desktop/console/console_command.h"
#include "desktop/recordings/storage_information.h"
#include "tests/desktop/receiver_link.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

/** Writes down what it is told. */
class NotingPlayer : public SimulatedPlayer
{
public:
    void setAudioLanguages(const QStringList &codes) override
    {
        notes += "audio " + codes.join(' ');
    }
    void setSubtitleLanguages(const QStringList &codes) override
    {
        notes += "subtitles " + codes.join(' ');
    }
    void showSubtitles(bool visible) override { notes += QString("show %1").arg(visible); }
    void setAspect(Aspect aspect) override { notes += QString("aspect %1").arg(int(aspect)); }
    void changeVolume(int percent) override { notes += QString("volume %1").arg(percent); }
    void toggleMute() override { notes += "mute"; }

    QStringList notes;
};

} // namespace

class TestReceiver : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_root = std::make_unique<QTemporaryDir>("/tmp/vrx-XXXXXX");
        BoxPaths::setRoot(m_root->path());
    }

    void requestsAreAnswered_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QByteArray>("answer");
        const QByteArray task =
            "{\"endTime\":\"20\",\"errorCode\":0,\"fileName\":\"a.ts\",\"id\":1,"
            "\"startTime\":\"10\",\"state\":1,\"url\":\"/\u00e9\"}";
        const auto row = [](const char *name, int type, const QByteArray &json, const char *hex,
                            const QByteArray &text = {}) {
            QTest::newRow(name) << type << json << bytes(hex) + text;
        };
        row("create", 1903, "{\"url\":\"/b\"}", "3ade68b1 000003fb 00000004 00000002");
        row("create from junk", 1903, "junk", "3ade68b1 000003fb 00000004 ffffffff");
        row("create backwards", 1903, R"({"url":"/b","startTime":"20","endTime":"10"})",
            "3ade68b1 000003fb 00000004 fffffffd");
        row("remove", 1904, R"({"id":1,"removeType":0})", "3ade68b1 000003fc 00000004 00000000");
        row("remove nothing", 1904, "{}", "3ade68b1 000003fc 00000004 fffffffc");
        row("change end", 1905, R"({"endTime":"90","id":1})",
            "3ade68b1 000003fd 00000004 00000000");
        row("change end of unknown", 1905, R"({"endTime":"90","id":2})",
            "3ade68b1 000003fd 00000004 fffffffc");
        row("by id", 1906, R"({"id":1})", "3ade68b1 000003fe 0000005e", task);
        row("by unknown id", 1906, R"({"id":9})", "3ade68b1 000003fe 00000002", "{}");
        row("by ids", 1907, R"({"idList":"[7,1]"})", "3ade68b1 000003ff 00000060",
            "[" + task + "]");
        row("by one id 20,000 times", 1907,
            "{\"idList\":\"" + QByteArray("1 ").repeated(20000) + "\"}",
            "3ade68b1 000003ff 00000060", "[" + task + "]");
        row("create of a long address", 1903, "{\"url\":\"" + QByteArray(100000, 'a') + "\"}",
            "3ade68b1 000003fb 00000004 ffffffff");
        row("by no ids", 1907, "", "3ade68b1 000003ff 00000002", "[]");
        row("maximum", 1908, R"({"maxCnt":1})", "3ade68b1 00000400 00000004 00000000");
        row("maximum of none", 1908, R"({"maxCnt":0})", "3ade68b1 00000400 00000004 ffffffff");
        row("all", 1909, "", "3ade68b1 00000401 00000060", "[" + task + "]");
    }

    /** One request each, to a receiver that keeps one task. */
    void requestsAreAnswered()
    {
        QFETCH(int, type);
        QFETCH(QByteArray, json);
        QFETCH(QByteArray, answer);
        ReceiverLink link;
        RecordingTask task;
        task.url = QString::fromUtf8("/\u00e9");
        task.fileName = "a.ts";
        task.startTime = "10";
        task.endTime = "20";
        QCOMPARE(link.recordings.create(task), 1);
        link.command(type, json);
        QTRY_VERIFY_WITH_TIMEOUT(link.heard(answer), 60000);
        QCOMPARE(link.received, answer);
    }

    void recordingRequestsChangeTheTasks()
    {
        ReceiverLink link;
        link.command(1903, "{\"endTime\":\"20\",\"startTime\":\"10\",\"url\":\"/\xe9\"}");
        link.command(1905, R"({"endTime":"90","id":1})");
        link.command(1908, R"({"maxCnt":1})");
        link.command(1903, R"({"url":"/b"})");
        QTRY_VERIFY(link.heard(bytes("3ade68b1 000003fb 00000004 fffffff7"))); // No room.
        QCOMPARE(link.recordings.all().size(), 1);
        QCOMPARE(link.recordings.byId(1)->url, QString::fromUtf8("/\u00e9"));
        QCOMPARE(link.recordings.byId(1)->endTime, "90");
        link.command(1904, R"({"id":1})");
        QTRY_VERIFY(link.recordings.all().isEmpty());
    }

    /** The box's disks are the folders of its media folder, under the names that it has for them.
     */
    void storageListsTheDisks()
    {
        ReceiverLink link;
        QVERIFY(QDir(BoxPaths::root()).mkpath("media/usb1/films"));
        QVERIFY(QDir(BoxPaths::root()).mkpath("media/disk"));
        link.commander.write(bytes("3ade68b1 0000076e 00000000"));
        QTRY_VERIFY(link.heard(bytes("3ade68b1 000003f8")) && link.received.endsWith("]"));
        const QJsonArray disks = QJsonDocument::fromJson(link.received.mid(12)).array();
        QCOMPARE(disks.size(), 2);
        const QJsonObject usb = disks[1].toObject();
        QCOMPARE(usb.keys().join(' '),
                 QString("freeSize isReadOnly label mediaType model mountPath "
                         "partitionNum size sn vendor"));
        QCOMPARE(usb["mountPath"].toString(), "/media/usb1");
        QCOMPARE(usb["mediaType"].toInt(), 2);
        QVERIFY2(usb["size"].toDouble() > 0 && usb["freeSize"].toDouble() <= usb["size"].toDouble(),
                 link.received.mid(12));
    }

    /** A disk that was mounted by name is seen below /media and keeps what it holds. */
    void usbDisksComeAndGo()
    {
        ReceiverLink link;
        const auto run = [&link](const QString &line) {
            link.messages.clear();
            link.receiver.runConsoleCommand(parseConsoleLine(line));
        };
        link.command(1200, bytes("00000500"));
        QTRY_VERIFY(link.printed("virtual screen 1280"));
        const auto mediaType = [] {
            const auto disks = QJsonDocument::fromJson(storageInformation().toUtf8()).array();
            return disks.isEmpty() ? 0 : disks[0].toObject()["mediaType"].toInt();
        };
        run("usb mount My stick");
        QTRY_VERIFY(link.heard(bytes("3ade68b1 000003f9 00000000")));
        QCOMPARE(mediaType(), 2);
        const QString disk = BoxPaths::root() + "/media/My stick";
        QVERIFY(QDir(disk).mkpath("films"));
        run("usb mount My stick");
        QVERIFY(link.printed("My stick is mounted already."));
        run("usb unmount My stick");
        QTRY_VERIFY(link.heard(bytes("3ade68b1 000003fa 00000000")));
        QVERIFY(!QFileInfo::exists(disk));
        run("usb mount My stick");
        QVERIFY(QFileInfo::exists(disk + "/films"));

        // What somebody put there is no disk of ours.
        QVERIFY(QDir(BoxPaths::root()).mkpath("media/films"));
        for (const char *line : {"usb mount films", "usb unmount films", "usb unmount nothing",
                                 "usb mount ..", "usb mount a/b", "usb unmount ../home"}) {
            run(line);
            QVERIFY2(link.messages.count() == 1 && !link.printed("sent"), line);
        }
        QVERIFY(QFileInfo::exists(BoxPaths::root() + "/media/films"));
    }

    /** Each program hears of the portal once, and again when it asks for the previous site. */
    void portalIsAnnounced()
    {
        ReceiverLink link;
        link.receiver.setPortal("http://a/b");
        const QByteArray announcement = bytes("3ade68b1 000003e8 0000000a") + "http://a/b";
        link.command(1200, bytes("00000500"));
        QTRY_VERIFY(link.heard(announcement));
        link.command(1200, bytes("00000780"));
        link.command(1901, {});
        QTRY_COMPARE((link.heard(announcement), link.received.count(announcement)), 2);
        QSignalSpy standby(&link.receiver, &Receiver::standbyChanged);
        link.command(1911, {}); // And stand-by goes off and on again.
        link.command(1911, {});
        QTRY_VERIFY(link.heard(bytes("3ade68b1 00000405 00000000 3ade68b1 00000406 00000000")));
        QCOMPARE(standby.count(), 2);
        QCOMPARE(link.received.count(announcement), 2);
    }

    /** What the receiver shows by itself; a key brings the portal back where it is gone. */
    void noticesAreShown()
    {
        ReceiverLink link;
        link.receiver.setPortal("http://a/b");
        QSignalSpy notices(&link.receiver, &Receiver::noticeChanged);
        const QByteArray announcement = bytes("3ade68b1 000003e8 0000000a") + "http://a/b";
        const auto shown = [&notices] { return notices.last().first().toString(); };
        link.command(1910, "apps");
        QTRY_VERIFY(!notices.isEmpty() && shown().contains("\"apps\""));
        link.receiver.leaveNotice();
        QCOMPARE(shown(), QString());
        int announced = 0;
        for (const int type : {1999, 1910}) {
            link.command(type, "show load page error");
            QTRY_VERIFY(shown().contains(type == 1999 ? "was left" : "http://a/b"));
            link.receiver.leaveNotice();
            QCOMPARE(shown(), QString());
            ++announced;
            QTRY_COMPARE((link.heard(announcement), link.received.count(announcement)), announced);
        }
    }

    void missingPartsDoNotHideThePortal_data()
    {
        QTest::addColumn<QByteArray>("portal");
        QTest::addColumn<QString>("notice");
        QTest::newRow("a portal that is there")
            << QUrl::fromLocalFile(QFINDTESTDATA("test_receiver.cpp")).toEncoded()
            << "go on without it";
        QTest::newRow("no portal of the receiver's") << QByteArray() << "go back";
    }

    /** Loading a portal again would lead to the same screen again, whatever key is pressed. */
    void missingPartsDoNotHideThePortal()
    {
        QFETCH(QByteArray, portal);
        QFETCH(QString, notice);
        ReceiverLink link;
        link.receiver.setPortal(portal);
        QSignalSpy notices(&link.receiver, &Receiver::noticeChanged);
        const auto shown = [&notices] { return notices.last().first().toString(); };
        link.command(1910, "show load page error");
        QTRY_VERIFY(!notices.isEmpty() && shown().contains(notice));
        link.receiver.leaveNotice();
        QCOMPARE(shown(), QString());
        if (!portal.isEmpty()) {
            // A second one that fails; the next command tells that it was handled.
            const auto before = notices.size();
            link.command(1910, "show load page error");
            link.command(1910, "apps");
            QTRY_COMPARE(notices.size(), before + 1);
            QVERIFY(shown().contains("apps"));
        }
    }

    void consoleNotesTheStateOfRecordings()
    {
        ReceiverLink link;
        RecordingTask task;
        task.url = "/a";
        QCOMPARE(link.recordings.create(task), 1);
        link.receiver.runConsoleCommand(parseConsoleLine("rec started 1"));
        QCOMPARE(int(link.recordings.byId(1)->state), 2);
        link.receiver.runConsoleCommand(parseConsoleLine("rec finished 1"));
        QCOMPARE(int(link.recordings.byId(1)->state), 4);
        link.receiver.runConsoleCommand(parseConsoleLine("rec error 99"));
    }

    void playbackOverTheWire()
    {
        ReceiverLink link;
        link.command(1000, "/a?duration=3 position:1");
        QTRY_VERIFY(link.heard(bytes("3ade68b1 000003ea 00000000"))); // end
        const int start = link.received.indexOf(bytes("3ade68b1 000003e9 00000000"));
        const int tracks = link.received.indexOf(bytes("3ade68b1 000003f2"));
        const int subtitles = link.received.indexOf(bytes("3ade68b1 000003f5"));
        const int progress =
            link.received.indexOf(bytes("3ade68b1 000003ed 00000008 00000bb8 000003e8"));
        // Pages ask for the length when they hear of the start.
        QVERIFY(progress >= 0 && start > progress && tracks > start && subtitles > tracks);
        QVERIFY(link.heard(bytes("3ade68b1 000003f3 00000004 00001100")));
        QVERIFY(link.heard(bytes("3ade68b1 000003f6 00000004 00001200")));
    }

    void selectedTrackIsReported()
    {
        SimulatedPlayer player({1, 1000, 1000, 60000});
        QSignalSpy audio(&player, &MediaPlayer::audioTrackChanged);
        QSignalSpy subtitle(&player, &MediaPlayer::subtitleTrackChanged);
        player.selectAudioTrack(4353);
        QCOMPARE(audio.count(), 0);
        player.play({"/a", 0});
        QTRY_COMPARE(subtitle.count(), 1);
        player.selectAudioTrack(4353);
        player.selectAudioTrack(1); // No such track.
        player.selectSubtitleTrack(4609);
        QCOMPARE(audio.last().first().toInt(), 4353);
        QCOMPARE(subtitle.last().first().toInt(), 4609);
        QCOMPARE(audio.count(), 2);
    }

    void adjustmentsReachThePlayer()
    {
        ReceiverLink link;
        NotingPlayer player;
        Receiver receiver(link.server, player, link.recordings);
        QStringList viewports;
        connect(&receiver, &Receiver::viewportChanged, &receiver,
                [&viewports](const Viewport &viewport) {
                    const QRect area = viewport.area;
                    viewports += QString("%1: %2,%3 %4x%5")
                                     .arg(viewport.screenWidth)
                                     .arg(area.x())
                                     .arg(area.y())
                                     .arg(area.width())
                                     .arg(area.height());
                });
        link.command(1200, bytes("00000780"));
        link.command(1202, bytes("0000000a 00000014 0000001e 00000028"));
        link.command(1203, bytes("00000002"));
        link.command(1013, "rus");
        link.command(1014, "eng");
        link.command(1023, "fra");
        link.command(1025, bytes("00000001"));
        link.command(1100, {});
        link.command(1101, {});
        link.command(1102, {});
        QTRY_COMPARE(player.notes.join("; "),
                     QString("aspect 2; audio rus ; audio rus eng; subtitles fra ; show 1; "
                             "volume 5; volume -5; mute"));
        link.commander.abort();
        link.listener.abort();
        QTRY_COMPARE(viewports.join("; "),
                     QString("1920: 0,0 0x0; 1920: 10,20 30x40; 1280: 0,0 0x0"));
    }

private:
    std::unique_ptr<QTemporaryDir> m_root;
};

QTEST_GUILESS_MAIN(TestReceiver)
#include "test_receiver.moc"
