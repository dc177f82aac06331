// SPDX-License-Identifier: Apache-2.0
#include "desktop/recordings/box_media.h"
#include "desktop/recordings/ffmpeg_recordings.h"
#include "desktop/recordings/recording_time.h"
#include "platform/box_paths.h"
#include "tests/support/clip.h"
#include "tests/support/files.h"
#include "tests/support/http_server.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHostAddress>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

constexpr int patienceMs = 20000;

QString inSeconds(qint64 seconds)
{
    return QString::number(QDateTime::currentSecsSinceEpoch() + seconds);
}

/** Recordings of one run of the receiver, and what they report. */
struct Run
{
    explicit Run(const RecorderOptions &options = {})
        : recordings(options)
    {
        recordings.restore();
    }

    int record(const QString &url, const QString &fileName, qint64 start, qint64 end)
    {
        RecordingTask task;
        task.url = url;
        task.fileName = fileName;
        task.startTime = inSeconds(start);
        task.endTime = inSeconds(end);
        return recordings.create(task);
    }

    RecordingState state(int id) const { return recordings.byId(id)->state; }
    QString lastMessage() const
    {
        return messages.isEmpty() ? QString() : messages.last().first().toString();
    }

    FfmpegRecordings recordings;
    QSignalSpy started{&recordings, &Recordings::started};
    QSignalSpy finished{&recordings, &Recordings::finished};
    QSignalSpy failed{&recordings, &Recordings::failed};
    QSignalSpy messages{&recordings, &Recordings::message};
};

/** An HTTP server that answers every request with a clip again and again, or with nothing. */
class Channel : public QTcpServer
{
public:
    explicit Channel(const QByteArray &clip)
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this, clip] {
            QTcpSocket *socket = nextPendingConnection();
            if (clip.isEmpty())
                return;
            socket->write("HTTP/1.0 200 OK\r\nContent-Type: video/mp2t\r\n\r\n");
            const auto fill = [socket, clip] {
                if (socket->bytesToWrite() == 0)
                    socket->write(clip);
            };
            connect(socket, &QTcpSocket::bytesWritten, socket, fill);
        });
    }

    QString url() const { return QString("http://127.0.0.1:%1/a.ts").arg(serverPort()); }
};

} // namespace

