// SPDX-License-Identifier: Apache-2.0
/*
 * How boxes of a driver begin, with what, and that nothing of them is left.
 */
#include "tests/desktop/driver/driver_test.h"

#include <QFile>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QtTest>

#include <csignal>

namespace {

const char page[] = "<!DOCTYPE html><title>Box</title>";

} // namespace

class TestDriverSessions : public DriverTest
{
    Q_OBJECT

private slots:
    void initTestCase() { startOn(page); }
    void bodiesOfAnyMethod();
    void profiles_data();
    void profiles();
    void endlessScript();
    void commandKeepsItsSession();
    void stoppedReceiver();
    void programIsConfined();
    void crashedProgram();
    void nothingIsLeft();
    void nothingIsLeftOfAKilledDriver();
};

/** Clients send a body with any method, in a piece of its own, or none and say nothing of it. */
void TestDriverSessions::bodiesOfAnyMethod()
{
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", quint16(m_client.port()));
    QVERIFY(socket.waitForConnected());
    const auto answer = [&socket](const QByteArray &request, const QByteArray &body,
                                  const QByteArray &header = QByteArray()) {
        const QByteArray length = "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
        socket.write(request + " HTTP/1.1\r\nHost: localhost\r\n" + header +
                     (body.isEmpty() ? QByteArray() : length) + "\r\n");
        socket.flush();
        QTest::qWait(50);
        socket.write(body);
        // The answer may have come before the body went.
        QByteArray text = socket.readAll();
        while (!text.contains("}}") && socket.waitForReadyRead(20000))
            text += socket.readAll();
        return text.left(text.indexOf("\r\n")) + text.mid(text.indexOf("\r\n\r\n") + 4).left(19);
    };
    const QByteArray status = "HTTP/1.1 200 OK{\"value\":{\"build\":{";
    const QByteArray unknown = "HTTP/1.1 404 Not Found{\"value\":{\"error\":\"";
    QCOMPARE(answer("GET /status", "{}"), status);
    QCOMPARE(answer("DELETE /session/none/cookie", "{}"), unknown);
    QCOMPARE(answer("POST /session/none/back", ""), unknown);
    QCOMPARE(answer("DELETE /session/none/cookie", ""), unknown);
    // JSON, by whatever name and however long.
    QCOMPARE(answer("POST /session/none/back", '"' + QByteArray(20000, 'x') + '"',
                    "Content-Type: application/x-www-form-urlencoded\r\n"),
             unknown);
    QCOMPARE(answer("GET /status", ""), status);
}

void TestDriverSessions::profiles_data()
{
    QTest::addColumn<QByteArray>("options");
    QTest::addColumn<QByteArray>("answer"); // What the page finds, or a part of the error.
    const auto row = [](const char *name, const char *options, const char *answer) {
        QTest::newRow(name) << QByteArray(options) << QByteArray(answer);
    };
    row("none", R"({})", R"("VB-DESK Vesprel VB-DESK 1.0.0 100 1280x720 MAG200")");
    row("model", R"({"profile":"vb40"})", R"("VB40 Vesprel VB40 1.2.0 120 1920x1080 VB40")");
    row("more of it", R"({"profile":"vb40","screen":"800x600","environment":{"Q_MODEL":"X"}})",
        R"("X Vesprel VB40 1.2.0 120 800x600 VB40")");
    row("unknown", R"({"profile":"vb41"})", "only desk, vb20, vb40.");
    row("path", R"({"profile":"../profiles/vb40"})", "There is no profile");
}

void TestDriverSessions::profiles()
{
    QFETCH(QByteArray, options);
    QFETCH(QByteArray, answer);
    m_client.end();
    QJsonObject object = QJsonDocument::fromJson(options).object();
    object["player"] = "simulated";
    QByteArray result = compact(m_client.begin({{"vesprel:options", object}}).value);
    if (!result.contains("session not created")) {
        openPage();
        result = compact(
            m_client
                .script(
                    "return [gSTB.GetDeviceModel(), gSTB.Version(), gSTB.GetDeviceImageVersion(),"
                    "innerWidth + 'x' + innerHeight,"
                    "/\\) ([^)]*) stbapp/.exec(navigator.userAgent)[1]].join(' ')")
                .value);
    }
    QVERIFY2(result.contains(answer), result);
    m_client.end();
    QCOMPARE(m_client.begin().status, 200);
}

