// SPDX-License-Identifier: Apache-2.0
#include "desktop/link/payload.h"
#include "desktop/traffic/replayer.h"
#include "desktop/traffic/traffic_recorder.h"
#include "enigma2/messages.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

using Direction = TrafficMessage::Direction;

TrafficMessage message(qint64 ms, Direction direction, int type, const QByteArray &payload = {})
{
    TrafficMessage result;
    result.ms = ms;
    result.direction = direction;
    result.type = type;
    result.payload = payload;
    return result;
}

TrafficMessage command(qint64 ms, Command type, const QByteArray &payload = {})
{
    return message(ms, Direction::ToReceiver, int(type), payload);
}

TrafficMessage event(qint64 ms, Event type, const QByteArray &payload = {})
{
    return message(ms, Direction::ToProgram, int(type), payload);
}

/** The types of what a step sends, and its notes. */
QString told(const TrafficReplay::Step &step)
{
    QStringList types;
    for (const TrafficMessage &sent : step.sends)
        types += QString::number(sent.type);
    return (QStringList{types.join(' ')} + step.notes).join('|');
}

/** A field session: a start, a play with its end, a request with its answer, a stop. */
QVector<TrafficMessage> session()
{
    QVector<TrafficMessage> messages = {
        command(100, Command::VirtualScreen, integerPayload(1280)),
        event(200, Event::NewPortal, "http://field/"),
        command(5000, Command::MediaPlay, "a%2F.ts"),
        event(5400, Event::PlayStart),
        event(6400, Event::PlayTimeStatus, integerPayload(9000, 1000)),
        event(7400, Event::PlayTimeStatus, integerPayload(9000, 2000)),
        command(8000, Command::GetStorageInfo),
        event(8050, Event::StorageInfo, "[1]"),
        command(9000, Command::MediaStop),
        command(9500, Command::PvrGetAllTasks), // The receiver never answered.
        event(14000, Event::PlayEnd),
    };
    for (int index = 0; index < messages.size(); ++index)
        messages[index].line = index + 1;
    return messages;
}

} // namespace

/** Recordings of the link: their lines, and how they are replayed. */
class TestTraffic : public QObject
{
    Q_OBJECT

private slots:
    void everyByteIsKept_data()
    {
        QTest::addColumn<bool>("isCommand");
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QByteArray>("readable");
        const auto row = [](bool isCommand, int type, const QByteArray &payload,
                            const char *readable) {
            QTest::addRow("%d %s", type, readable)
                << isCommand << type << payload << QByteArray(readable);
        };
        row(true, 1001, "", "\"payload\":null");
        row(true, 1000, "auto /\xe9\x00 x", "\"payload\":\"auto /\xc3\xa9");
        row(true, 1025, integerPayload(1), "\"payload\":true");
        row(true, 1202, integerPayload(1, 2) + integerPayload(3, 4), "\"payload\":[1,2,3,4]");
        row(true, 1904, "{\"id\":7}", "\"payload\":{\"id\":7}");
        row(false, 1005, integerPayload(-1, 5), "\"payload\":[-1,5]");
        row(false, 1010, "[{\"pid\":1}]", "\"payload\":[{\"pid\":1}]");
        row(false, 1010, "no \xff UTF-8", "\"message\":\"AudioPids\"");
        row(false, 1016, "{\"torn\":", "\"payload\":\"{\\\"torn\\\":\"");
        row(false, 1011, "\x01", "\"raw\":\"01\"");
        row(true, 4711, QByteArray("\0\n\xff", 3), "\"message\":null");
        row(true, 1000, QByteArray(1 << 20, 'x'), "\"type\":1000");
    }

    void everyByteIsKept()
    {
        QFETCH(bool, isCommand);
        QFETCH(int, type);
        QFETCH(QByteArray, payload);
        QFETCH(QByteArray, readable);
        const Direction direction = isCommand ? Direction::ToReceiver : Direction::ToProgram;
        const QByteArray line = trafficLine(message(42, direction, type, payload));
        QVERIFY2(line.contains(readable), line);
        QVERIFY(!line.contains('\n'));
        const ParsedTraffic read = parseTraffic(line + '\n');
        QCOMPARE(read.failure, QString());
        QCOMPARE(read.messages.size(), 1);
        QCOMPARE(read.messages[0].ms, 42);
        QCOMPARE(read.messages[0].direction, direction);
        QCOMPARE(read.messages[0].type, type);
        QCOMPARE(read.messages[0].payload, payload);
    }

