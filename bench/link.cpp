// SPDX-License-Identifier: Apache-2.0
// How long an event needs from the receiver's write to the page's handler, and a command from the
// page's call to the receiver's read, in the whole window on an offscreen display; beside the least
// that does either: a thread that reads a socket and has the GUI thread run a statement, and a slot
// that writes to a socket.
#include "bench/statistics.h"
#include "tests/support/portal.h"

#include <QApplication>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QTest>
#include <QWebFrame>
#include <QWebView>

#include <array>
#include <atomic>
#include <chrono>
#include <thread>

#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int rounds = 500;
constexpr char playStart[] = "3ade68b1000003e900000000";
constexpr std::size_t commandSize = 12;
constexpr char page[] = "<script>var stb = {profile: {}, player: {}}, key = {};"
                        "function _debug() {}"
                        "var stbEvent = {onEvent: function () { bench.stamp(); },"
                        "                onBroadcastMessage: function () {}};</script>";

double microseconds()
{
    return std::chrono::duration<double, std::micro>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/** What the page calls when an event has come. */
class Bench : public QObject
{
    Q_OBJECT

public slots:
    void stamp()
    {
        m_came = microseconds();
        emit stamped();
    }

public:
    double came() const { return m_came; }

signals:
    void stamped();

private:
    double m_came = 0.0;
};

/** The least that carries frames between a socket and a page. */
class BareLink : public QObject
{
    Q_OBJECT

public:
    explicit BareLink(QWebFrame *frame)
    {
        if (socketpair(AF_UNIX, SOCK_STREAM, 0, m_sockets.data()) != 0)
            qFatal("no pair of sockets");
        m_reader = std::thread([this, frame] {
            std::array<char, commandSize> bytes = {};
            while (read(m_sockets[0], bytes.data(), bytes.size()) > 0) {
                QMetaObject::invokeMethod(
                    frame, [frame] { frame->evaluateJavaScript("stbEvent.onEvent(1);"); });
            }
        });
    }

    ~BareLink() override
    {
        shutdown(m_sockets[0], SHUT_RDWR);
        m_reader.join();
        for (const int socket : m_sockets)
            close(socket);
    }

    Q_DISABLE_COPY_MOVE(BareLink)

    /** The peer's end. */
    int peer() const { return m_sockets[1]; }

public slots:
    void Stop()
    {
        const std::array<char, commandSize> frame = {};
        if (write(m_sockets[0], frame.data(), frame.size()) != commandSize)
            qFatal("a command was not written");
    }

private:
    std::array<int, 2> m_sockets = {-1, -1};
    std::thread m_reader;
};

/** Microseconds until the page's handler has run after `send`, which another thread calls. */
template <typename Send>
double eventTime(Bench &bench, int round, Send send)
{
    double sent = 0.0;
    QEventLoop loop;
    QObject::connect(&bench, &Bench::stamped, &loop, &QEventLoop::quit);
    std::thread receiver([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(3 + round % 5));
        sent = microseconds();
        send();
    });
    loop.exec();
    receiver.join();
    return bench.came() - sent;
}

/** Microseconds from a page's call until its command `isThere`. */
template <typename IsThere>
double commandTime(Portal &portal, const QString &call, IsThere isThere)
{
    const double start = microseconds();
    portal.evaluate(call);
    while (!isThere())
        std::this_thread::yield();
    return microseconds() - start;
}

} // namespace

int main(int argc, char *argv[])
{
    QLoggingCategory::setFilterRules("*.debug=false");
    QApplication application(argc, argv);
    Portal portal;
    if (!QTest::qWaitFor([&] { return portal.receiver.isConnected(); }))
        qFatal("the window did not connect");
    portal.load(page);
    QWebFrame *frame = portal.view()->page()->mainFrame();
    Bench bench;
    BareLink bare(frame);
    frame->addToJavaScriptWindowObject("bench", &bench);
    frame->addToJavaScriptWindowObject("bare", &bare);
    Sample events, bareEvents, commands, bareCommands;
    for (int i = 0; i < rounds; ++i) {
        events.add(eventTime(bench, i, [&] { portal.receiver.send(playStart); }));
        bareEvents.add(eventTime(bench, i, [&] { send(bare.peer(), "an event...", 12, 0); }));
    }
    for (int i = 0; i < rounds; ++i) {
        QTest::qWait(2);
        portal.receiver.clear();
        commands.add(commandTime(portal, "gSTB.Stop()", [&] {
            return std::size_t(portal.receiver.received().size()) >= 2 * commandSize;
        }));
        QTest::qWait(2);
        bareCommands.add(commandTime(portal, "bare.Stop()", [&] {
            std::array<char, commandSize> bytes = {};
            return recv(bare.peer(), bytes.data(), bytes.size(), MSG_DONTWAIT) > 0;
        }));
    }
    printJson({{"event_p50_us", events.median()},
               {"event_p99_us", events.percentile(0.99)},
               {"bare_event_p50_us", bareEvents.median()},
               {"bare_event_p99_us", bareEvents.percentile(0.99)},
               {"command_p50_us", commands.median()},
               {"command_p99_us", commands.percentile(0.99)},
               {"bare_command_p50_us", bareCommands.median()},
               {"bare_command_p99_us", bareCommands.percentile(0.99)}});
    return 0;
}

#include "link.moc"