class TestRecorder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!isInstalled("ffmpeg"))
            QSKIP("ffmpeg is needed and not installed");
        const QString path = m_clips.path() + "/clip.ts";
        QVERIFY(makeClip(path, 2));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        m_clip = file.readAll();
    }

    void init()
    {
        m_root = std::make_unique<QTemporaryDir>();
        BoxPaths::setRoot(m_root->path());
        QVERIFY(QDir(m_root->path()).mkpath("media"));
        QVERIFY(QFile::copy(m_clips.path() + "/clip.ts", m_root->path() + "/media/clip.ts"));
    }

    void recordsAFileToItsEnd()
    {
        Run run;
        const int id = run.record("/media/clip.ts", "a.ts", -1, 60);
        QCOMPARE(id, 1);
        QTRY_COMPARE_WITH_TIMEOUT(run.started.count(), 1, patienceMs);
        QVERIFY(run.state(id) == RecordingState::Recording);
        QTRY_COMPARE_WITH_TIMEOUT(run.finished.count(), 1, patienceMs);
        QCOMPARE(run.finished.first().first().toInt(), id);
        QVERIFY(run.state(id) == RecordingState::Finished);
        QCOMPARE(run.recordings.byId(id)->errorCode, -10); // The source ended before the task.
        QCOMPARE(run.started.count(), 1);
        QVERIFY(QFileInfo(recordingsFolder() + "/a.ts").size() > m_clip.size() / 2);
        QCOMPARE(run.failed.count(), 0);
    }

    /** What a list names is not recorded, neither from a server's list nor from one on disk. */
    void listsLeadNowhereElse()
    {
        const QByteArray clip = "file://" + QFile::encodeName(m_clips.path()) + "/clip.ts";
        const QByteArray list =
            "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\n" + clip + "\n#EXT-X-ENDLIST\n";
        HttpServer server;
        server.page("/a.m3u8", list);
        writeFile(m_root->path() + "/media/a.m3u8", list);
        writeFile(m_root->path() + "/media/a.ffconcat", "ffconcat version 1.0\nfile clip.ts\n");
        Run run;
        run.record(server.url("/a.m3u8").toString(), "a.ts", -1, 60);
        run.record("/media/a.m3u8", "b.ts", -1, 60);
        run.record("/media/a.ffconcat", "c.ts", -1, 60);
        QTRY_COMPARE_WITH_TIMEOUT(run.failed.count(), 3, patienceMs);
        QCOMPARE(run.started.count(), 0);
        QVERIFY(QDir(recordingsFolder()).isEmpty());
        QVERIFY(run.record("av://lavfi:testsrc", "d.ts", -1, 60) < 0);
        QVERIFY(run.lastMessage().contains("does not play"));
    }

    void recordsAChannelBetweenItsTimes()
    {
        const Channel channel(m_clip);
        Run run;
        const int id = run.record(channel.url(), "", 1, 60);
        QVERIFY(run.state(id) == RecordingState::Waiting);
        QTRY_COMPARE_WITH_TIMEOUT(run.started.count(), 1, patienceMs);
        const int second = run.record(channel.url(), "/media/usb1/films/a film", 0, 60);
        QTRY_COMPARE_WITH_TIMEOUT(run.started.count(), 2, patienceMs);
        const QString end = inSeconds(1);
        QCOMPARE(run.recordings.changeEndTime(id, end), 0);
        QTRY_COMPARE_WITH_TIMEOUT(run.finished.count(), 1, patienceMs);
        QVERIFY(QDateTime::currentSecsSinceEpoch() >= end.toLongLong());
        QVERIFY(QFileInfo(recordingsFolder() + "/recording.ts").size() > 0);
        QVERIFY(QFileInfo(m_root->path() + "/media/usb1/films/a film").size() > 0);
        QVERIFY(run.state(second) == RecordingState::Recording);
    }

    void failures_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<int>("end");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<int>("code");
        QTest::newRow("no file") << "/media/missing.ts" << 60 << "No such file" << -7;
        QTest::newRow("no server") << "http://127.0.0.1:1/a.ts" << 60 << "refused" << -7;
        QTest::newRow("silent server") << "SILENT" << 60 << "nothing came" << -7;
        QTest::newRow("full disk") << "/media/clip.ts" << 60 << "No space left" << -11;
        QTest::newRow("no folder") << "/media/clip.ts" << 60 << "no file can be made" << -8;
    }

    void failures()
    {
        QFETCH(QString, url);
        QFETCH(int, end);
        QFETCH(QString, reason);
        QFETCH(int, code);
        const Channel silent{QByteArray()};
        RecorderOptions options;
        if (url == "SILENT") {
            url = silent.url();
            options.stallMs = 500;
        } else if (reason == "No space left") {
            options.program = makeFullDiskFfmpeg();
        } else if (reason == "no file can be made") {
            QFile obstacle(recordingsFolder());
            QVERIFY(obstacle.open(QIODevice::WriteOnly));
        }
        Run run(options);
        const int id = run.record(url, "a.ts", -10, end);
        QVERIFY(id > 0);
        QTRY_COMPARE_WITH_TIMEOUT(run.failed.count(), 1, patienceMs);
        QCOMPARE(run.failed.first().first().toInt(), id);
        QVERIFY2(run.lastMessage().contains(reason), qPrintable(run.lastMessage()));
        QVERIFY(run.state(id) == RecordingState::Failed);
        QCOMPARE(recordingJson(*run.recordings.byId(id))["errorCode"].toInt(), code);
        QCOMPARE(run.finished.count(), 0);
        QVERIFY(!QFileInfo::exists(recordingsFolder() + "/a.ts")); // No empty file stays.
    }

    void survivesARestart()
    {
        const Channel channel(m_clip);
        int recording = 0;
        int waiting = 0;
        {
            Run run;
            recording = run.record(channel.url(), "a%2b.ts", 0, 3600);
            waiting = run.record(channel.url(), "b.ts", 3000, 3600);
            QCOMPARE(run.recordings.setMaximumCount(2), 0);
            QTRY_COMPARE_WITH_TIMEOUT(run.started.count(), 1, patienceMs);
        }
        QVERIFY(QFileInfo(recordingsFolder() + "/a%2b.ts").size() > 0);
        Run run;
        QCOMPARE(run.recordings.all().size(), 2);
        QVERIFY(run.state(waiting) == RecordingState::Waiting);
        QTRY_COMPARE_WITH_TIMEOUT(run.started.count(), 1, patienceMs); // It goes on,
        QVERIFY(QFileInfo::exists(recordingsFolder() + "/a%2b-2.ts")); // in a second file.
        QCOMPARE(run.record(channel.url(), "c.ts", 0, 60), RecordingError::tooMany);
        QCOMPARE(run.recordings.remove(waiting, RemoveType::TaskOnly), 0);
        QVERIFY(run.record(channel.url(), "c.ts", 0, 60) > waiting); // Numbers are not used again.
        QCOMPARE(run.recordings.remove(recording, RemoveType::EveryFile), 0);
        QVERIFY(!QFileInfo::exists(recordingsFolder() + "/a%2b.ts"));
        QVERIFY(!QFileInfo::exists(recordingsFolder() + "/a%2b-2.ts"));
    }

    void endPassedWhileAway()
    {
        const int seconds = 8; // A busy machine takes some to start the recording.
        int id = 0;
        {
            Run run;
            id = run.record("/media/clip.ts", "a.ts", 0, seconds);
            QTRY_COMPARE_WITH_TIMEOUT(run.started.count(), 1, patienceMs);
        }
        const qint64 end = QDateTime::currentSecsSinceEpoch() + seconds;
        QTRY_VERIFY_WITH_TIMEOUT(QDateTime::currentSecsSinceEpoch() > end, patienceMs);
        Run run;
        QTRY_COMPARE(run.failed.count(), 1);
        QCOMPARE(run.failed.first().first().toInt(), id);
    }

    void unreadableTasksAreKept_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("cut") << QByteArray("{\"tasks\": [");
        QTest::newRow("other shape") << QByteArray("{\"tasks\": 5}");
        QTest::newRow("empty") << QByteArray();
    }

    void unreadableTasksAreKept()
    {
        QFETCH(QByteArray, content);
        QVERIFY(QDir(m_root->path()).mkpath("home"));
        QFile file(recordingTasksFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        Run run;
        QVERIFY(run.recordings.all().isEmpty());
        QVERIFY(run.record("/media/clip.ts", "a.ts", 100, 200) > 0);
        QVERIFY(QFileInfo::exists(recordingTasksFile() + ".broken"));
    }

    /** A recording that the console ends is over at once, ffmpeg included. */
    void endedFromTheConsole()
    {
        const Channel channel(m_clip);
        Run run;
        const int id = run.record(channel.url(), "a.ts", 0, 600);
        QTRY_COMPARE_WITH_TIMEOUT(run.started.count(), 1, patienceMs);
        run.recordings.setState(id, RecordingState::Finished);
        const qint64 size = QFileInfo(recordingFile("a.ts")).size();
        QVERIFY(size > 0);
        QCOMPARE(run.state(id), RecordingState::Finished);
        // The channel goes on sending, but nobody takes it any more.
        QTRY_COMPARE(channel.findChildren<QTcpSocket *>().value(0)->state(),
                     QAbstractSocket::UnconnectedState);
        QCOMPARE(QFileInfo(recordingFile("a.ts")).size(), size);
        QVERIFY(run.finished.isEmpty());
    }

    /** What never came leaves no file behind, and its name to the next task. */
    void nothingRecordedLeavesNoFile()
    {
        const Channel silent{QByteArray()};
        {
            Run run;
            run.record(silent.url(), "a.ts", 0, 600);
            QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(recordingFile("a.ts")), patienceMs);
        }
        QVERIFY(!QFileInfo::exists(recordingFile("a.ts")));
        RecorderOptions options;
        options.program = "/no/such/ffmpeg";
        Run run(options);
        run.recordings.remove(1, RemoveType::TaskOnly);
        const int id = run.record(silent.url(), "a.ts", 0, 600);
        QTRY_COMPARE_WITH_TIMEOUT(run.failed.count(), 1, patienceMs);
        QVERIFY(!QFileInfo::exists(recordingFile("a.ts")));
        QVERIFY(run.recordings.byId(id)->files.isEmpty());
    }

    void removingKeepsOrTakesTheFile()
    {
        const Channel channel(m_clip);
        Run run;
        const int kept = run.record(channel.url(), "kept.ts", 0, 60);
        const int taken = run.record(channel.url(), "taken.ts", 0, 60);
        const int stopped = run.record(channel.url(), "stopped.ts", 0, 60);
        const int dropped = run.record(channel.url(), "dropped.ts", 0, 60);
        QTRY_COMPARE_WITH_TIMEOUT(run.started.count(), 4, patienceMs);
        QCOMPARE(run.recordings.remove(stopped, RemoveType::KeepRecorded), 0);
        QCOMPARE(run.recordings.remove(dropped, RemoveType::UnfinishedFile), 0);
        QVERIFY(QFileInfo(recordingsFolder() + "/stopped.ts").size() > 0);
        QVERIFY(!QFileInfo::exists(recordingsFolder() + "/dropped.ts"));
        QCOMPARE(run.recordings.remove(kept, RemoveType::TaskOnly), 0);
        QCOMPARE(run.recordings.remove(taken, RemoveType::EveryFile), 0);
        QVERIFY(QFileInfo(recordingsFolder() + "/kept.ts").size() > 0);
        QVERIFY(!QFileInfo::exists(recordingsFolder() + "/taken.ts"));
        QVERIFY(!run.finished.wait(200)); // Who removes a task wants no event of it.
        QCOMPARE(run.failed.count(), 0);
        QCOMPARE(run.recordings.remove(taken, RemoveType::TaskOnly), RecordingError::noSuchTask);
    }

    /** The codes are those that portals know. */
    void creationsThatFail()
    {
        Run run;
        QVERIFY(run.record("/media/clip.ts", "a.ts", 100, 200) > 0);
        QCOMPARE(run.record("", "b.ts", 0, 60), -7);
        QCOMPARE(run.record("/etc/hostname", "b.ts", 0, 60), -7);
        QCOMPARE(run.record("/media/clip.ts", "b.ts", -60, -5), -3);
        QCOMPARE(run.record("/media/clip.ts", "b.ts", 60, 50), -3);
        QCOMPARE(run.record("/media/clip.ts", "/etc/b.ts", 0, 60), -5);
        QCOMPARE(run.record("/media/clip.ts", "a.ts", 0, 60), -6); // Another task's name.
        QCOMPARE(run.record("/media/clip.ts", "/media/clip.ts", 0, 60), -6);
        QCOMPARE(QFileInfo(m_root->path() + "/media/clip.ts").size(), m_clip.size());
        QCOMPARE(run.recordings.remove(99, RemoveType::TaskOnly), -4);
        QCOMPARE(run.recordings.setMaximumCount(1), 0);
        QCOMPARE(run.record("/media/clip.ts", "b.ts", 0, 60), -9);
    }

    void unreadableTimesAreRefused()
    {
        Run run;
        RecordingTask task;
        task.url = "/media/clip.ts";
        task.endTime = "tomorrow";
        QCOMPARE(run.recordings.create(task), RecordingError::badArgument);
        QVERIFY(run.lastMessage().contains("tomorrow"));
        task.endTime = inSeconds(60); // An empty start is now.
        const int id = run.recordings.create(task);
        QVERIFY(recordingTime(run.recordings.byId(id)->startTime).has_value());
        QCOMPARE(run.recordings.changeEndTime(id, "later"), RecordingError::badArgument);
    }

    void times_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("seconds"); // -1: none.
        QTest::newRow("seconds") << "1900000000" << qint64(1900000000);
        QTest::newRow("blanks") << " 12 " << qint64(12);
        QTest::newRow("local") << "2030-03-17 17:46:40" << qint64(1900000000);
        QTest::newRow("local minutes") << "2030-03-17 17:46" << qint64(1899999960);
        QTest::newRow("iso") << "2030-03-17T17:46:40" << qint64(1900000000);
        QTest::newRow("iso zone") << "2030-03-17T19:46:40+02:00" << qint64(1900000000);
        QTest::newRow("negative") << "-1" << qint64(-1);
        QTest::newRow("empty") << "" << qint64(-1);
        QTest::newRow("words") << "soon" << qint64(-1);
        QTest::newRow("beyond all years") << "9223372036854775807" << qint64(-1);
    }

    void times()
    {
        QFETCH(QString, text);
        QTEST(recordingTime(text).value_or(-1), "seconds");
    }

    void fileNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("file");
        QTest::newRow("plain") << "a.mkv"
                               << "/media/recordings/a.mkv";
        QTest::newRow("no ending") << "news"
                                   << "/media/recordings/news.ts";
        QTest::newRow("empty") << ""
                               << "/media/recordings/recording.ts";
        QTest::newRow("folder") << "x/y.ts"
                                << "/media/recordings/x/y.ts";
        QTest::newRow("absolute") << "/media/usb/y.ts"
                                  << "/media/usb/y.ts";
        QTest::newRow("absolute, no ending") << "/media/usb/y"
                                             << "/media/usb/y";
        QTest::newRow("elsewhere") << "/etc/passwd"
                                   << "";
        QTest::newRow("upwards") << "/media/../etc/passwd"
                                 << "";
        QTest::newRow("far upwards") << "../../../y.ts"
                                     << "";
        QTest::newRow("only upwards") << "/media/.."
                                      << "";
    }

    void fileNames()
    {
        QFETCH(QString, name);
        QFETCH(QString, file);
        QCOMPARE(recordingFile(name), file.isEmpty() ? QString() : m_root->path() + file);
    }

private:
    /** A stand-in that writes where no byte fits, as ffmpeg does on a full disk. */
    QString makeFullDiskFfmpeg() const
    {
        const QString path = m_root->path() + "/ffmpeg";
        QFile script(path);
        script.open(QIODevice::WriteOnly);
        script.write("#!/bin/sh\nfor last; do :; done\nrm \"${last#file:}\"\n"
                     "ln -s /dev/full \"${last#file:}\"\nexec ffmpeg \"$@\"\n");
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }

    QTemporaryDir m_clips;
    QByteArray m_clip;
    std::unique_ptr<QTemporaryDir> m_root;
};

QTEST_GUILESS_MAIN(TestRecorder)
#include "test_recorder.moc"
