// SPDX-License-Identifier: Apache-2.0
#include "desktop/console/console.h"
#include "desktop/console/console_command.h"
#include "desktop/link/message_text.h"
#include "desktop/player/play_request.h"
#include "desktop/player/simulated_player.h"
#include "desktop/receiver_options.h"

#include <QSignalSpy>
#include <QTest>

#include <unistd.h>

namespace {

using Action = ConsoleCommand::Action;

QByteArray bytes(const char *hex) { return QByteArray::fromHex(hex); }

} // namespace

/** What people write to the receiver and read from it: console, options, commands. */
class TestReceiverText : public QObject
{
    Q_OBJECT

private slots:
    /** A line of each form, and what is none; the words of every event: receiver-protocol.md. */
    void consoleLines_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("action");
        QTest::addColumn<int>("event");
        QTest::addColumn<QByteArray>("payload");
        const auto sends = [](const char *line, int event, const QByteArray &payload = {}) {
            QTest::newRow(line) << line << int(Action::SendEvent) << event << payload;
        };
        sends("  usb \t unmount ", 1018);
        sends("portal /\u00e9", 1000, bytes("2fe9"));
        sends("rec error -1", 1028, bytes("ffffffff"));
        sends("time 60000 1000", 1005, bytes("0000ea60000003e8"));
        sends("audio pids [{\"lang\": \"a  b\"}]", 1010, "[{\"lang\": \"a  b\"}]");
        sends("audio pid 4352", 1011, bytes("00001100"));
        sends("sub pids \u00e9", 1013, bytes("c3a9"));
        const auto other = [](const char *line, Action action) {
            QTest::newRow(*line ? line : "empty") << line << int(action) << -1 << QByteArray();
        };
        other("", Action::Nothing);
        other("help", Action::Help);
        other("quit", Action::Quit);
        other("receiver silent 0.5", Action::Silence);
        other("receiver  slow 20", Action::Slow);
        other("receiver gone", Action::Leave);
        for (const char *line :
             {"usb", "usb mounted", "usb mounted x", "portal", "rec started", "rec started x",
              "rec started 1 2", "time 5", "audio pids", "audio pid 99999999999", "play", "HELP",
              "receiver", "receiver slow", "receiver slow -1", "receiver silent nan",
              "receiver gone now", "quitter", "quit now"})
            other(line, Action::Explain);
    }

    void consoleLines()
    {
        QFETCH(QString, line);
        QFETCH(int, action);
        QFETCH(int, event);
        QFETCH(QByteArray, payload);
        const ConsoleCommand command = parseConsoleLine(line);
        QCOMPARE(int(command.action), action);
        if (command.action == Action::SendEvent) {
            QCOMPARE(int(command.event), event);
            QCOMPARE(command.payload, payload);
        }
        if (command.action == Action::Explain)
            QVERIFY(!command.text.isEmpty());
    }

    void commandLines_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QString>("line");
        const auto row = [](const char *line, int type, const QByteArray &payload = {}) {
            QTest::newRow(line) << type << payload << line;
        };
        row("play http://a/\u00e9.ts", 1000, bytes("687474703a2f2f612fe92e7473"));
        row("play", 1000);
        row("seek 5000 ms", 1005, bytes("00001388"));
        row("seek -1 ms", 1005, bytes("ffffffff"));
        row("seek 0 ms", 1005);
        row("seek 65536 ms", 1005, bytes("0001"));
        row("subtitles on", 1025, bytes("00000001"));
        row("subtitles off", 1025);
        row("virtual screen 1280", 1200, bytes("00000500"));
        row("viewport 10,20 1280x720", 1202, bytes("0000000a 00000014 00000500 000002d0"));
        row("viewport 10,0 0x0", 1202, bytes("0000000a"));
        row("viewport full screen", 1202, bytes("00000000 00000000 00000000 00000000"));
        row("run application \\x1b[2J\\x0a", 1910, bytes("1b5b324a0a"));
        row("unknown command 1234 (5 bytes)", 1234, "hello");
        row("unknown command -1 (0 bytes)", -1);
    }

    void commandLines()
    {
        QFETCH(int, type);
        QFETCH(QByteArray, payload);
        QTEST(describeCommand(type, payload), "line");
    }

    void longTextIsCut() { QVERIFY(describeCommand(1000, QByteArray(100000, 'a')).size() < 600); }

    void playText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("url");
        QTest::addColumn<int>("positionMs");
        QTest::newRow("plain") << "/media/a.ts"
                               << "/media/a.ts" << 0;
        QTest::newRow("start") << "/media/a.ts position:120"
                               << "/media/a.ts" << 120000;
        QTest::newRow("negative") << "/a position:-5"
                                  << "/a" << 0;
        QTest::newRow("no address") << " position:0"
                                    << "" << 0;
        QTest::newRow("twice") << "/a position:1 position:2"
                               << "/a" << 2000;
        QTest::newRow("no number") << "/a position:x position:"
                                   << "/a" << 0;
        QTest::newRow("any order")
            << "auto http://a/b.ts?c=1 vtrack:1 foo:bar atrack:258 position:90"
            << "http://a/b.ts?c=1" << 90000;
        QTest::newRow("other words") << "http://a/b.ts live=1 position:90"
                                     << "http://a/b.ts" << 90000;
        QTest::newRow("blank in a name, options") << "/media/my film 2.ts strack:3 position:90"
                                                  << "/media/my film 2.ts" << 90000;
        QTest::newRow("not at the end") << "/a position:1/b"
                                        << "/a position:1/b" << 0;
        QTest::newRow("solution") << "auto /media/a.ts position:1"
                                  << "/media/a.ts" << 1000;
        QTest::newRow("solution, address") << "ffrt2 udp://@239.0.0.1:1"
                                           << "udp://@239.0.0.1:1" << 0;
        QTest::newRow("blank in a name") << "/media/my film.ts"
                                         << "/media/my film.ts" << 0;
        QTest::newRow("too large") << "/a position:99999999999"
                                   << "/a" << 2147483000;
    }

    void playText()
    {
        QFETCH(QString, text);
        const PlayRequest request = parsePlayText(text);
        QTEST(request.url, "url");
        QTEST(request.positionMs, "positionMs");
    }

    void playTextTracks()
    {
        const PlayRequest request = parsePlayText("auto /a strack:3 vtrack:1 atrack:258 atrack:x");
        QCOMPARE(request.audioPid, 258);
        QCOMPARE(request.subtitlePid, 3);
        QCOMPARE(request.videoPid, 1);
    }

    void commandLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("failure");
        QTest::newRow("none") << QStringList() << "";
        QTest::newRow("all") << QStringList{"--player=mpv", "--script", "s", "--junit", "j",
                                            "--ready",      "r"}
                             << "";
        QTest::newRow("player") << QStringList{"--player=vcr"}
                                << "There is no player \"vcr\", only mpv and simulated.";
        QTest::newRow("unknown") << QStringList{"--what"} << "Unknown option 'what'.";
        QTest::newRow("report") << QStringList{"--junit=j"}
                                << "--junit reports on a script; name one with --script.";
        QTest::newRow("surplus") << QStringList{"file"} << "Unexpected argument: file";
    }

    void commandLine()
    {
        QFETCH(QStringList, arguments);
        QTEST(parseReceiverOptions(QStringList("vesprel-receiver") + arguments).failure, "failure");
    }

    void consoleOutlivesItsInput()
    {
        int ends[2];
        QCOMPARE(::pipe(ends), 0);
        Console console(ends[0]);
        QSignalSpy lines(&console, &Console::lineRead);
        QCOMPARE(::write(ends[1], "help\npower o", 12), 12);
        QTRY_COMPARE(lines.count(), 1);
        QCOMPARE(::write(ends[1], "ff\r\nquit", 8), 8);
        ::close(ends[1]);
        QTRY_COMPARE(lines.count(), 3);
        QVERIFY(parseConsoleLine(lines[1].first().toString()).action == Action::SendEvent);
        QCOMPARE(lines[2].first().toString(), "quit");
        QVERIFY(!lines.wait(20)); // The end of the input is not read again and again.
        ::close(ends[0]);
    }
};

QTEST_GUILESS_MAIN(TestReceiverText)
#include "test_receiver_text.moc"
