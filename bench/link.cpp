// SPDX-License-Identifier: Apache-2.0
// How long an event needs from the receiver's write to the page's handler, and a command from the
// page's call to the receiver's read; in the whole window, on an offscreen display.
#include "bench/statistics.h"
#include "tests/support/portal.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTest>
#include <QWebFrame>
#include <QWebView>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

constexpr int rounds = 500;
constexpr char playStart[] = "3ade68b1000003e900000000";
constexpr char page[] = "<script>var stb = {profile: {}, player: {}}, key = {};"
                        "function _debug() {}"
                        "var stbEvent = {onEvent: function () { bench.stamp(); },"
                        "                onBroadcastMessage: function () {}};</script>";

qint64 now() { return std::chrono::steady_clock::now().time_since_epoch().count(); }

/** What the page calls when an event has come. */
class Bench : public QObject
{
    Q_OBJECT

public:
    std::atomic<qint64> sent{0}; ///< When the last event was written, in ns.
    Sample microseconds;

public slots:
    void stamp()
    {
        microseconds.add(double(now() - sent.load()) / 1000.0);
        emit stamped();
    }

signals:
    void stamped();
};

/** Microseconds from writing an event until the page's handler ran, one event at a time. */
Sample eventTimes(Portal &portal)
{
    Bench bench;
    portal.view()->page()->mainFrame()->addToJavaScriptWindowObject("bench", &bench);
    for (int i = 0; i < rounds; ++i) {
        QEventLoop loop;
        QObject::connect(&bench, &Bench::stamped, &loop, &QEventLoop::quit);
        std::thread receiver([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(3 + i % 5));
            bench.sent = now();
            portal.receiver.send(playStart);
        });
        loop.exec();
        receiver.join();
    }
    return bench.microseconds;
}

/** Microseconds from a page's call until the receiver has read the command. */
Sample commandTimes(Portal &portal)
{
    Sample times;
    for (int i = 0; i < rounds; ++i) {
        QTest::qWait(2);
        portal.receiver.clear();
        const qint64 start = now();
        portal.evaluate("gSTB.Stop()");
        while (portal.receiver.received().size() < 24)
            std::this_thread::yield();
        times.add(double(now() - start) / 1000.0);
    }
    return times;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_LOGGING_RULES", "*.debug=false");
    QApplication application(argc, argv);
    Portal portal;
    if (!QTest::qWaitFor([&] { return portal.receiver.isConnected(); }))
        qFatal("the window did not connect");
    portal.load(page);
    const Sample events = eventTimes(portal);
    const Sample commands = commandTimes(portal);
    printJson({{"event_p50_us", events.median()},
               {"event_p99_us", events.percentile(0.99)},
               {"command_p50_us", commands.median()},
               {"command_p99_us", commands.percentile(0.99)}});
    return 0;
}

#include "link.moc"
