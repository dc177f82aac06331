// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/simulated_player.h"

#include <QSignalSpy>
#include <QTest>

namespace {

// Fast enough for a test; a second of the medium passes every other millisecond.
constexpr SimulatedTiming fastPlayer = {1, 2, 1000, 60 * 1000};

/** All progress reports of a player as "total/position" in seconds. */
QStringList progressOf(const QSignalSpy &spy)
{
    QStringList reports;
    for (const auto &report : spy)
        reports += QString("%1/%2").arg(report[0].toInt() / 1000).arg(report[1].toInt() / 1000);
    return reports;
}

} // namespace

class TestSimulatedPlayer : public QObject
{
    Q_OBJECT

private slots:
    void playerRunsToTheEnd_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<int>("positionMs");
        QTest::addColumn<QString>("progress");
        QTest::newRow("whole") << "/a?duration=3" << 0 << "3/0 3/0 3/1 3/2 3/3";
        QTest::newRow("from a start") << "/a?b=1&duration=3" << 2000 << "3/2 3/2 3/3";
        QTest::newRow("start behind the end") << "/a?duration=3" << 9000 << "3/3 3/3";
        QTest::newRow("default length") << "/a" << 59000 << "60/59 60/59 60/60";
        QTest::newRow("no address") << "" << 0 << "";
    }

    void playerRunsToTheEnd()
    {
        QFETCH(QString, url);
        QFETCH(int, positionMs);
        SimulatedPlayer player(fastPlayer);
        QSignalSpy progress(&player, &MediaPlayer::progress);
        QSignalSpy ended(&player, &MediaPlayer::ended);
        // Pages ask for the length when they hear of the start.
        bool wasTold = false;
        connect(&player, &MediaPlayer::started, this, [&] { wasTold = !progress.isEmpty(); });
        player.play({url, positionMs});
        QTRY_COMPARE(ended.count(), 1);
        QTEST(progressOf(progress).join(' '), "progress");
        QCOMPARE(wasTold, !url.isEmpty());
    }

    void playerPausesAndSeeks()
    {
        SimulatedPlayer player({1, 2, 1, 3600 * 1000});
        QSignalSpy progress(&player, &MediaPlayer::progress);
        QSignalSpy ended(&player, &MediaPlayer::ended);
        player.play({"/a", 0});
        QTRY_VERIFY(progress.count() > 3);
        player.pause();
        player.pause();
        progress.clear();
        player.seek(100 * 1000);
        QCOMPARE(progressOf(progress), QStringList("3600/100"));
        QVERIFY(!progress.wait(50)); // While paused it stands still.
        player.resume();
        QTRY_VERIFY(progress.count() > 3);
        QCOMPARE(progress[1][1].toInt(), 100 * 1000 + 1);
        player.seek(-5);
        QCOMPARE(progress.last()[1].toInt(), 0);
        player.seek(2147483647);
        QCOMPARE(ended.count(), 1);
        QCOMPARE(progress.last()[1].toInt(), 3600 * 1000);
        progress.clear();
        player.seek(1000); // Nothing plays any more.
        player.resume();
        QVERIFY(!progress.wait(20));
    }

    void playerStopsAndReplaces()
    {
        SimulatedPlayer player(fastPlayer);
        QSignalSpy started(&player, &MediaPlayer::started);
        QSignalSpy progress(&player, &MediaPlayer::progress);
        QSignalSpy ended(&player, &MediaPlayer::ended);
        player.play({"/a?duration=10", 0});
        player.play({"/b?duration=0", 0});
        QTRY_VERIFY(progress.count() > 20);
        QCOMPARE(started.count(), 1);
        QCOMPARE(progress.last()[0].toInt(), 0); // A live channel has no length and no end.
        player.stop();
        progress.clear();
        QVERIFY(!progress.wait(20));
        QCOMPARE(ended.count(), 0);
    }
};

QTEST_GUILESS_MAIN(TestSimulatedPlayer)
#include "test_simulated_player.moc"
