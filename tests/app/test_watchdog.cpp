// SPDX-License-Identifier: Apache-2.0
#include "app/watchdog.h"
#include "platform/box_paths.h"
#include "tests/support/files.h"
#include "tests/support/http_server.h"
#include "tests/support/portal.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int limitMs = WATCHDOG_LIMIT_MS;

/** The end of a supervisor that takes notifications. */
class NotifySocket
{
public:
    explicit NotifySocket(const QByteArray &name)
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
        if (name.startsWith('@'))
            address.sun_path[0] = '\0';
        const auto size = offsetof(sockaddr_un, sun_path) + static_cast<std::size_t>(name.size());
        m_socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        m_isBound = ::bind(m_socket, reinterpret_cast<const sockaddr *>(&address),
                           static_cast<socklen_t>(size)) == 0;
    }
    ~NotifySocket() { ::close(m_socket); }

    NotifySocket(const NotifySocket &) = delete;
    NotifySocket &operator=(const NotifySocket &) = delete;

    bool isBound() const { return m_isBound; }

    /** All notifications so far. */
    const QList<QByteArray> &received()
    {
        char buffer[256];
        for (;;) {
            const ssize_t size = ::recv(m_socket, buffer, sizeof buffer, 0);
            if (size < 0)
                return m_received;
            m_received += QByteArray(buffer, static_cast<int>(size));
        }
    }

    int signsOfLife() { return received().count("WATCHDOG=1"); }

private:
    int m_socket = -1;
    bool m_isBound = false;
    QList<QByteArray> m_received;
};

/** The program on a root and a page of its own. */
class Program : public QProcess
{
public:
    explicit Program(const QUrl &page, const QProcessEnvironment &watch = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("VESPREL_ROOT", BoxPaths::root());
        environment.insert("Q_VESPREL_PORTAL", page.toString());
        environment.insert(watch);
        setProcessEnvironment(environment);
        setProcessChannelMode(MergedChannels);
        start(VESPREL_PROGRAM, QStringList());
    }
    ~Program() override
    {
        terminate();
        if (!waitForFinished(5000))
            kill();
    }
};

QProcessEnvironment watchedBy(const QByteArray &socket, const QString &lifeFile = QString())
{
    QProcessEnvironment environment;
    environment.insert("WATCHDOG_USEC", QString::number(limitMs * 1000));
    environment.insert("NOTIFY_SOCKET", socket);
    environment.insert("Q_WATCHDOG_FILE", lifeFile);
    return environment;
}

} // namespace

/** The program and its supervisor: signs of life, and the end of one that no longer gives any. */
class TestWatchdog : public QObject
{
    Q_OBJECT

private slots:
    void frozen_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<bool>("abstractSocket");
        row("endless loop", QByteArray("for (;;);"), false);
        row("request without an answer",
            QByteArray("var r = new XMLHttpRequest; r.open('GET', '/silent', false); r.send();"),
            true);
    }

    /** A page that freezes the program ends it where somebody watches, and nowhere else. */
    void frozen()
    {
        QFETCH(QByteArray, script);
        QFETCH(bool, abstractSocket);
        const TemporaryRoot root;
        HttpServer server;
        server.silence("/silent");
        server.page("/", "<script>window.onload = function () { setTimeout(function () { "
                         "gSTB.Debug('freezing'); " +
                             script + " gSTB.Debug('went on'); }, 0); }</script>");
        const QByteArray name =
            (abstractSocket ? "@" : "") + BoxPaths::root().toLocal8Bit() + "/notify";
        NotifySocket supervisor(name);
        QVERIFY(supervisor.isBound());

        Program unwatched(server.url("/"));
        Program watched(server.url("/"), watchedBy(name));
        QTRY_COMPARE_WITH_TIMEOUT(watched.state(), QProcess::NotRunning, 60000);
        QCOMPARE(watched.exitStatus(), QProcess::NormalExit);
        QCOMPARE(watched.exitCode(), 75);
        const QByteArray log = watched.readAll();
        QVERIFY2(log.contains("freezing") && !log.contains("went on"), log.constData());
        QCOMPARE(log.count("No sign of life"), 1);
        QCOMPARE(supervisor.received().value(0), QByteArray("READY=1"));
        QCOMPARE(unwatched.state(), QProcess::Running);
        QVERIFY(unwatched.readAll().contains("freezing"));
    }

    /** Signs come while the page rests; a process that was stopped for long goes on. */
    void alive()
    {
        const TemporaryRoot root;
        const QByteArray name = BoxPaths::root().toLocal8Bit() + "/notify";
        const QString lifeFile = BoxPaths::root() + "/alive";
        NotifySocket supervisor(name);
        Program program(QUrl("about:blank"), watchedBy(name, lifeFile));
        QTRY_VERIFY_WITH_TIMEOUT(supervisor.signsOfLife() > 0, 30000);
        for (int consumed = 0; consumed < 2; ++consumed) {
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(lifeFile), 30000);
            QVERIFY(QFile::remove(lifeFile));
        }
        const auto process = static_cast<pid_t>(program.processId());
        QVERIFY(process > 0); // Else all processes of the test would be stopped.
        QCOMPARE(::kill(process, SIGSTOP), 0);
        QTest::qWait(limitMs * 3 / 2);
        const int before = supervisor.signsOfLife();
        QCOMPARE(::kill(process, SIGCONT), 0);
        QTRY_VERIFY_WITH_TIMEOUT(supervisor.signsOfLife() > before + 22, 60000);
        QCOMPARE(program.state(), QProcess::Running);
    }

    void options_data()
    {
        QTest::addColumn<QByteArray>("limit");
        QTest::addColumn<QByteArray>("process");
        QTest::addColumn<int>("milliseconds");
        const QByteArray self = QByteArray::number(QCoreApplication::applicationPid());
        row("nobody asks", QByteArray(), QByteArray(), 0);
        row("for whoever it is", QByteArray("60000000"), QByteArray(), 60000);
        row("for this process", QByteArray("60000000"), self, 60000);
        row("for its parent", QByteArray("60000000"), QByteArray("1"), 0);
        row("no number", QByteArray("a minute"), self, 0);
        row("too short to keep", QByteArray("19999"), self, 0);
        row("negative", QByteArray("-60000000"), self, 0);
    }

    void options()
    {
        QFETCH(QByteArray, limit);
        QFETCH(QByteArray, process);
        qputenv("WATCHDOG_USEC", limit);
        qputenv("WATCHDOG_PID", process);
        QTEST(static_cast<int>(WatchdogOptions::takeFromEnvironment().limit.count()),
              "milliseconds");
        QVERIFY(!qEnvironmentVariableIsSet("WATCHDOG_USEC"));
    }
};

QTEST_GUILESS_MAIN(TestWatchdog)
#include "test_watchdog.moc"