void TestDriverSessions::endlessScript()
{
    openPage();
    m_client.post("timeouts", R"({"script":200})");
    QCOMPARE(m_client.script("for (;;);").error(), QString("script timeout"));
    QCOMPARE(m_client.end().status, 200);
    QTRY_VERIFY(m_client.children().isEmpty());
    QCOMPARE(m_client.get("title").error(), QString("invalid session id"));
    QCOMPARE(m_client.begin().status, 200);
}

void TestDriverSessions::commandKeepsItsSession()
{
    DriverClient client;
    QVERIFY(client.start({"--session-timeout", "1"}));
    DriverClient::Answer answer;
    // A loaded machine may need the second before the command comes.
    for (int attempt = 0; attempt < 5 && !answer.value.isDouble(); ++attempt) {
        QCOMPARE(client.begin().status, 200);
        answer = client.post("execute/async",
                             R"js({"script":"setTimeout(arguments[0], 3000, 5)","args":[]})js");
    }
    QCOMPARE(compact(answer.value), QByteArray("5"));
}

/** What its console does not take holds neither the client nor the session's end up. */
void TestDriverSessions::stoppedReceiver()
{
    const QList<qint64> receivers = m_client.children("vesprel-receive");
    QCOMPARE(receivers.size(), 1);
    QCOMPARE(::kill(pid_t(receivers.first()), SIGSTOP), 0);
    const QByteArray line = R"({"line":")" + QByteArray(200000, 'x') + R"("})";
    const DriverClient::Answer answer = m_client.post("vesprel/receiver", line);
    QCOMPARE(answer.error(), QString("unknown error"));
    QCOMPARE(m_client.end().status, 200);
    QTRY_VERIFY_WITH_TIMEOUT(m_client.children().isEmpty(), 30000);
    QCOMPARE(m_client.begin().status, 200);
}

void TestDriverSessions::programIsConfined()
{
    if (QProcess::execute("bwrap", {"--ro-bind", "/", "/", "--dev", "/dev", "true"}) != 0)
        QSKIP("bwrap is not installed, or may not work here.");
    const QList<qint64> programs =
        m_client.children("vesprel") + m_client.children("vesprel-receive");
    QCOMPARE(programs.size(), 2);
    for (const qint64 id : programs) {
        QFile file(QString("/proc/%1/mounts").arg(id));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArray written;
        const QList<QByteArray> lines = file.readAll().split('\n');
        for (const QByteArray &line : lines) {
            const QList<QByteArray> fields = line.split(' ');
            if (fields.value(1) == "/")
                QVERIFY2(fields.value(3).startsWith("ro"), line);
            if (fields.value(3).startsWith("rw") && fields.value(1).contains("/vesprel-driver."))
                written += fields.value(1);
        }
        QCOMPARE(written.count("/vesprel-driver."), 1);
    }
}

void TestDriverSessions::crashedProgram()
{
    const QList<qint64> programs = m_client.children("vesprel");
    QCOMPARE(programs.size(), 1);
    // A signal that sanitizers leave alone.
    QCOMPARE(::kill(pid_t(programs.first()), SIGABRT), 0);
    const DriverClient::Answer answer = m_client.get("title");
    QCOMPARE(answer.error(), QString("unknown error"));
    const QString message = answer.value.toObject().value("message").toString();
    QVERIFY2(message.contains("signal 6") && message.contains("finishLoading"),
             qPrintable(message));
    QCOMPARE(m_client.get("title").error(), QString("invalid session id"));
}

void TestDriverSessions::nothingIsLeft()
{
    QCOMPARE(m_client.begin().status, 200);
    QVERIFY(m_client.children().size() >= 4);
    QCOMPARE(m_client.end().status, 200);
    QTRY_VERIFY(m_client.children().isEmpty());
    QCOMPARE(m_client.files(), QStringList());
}

void TestDriverSessions::nothingIsLeftOfAKilledDriver()
{
    QCOMPARE(m_client.begin().status, 200);
    const QList<qint64> children = m_client.children();
    m_client.process().kill();
    QVERIFY(m_client.process().waitForFinished());
    for (const qint64 child : children)
        QTRY_VERIFY_WITH_TIMEOUT(!DriverClient::isRunning(child), 30000);
    QTRY_COMPARE_WITH_TIMEOUT(m_client.files(), QStringList(), 30000);
}

QTEST_GUILESS_MAIN(TestDriverSessions)
#include "test_driver_sessions.moc"
