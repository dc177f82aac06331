// SPDX-License-Identifier: Apache-2.0
#include "platform/box_paths.h"
#include "tests/support/portal.h"
#include "tests/support/receiver_peer.h"

#include <QProcess>
#include <QTest>

/** The whole program, whose engine can't be made to end a script that asks without end. */
class TestEndlessDialogs : public QObject
{
    Q_OBJECT

private slots:
    void portalComesBack_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QByteArray>("event");
        QTest::addColumn<QByteArray>("eventBehind");
        QTest::addColumn<QByteArray>("received");
        const QByteArray stop = "3ade68b1000003e900000000";
        const QByteArray play = "3ade68b1000003e8000000052f612e7473";
        const QByteArray playEnd = "3ade68b1000003ea00000000";
        const QByteArray powerOff = "3ade68b10000040500000000";
        const QByteArray powerOn = "3ade68b10000040600000000";
        const auto row = [](const char *name, const QByteArray &script, const QByteArray &event,
                            const QByteArray &eventBehind, const QByteArray &received) {
            QTest::newRow(name) << script << event << eventBehind << received;
        };
        // What it has connected goes with it, too.
        row("a new portal comes",
            "gSTB.OnPlay.connect(function () { gSTB.SetAudioPID(1); }); gSTB.Stop();"
            "while (true) alert('again');",
            "portal", "", stop + play + stop);
        row("over another dialog",
            "var stbEvent = {onEvent: function () { while (true) confirm('again'); }};"
            "setTimeout(function () { gSTB.Stop(); confirm('first'); }, 0);",
            playEnd + "portal", "", stop + play + stop);
        // Once from the page at first, and once when it is loaded again.
        row("while the box is off",
            "gSTB.Stop(); document.onkeydown = function () { while (!confirm('again')); };",
            powerOff, powerOn, stop + stop);
    }

    /** A script that asks without end keeps neither a portal nor the keys away. */
    void portalComesBack()
    {
        QFETCH(QByteArray, script);
        QFETCH(QByteArray, event);
        QFETCH(QByteArray, eventBehind);
        QFETCH(QByteArray, received);
        const TemporaryRoot root;
        ReceiverPeer receiver(BoxPaths::receiverSocket());
        const QString trap = root.write("trap.html", "<script>" + script + "</script>");
        const QString portal =
            root.write("portal.html", "<script>gSTB.Play('/a.ts'); gSTB.Stop();</script>");
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("VESPREL_ROOT", BoxPaths::root());
        environment.insert("Q_VESPREL_PORTAL", "file://" + trap);
        program.setProcessEnvironment(environment);
        program.start(VESPREL_PROGRAM, QStringList());
        QVERIFY(program.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(receiver.isConnected(), 20000);
        QTRY_VERIFY_WITH_TIMEOUT(receiver.received().endsWith(received.left(24)), 20000);
        const QByteArray url = "file://" + portal.toUtf8();
        event.replace("portal", "3ade68b1000003e8" +
                                    QByteArray::number(url.size(), 16).rightJustified(8, '0') +
                                    url.toHex());
        receiver.send(event);
        QByteArray log;
        const auto isAbandoned = [&program, &log] {
            log += program.readAllStandardError();
            return log.contains("Dialogs without end, pages abandoned");
        };
        QTRY_VERIFY_WITH_TIMEOUT(isAbandoned(), 20000);
        if (!eventBehind.isEmpty())
            receiver.send(eventBehind);
        QTRY_VERIFY_WITH_TIMEOUT(receiver.received().endsWith(received), 20000);
        program.terminate();
        QVERIFY(program.waitForFinished());
    }
};

QTEST_MAIN(TestEndlessDialogs)
#include "test_endless_dialogs.moc"
