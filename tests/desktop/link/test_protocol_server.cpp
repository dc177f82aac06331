// SPDX-License-Identifier: Apache-2.0
/*
 * How a receiver for the PC gets on with its connections: who hears events, what nobody reads,
 * broken frames, and its socket.
 */
#include "desktop/console/console_command.h"
#include "tests/desktop/receiver_link.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstring>
#include <memory>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/** Leaves a socket file behind on which nobody answers. */
void leaveStaleSocket(const QString &path)
{
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, path.toLocal8Bit().constData());
    ::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address);
    ::close(descriptor);
}

} // namespace

class TestProtocolServer : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_root = std::make_unique<QTemporaryDir>("/tmp/vrx-XXXXXX");
        BoxPaths::setRoot(m_root->path());
    }

    /** What a silent or slow receiver was told comes late, in its order and nothing twice. */
    void actsAsABadReceiver()
    {
        const QByteArray muteTwice = bytes("3ade68b1 0000044e 00000000 3ade68b1 0000044e 00000000");
        const auto muteCount = [](const ReceiverLink &link) {
            return std::count_if(link.messages.begin(), link.messages.end(),
                                 [](const auto &message) { return message.first() == "mute"; });
        };
        ReceiverLink link;
        link.commander.write(bytes("3ade68b1 0000044e 00000000"));
        QTRY_COMPARE(muteCount(link), 1);
        QTest::qWait(150); // Until the other connection counts as a listener.
        link.receiver.runConsoleCommand(parseConsoleLine("receiver silent 1"));
        link.receiver.runConsoleCommand(parseConsoleLine("usb mount"));
        link.commander.write(muteTwice);
        QTest::qWait(100);
        QCOMPARE(muteCount(link), 1);
        QCOMPARE(link.listener.bytesAvailable(), 0);
        QTRY_COMPARE(muteCount(link), 3);
        QTRY_VERIFY(link.heard(bytes("3ade68b1 000003f9 00000000")));
        QCOMPARE(link.received.size(), 12);

        link.receiver.runConsoleCommand(parseConsoleLine("receiver slow 1000"));
        link.commander.write(muteTwice);
        QTest::qWait(100);
        QCOMPARE(muteCount(link), 3);
        QTRY_COMPARE(muteCount(link), 5);

        link.receiver.runConsoleCommand(parseConsoleLine("receiver gone"));
        QTRY_COMPARE(link.listener.state(), QLocalSocket::UnconnectedState);
        QLocalSocket late;
        late.connectToServer(BoxPaths::receiverSocket());
        QVERIFY(!late.waitForConnected(100));
    }

    void eventsReachOnlyTheSilentConnection()
    {
        ReceiverLink link;
        QCOMPARE(link.failure, QString());
        link.commander.write(bytes("3ade68b1 000004b0 00000004 00000500"));
        QTRY_VERIFY(link.printed("virtual screen 1280"));
        link.receiver.runConsoleCommand(parseConsoleLine("time 60000 1000"));
        link.receiver.runConsoleCommand(parseConsoleLine("usb mount"));
        QTRY_COMPARE(link.listener.bytesAvailable(), 32);
        QCOMPARE(link.listener.readAll(), bytes("3ade68b1 000003ed 00000008 0000ea60 000003e8"
                                                "3ade68b1 000003f9 00000000"));
        QCOMPARE(link.commander.bytesAvailable(), 0);

        // A listener that starts to speak gets no more events.
        link.listener.write(bytes("3ade68b1 0000044e 00000000"));
        QTRY_VERIFY(link.printed("mute"));
        link.commander.abort();
        QLocalSocket other;
        other.connectToServer(BoxPaths::receiverSocket());
        link.receiver.runConsoleCommand(parseConsoleLine("power off"));
        QTRY_COMPARE(other.bytesAvailable(), 12);
        QCOMPARE(other.readAll(), bytes("3ade68b1 00000405 00000000"));
        QCOMPARE(link.listener.bytesAvailable(), 0);
    }

    void eventsForNobodyAreDropped()
    {
        ReceiverLink link({}, {20, 30});
        link.listener.abort();
        link.commander.write(bytes("3ade68b1 0000044e 00000000"));
        QTRY_VERIFY(link.printed("mute"));
        link.receiver.runConsoleCommand(parseConsoleLine("rec error 3"));
        QTRY_VERIFY(link.printed("dropped, nobody listens: recording error 3"));
        link.commander.abort();
        QTRY_COMPARE(link.messages.last().first().toString(), "connection closed");
        link.receiver.runConsoleCommand(parseConsoleLine("usb unmount"));
        QVERIFY(link.printed("dropped, nobody listens: usb unmounted"));
    }

    /** What a listener leaves unread is bounded; it gets whole events and then none. */
    void eventsForADeafListenerAreBounded()
    {
        ReceiverLink link;
        link.command(1200, bytes("00000500"));
        QTRY_VERIFY(link.printed("virtual screen 1280"));
        link.receiver.runConsoleCommand(parseConsoleLine("usb mount"));
        QTRY_VERIFY(link.heard(bytes("3ade68b1 000003f9 00000000")));
        link.received.clear();
        link.listener.setReadBufferSize(1);
        for (int i = 0; i < 20; ++i)
            link.receiver.runConsoleCommand(
                parseConsoleLine("audio pids " + QString(1 << 20, 'x')));
        QVERIFY(link.printed("dropping events, a listener does not read"));
        link.listener.setReadBufferSize(0);
        const auto readsAgain = [&link] {
            link.received += link.listener.readAll();
            return link.printed("the listener reads again, ");
        };
        QTRY_VERIFY(readsAgain());
        QCOMPARE(link.received.size() % (12 + (1 << 20)), 0);
        QVERIFY(link.received.size() < 6 * (1 << 20));
        link.receiver.runConsoleCommand(parseConsoleLine("usb unmount"));
        QTRY_VERIFY(link.heard(bytes("3ade68b1 000003fa 00000000")));
    }

    void cutFrames()
    {
        ReceiverLink link;
        const QByteArray stream = bytes("3ade68b1 000003ed 00000004 00001388"
                                        "3ade68b1 0000076d 00000000"
                                        "3ade68b1 00000776 00000003 617070");
        for (const char byte : stream) {
            link.commander.write(&byte, 1);
            link.commander.flush();
            QCoreApplication::processEvents();
        }
        QTRY_VERIFY(link.printed("run application app"));
        QVERIFY(link.printed("seek 5000 ms"));
        const auto isCommand = [](const QVariantList &message) {
            return !message.first().toString().startsWith("connection");
        };
        QCOMPARE(std::count_if(link.messages.begin(), link.messages.end(), isCommand), 3);
    }

    void garbageFrames_data()
    {
        QTest::addColumn<QByteArray>("garbage");
        QTest::newRow("piece of a header") << bytes("3ade68");
        QTest::newRow("huge length") << bytes("3ade68b1 000003e8 7fffffff 6162");
        QTest::newRow("negative length") << bytes("3ade68b1 000003e8 ffffffff 6162");
        QTest::newRow("zeros") << QByteArray(4099, '\0');
        QTest::newRow("ones") << QByteArray(4099, '\xff');
        QTest::newRow("short payloads") << bytes("3ade68b1 000003ed 00000001 01"
                                                 "3ade68b1 000004b2 00000005 0000000001"
                                                 "3ade68b1 00000772 00000001 7b");
    }

    /** Whatever one connection sends, the receiver serves the next one. */
    void garbageFrames()
    {
        QFETCH(QByteArray, garbage);
        ReceiverLink link;
        QLocalSocket vandal;
        vandal.connectToServer(BoxPaths::receiverSocket());
        vandal.write(garbage);
        vandal.flush();
        QTRY_COMPARE(vandal.bytesToWrite(), 0);
        link.commander.write(bytes("3ade68b1 0000076d 00000000"));
        QTRY_VERIFY(link.printed("reboot"));
        vandal.abort();
        QTRY_VERIFY(link.printed("connection closed"));
    }

    void socketPath()
    {
        const QString path = BoxPaths::receiverSocket();
        QDir().mkpath(QFileInfo(path).path());
        leaveStaleSocket(path);
        QVERIFY(QFileInfo::exists(path));
        {
            ProtocolServer server;
            QCOMPARE(server.listen(path), QString());
            QCOMPARE(QFile::permissions(path) & (QFile::ReadGroup | QFile::WriteGroup |
                                                 QFile::ReadOther | QFile::WriteOther),
                     QFile::Permissions());
            ProtocolServer second;
            QVERIFY(second.listen(path).contains("already answers"));
            QLocalSocket socket;
            socket.connectToServer(path);
            QVERIFY(socket.waitForConnected());
        }
        QVERIFY(!QFileInfo::exists(path));

        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        ProtocolServer server;
        QVERIFY(server.listen(path).contains("not a socket"));
        QVERIFY(QFileInfo(path).isFile());
        const QString longPath = m_root->path() + "/" + QString(120, 'a');
        QVERIFY(server.listen(longPath).contains("107"));
    }

private:
    std::unique_ptr<QTemporaryDir> m_root;
};

QTEST_GUILESS_MAIN(TestProtocolServer)
#include "test_protocol_server.moc"