    /** Who writes a line by hand leaves the raw bytes out. */
    void readablePayloads_data()
    {
        QTest::addColumn<QByteArray>("members");
        QTest::addColumn<QByteArray>("payload");
        QTest::newRow("text") << QByteArray("\"type\":1000,\"payload\":\"/\xc3\xa9\"")
                              << QByteArray("/\xe9");
        QTest::newRow("integers") << QByteArray("\"type\":1005,\"payload\":[60000,1000]")
                                  << integerPayload(60000, 1000);
        QTest::newRow("JSON") << QByteArray("\"type\":1010,\"payload\":[{\"pid\":1}]")
                              << QByteArray("[{\"pid\":1}]");
        QTest::newRow("none") << QByteArray("\"type\":1001") << QByteArray();
    }

    void readablePayloads()
    {
        QFETCH(QByteArray, members);
        const ParsedTraffic read =
            parseTraffic("{\"ms\":1,\"direction\":\"to program\"," + members + "}\n");
        QCOMPARE(read.failure, QString());
        QTEST(read.messages[0].payload, "payload");
    }

    void badFiles_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("failure");
        const QByteArray good = "{\"ms\":5,\"direction\":\"to program\",\"type\":1001}\n";
        const auto row = [&good](const char *name, const QByteArray &line, const char *failure) {
            QTest::newRow(name) << good + line + good << failure;
        };
        QTest::newRow("empty") << QByteArray() << "0: there is no message in it";
        QTest::newRow("nothing whole")
            << QByteArray("{\"ms\"") << "1: no JSON object: unterminated string";
        QTest::newRow("version") << QByteArray("{\"vesprel-traffic\":2}\n" + good)
                                 << "1: a recording of another version than 1";
        row("no JSON", "hello\n", "2: no JSON object: illegal value");
        row("list", "[1]\n", "2: no JSON object: no error occurred");
        row("time", "{\"ms\":-1}\n", "2: \"ms\" is no time in ms");
        row("back in time", "{\"ms\":4}\n", "2: 4 ms is before the message above it");
        row("direction", "{\"ms\":6,\"direction\":\"up\"}\n",
            "2: \"direction\" is neither \"to receiver\" nor \"to program\"");
        row("type", "{\"ms\":6,\"direction\":\"to program\",\"type\":1e12}\n",
            "2: \"type\" is no type of a message");
        row("raw", "{\"ms\":6,\"direction\":\"to program\",\"type\":1,\"raw\":\"0g\"}\n",
            "2: \"raw\" has other characters than pairs of hexadecimal digits");
    }

    void badFiles()
    {
        QFETCH(QByteArray, text);
        const ParsedTraffic read = parseTraffic(text);
        QTEST(read.failure, "failure");
        QVERIFY(read.messages.isEmpty());
    }

    /** A power cut leaves the beginning of a recording; all that is whole is kept. */
    void tornFiles()
    {
        QByteArray text = trafficHeader(QDateTime::currentDateTime()) + '\n';
        const auto messages = session();
        for (const TrafficMessage &each : messages)
            text += trafficLine(each) + '\n';
        for (int size = 1; size < text.size(); ++size) {
            const ParsedTraffic read = parseTraffic(text.left(size));
            const int whole = text.left(size).count('\n') - 1;
            QVERIFY2(read.messages.size() >= whole && read.messages.size() <= whole + 1,
                     qPrintable(QString::number(size)));
            if (whole > 0)
                QCOMPARE(read.failure, QString());
        }
        QVERIFY(parseTraffic(text.chopped(9)).warning.startsWith("12: no JSON object"));
    }

    void replaysInItsTime()
    {
        const auto all = session();
        TrafficReplay replay(all, 1000);
        QCOMPARE(told(replay.take(1200, integerPayload(1280), 1000)), "");
        QCOMPARE(replay.nextTime().value_or(0), 1100);
        QCOMPARE(told(replay.advance(1099)), "");
        QCOMPARE(told(replay.advance(1100)), "1000");
        // The viewer takes longer here than the recorded one.
        QCOMPARE(replay.nextTime().value_or(0), 1000 + 4900 + 5000);
        QCOMPARE(told(replay.advance(10900)), "|waiting for: play a%2F.ts (line 3)");
        QVERIFY(!replay.nextTime());
        QCOMPARE(told(replay.take(1000, "a%2F.ts", 20000)), "");
        QCOMPARE(told(replay.advance(20400)), "1001");
        // And is quicker now: what came before the request does so, once where it repeats.
        QCOMPARE(told(replay.take(1902, {}, 20500)), "1005");
        QCOMPARE(told(replay.advance(20550)), "1016");
        QCOMPARE(told(replay.take(1001, {}, 21000)), "");
        QCOMPARE(told(replay.take(1909, {}, 21500)),
                 "|no answer was recorded, none is sent: get all recordings (line 10)");
        QCOMPARE(told(replay.advance(26000)), "1002|the recording is at its end");
        QVERIFY(!replay.nextTime());
    }

    void tellsWhatDiffers_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QString>("told");
        const auto row = [](const char *name, int type, const QByteArray &payload,
                            const char *words) { QTest::newRow(name) << type << payload << words; };
        row("other payload", 1000, "b.ts", "1000|recorded was: play a%2F.ts (line 3)");
        row("later command", 1001, "",
            "1000 1001 1005|not sent by this program: play a%2F.ts (line 3)|"
            "not sent by this program: get storage information (line 7)");
        row("unknown command", 1002, "",
            "|not in the recording: pause; expected is play a%2F.ts (line 3)");
        row("request without an answer", 1906, "{}",
            "1022|not in the recording: get recording {}; expected is play a%2F.ts (line 3)|"
            "no such answer was recorded; answered as failed");
    }

    void tellsWhatDiffers()
    {
        QFETCH(int, type);
        QFETCH(QByteArray, payload);
        const auto all = session();
        TrafficReplay replay(all, 0);
        replay.take(1200, integerPayload(1280), 0);
        QTEST(told(replay.take(type, payload, 50)), "told");
    }

    /** A request that is asked more often than it was has the last answer again. */
    void repeatsAnswers()
    {
        const auto all = session();
        TrafficReplay replay(all.mid(0, 8), 0);
        replay.take(1902, {}, 0);
        QCOMPARE(told(replay.advance(50)), "1016|the recording is at its end");
        QCOMPARE(told(replay.take(1902, {}, 60)),
                 "1016|not in the recording: get storage information; expected is nothing more|"
                 "answered as in line 8");
    }

    void namesItsOwnPortal()
    {
        Replayer replayer({::event(0, Event::NewPortal, "http://field/")}, "http://desk/");
        QByteArray portal;
        connect(&replayer, &Replayer::due, this,
                [&portal](Event, const QByteArray &payload) { portal = payload; });
        replayer.take(1200, {});
        QTRY_COMPARE(portal, QByteArray("http://desk/"));
    }

    void fullDisk()
    {
        TrafficRecorder recorder;
        QSignalSpy messages(&recorder, &TrafficRecorder::message);
        QCOMPARE(recorder.start("/dev/full"), QString());
        recorder.noteCommand(1001, {});
        recorder.noteSent(1001, {});
        QCOMPARE(messages.count(), 1);
        QVERIFY(messages[0][0].toString().startsWith("recording stopped, /dev/full: "));
        QVERIFY(!TrafficRecorder().start("/nowhere/at/all").isEmpty());
    }

    void recordsAtOnce()
    {
        const QTemporaryDir folder;
        const QString name = folder.filePath("a.jsonl");
        TrafficRecorder recorder;
        QCOMPARE(recorder.start(name), QString());
        recorder.noteConnections(1);
        recorder.noteCommand(1000, "a.ts");
        const ParsedTraffic read = readTrafficFile(name);
        QCOMPARE(read.failure, QString());
        QCOMPARE(read.messages.size(), 1);
        QCOMPARE(read.messages[0].line, 3);
        QVERIFY(readTrafficFile(folder.filePath("none")).failure.startsWith(folder.path()));
    }
};

QTEST_GUILESS_MAIN(TestTraffic)
#include "test_traffic.moc"
