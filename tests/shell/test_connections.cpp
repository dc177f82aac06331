// SPDX-License-Identifier: Apache-2.0
#include "tests/support/log_capture.h"
#include "tests/support/portal.h"

#include <QMetaMethod>
#include <QTest>
#include <QWebView>

namespace {

/** A frame as hexadecimal digits: its type and its payload in plain text. */
QByteArray frame(const char *type, const char *text = "")
{
    const QByteArray payload(text);
    return "3ade68b10000" + QByteArray(type) +
           QByteArray::number(payload.size(), 16).rightJustified(8, '0') + payload.toHex();
}

} // namespace

/** Every edge of the wiring table, once: from the page to the receiver's socket and back. */
class TestConnections : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Portal> m_portal;

private slots:
    void initTestCase()
    {
        m_portal = std::make_unique<Portal>();
        m_portal->load(tracingPage);
        QTRY_VERIFY(m_portal->receiver.isConnected());
        QTRY_COMPARE(m_portal->receiver.received(), QByteArray("3ade68b1000004b00000000400000500"));
    }

    void cleanupTestCase() { m_portal.reset(); }

    void init()
    {
        m_portal->clearTrace();
        m_portal->receiver.clear();
    }

    void requests_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QByteArray>("bytes");
        const auto row = [](const char *call, const QByteArray &bytes) {
            QTest::newRow(call) << QString(call) << bytes;
        };
        row("gSTB.Play('u')", frame("03e8", "u"));
        row("gSTB.Stop()", frame("03e9"));
        row("gSTB.SetPosTime(30)", "3ade68b1000003ed0000000400007530");
        row("gSTB.SetPosPercent(50)", "");
        row("gSTB.ExecAction('graphicres 1920')", "3ade68b1000004b00000000400000780");
        row("gSTB.SetViewport(3, 4, 1, 2)",
            "3ade68b1000004b20000001000000001000000020000000300000004");
        row("gSTB.SetAudioPID(1)", "3ade68b1000003f40000000400000001");
        row("gSTB.SetSubtitlePID(2)", "3ade68b1000003fe0000000400000002");
        row("gSTB.SetAudioLangs('ru', 'en')", frame("03f5", "ru") + frame("03f6", "en"));
        row("gSTB.SetSubtitleLangs('de', 'tr')", frame("03ff", "de") + frame("0400", "tr"));
        row("gSTB.SetSubtitles(true)", "3ade68b1000004010000000400000001");
        row("gSTB.LoadURL('file:///home/web/a.html')", frame("076d"));
        row("gSTB.SetAspect(16)", "3ade68b1000004b30000000400000010");
        row("stbPlayer.play({uri: 'u', position: 3})", frame("03e8", "u position:3"));
        row("stbPlayer.stop()", frame("03e9"));
        row("stbPlayer.setViewport({x: 1, y: 2, width: 3, height: 4})",
            "3ade68b1000004b20000001000000001000000020000000300000004");
    }

    void requests()
    {
        QFETCH(QString, call);
        QFETCH(QByteArray, bytes);
        m_portal->evaluate(call + "; gSTB.SetSubtitlePID(99);");
        QTRY_COMPARE(m_portal->receiver.received(), bytes + "3ade68b1000003fe0000000400000063");
    }

    void pauseAndResume()
    {
        m_portal->receiver.send(frame("03e9"));
        QTRY_COMPARE(m_portal->trace(), QString("event(4)"));
        QCOMPARE(m_portal->evaluate("stbPlayer.state"), QVariant(2.0));
        m_portal->evaluate("gSTB.Pause(); stbPlayer.resume(); stbPlayer.pause(); gSTB.Continue();");
        QTRY_COMPARE(m_portal->receiver.received(),
                     frame("03ea") + frame("03eb") + frame("03ea") + frame("03eb"));
    }

    void answeredRequests_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<quint32>("type");
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QVariant>("result");
        QTest::newRow("storage") << "gSTB.GetStorageInfo('{}')" << 1902u << frame("03f8", "[1]")
                                 << QVariant("{\"errCode\": 0,\"errMsg\": \"\",\"result\":[1]}");
        QTest::newRow("storage by parameter")
            << "gSTB.RDir('get_hdd_info')" << 1902u << frame("03f8", "[2]") << QVariant("[2]");
        QTest::newRow("create") << "pvrManager.CreateTask('u', 'f', '1', '2')" << 1903u
                                << QByteArray("3ade68b1000003fb000000040000002a") << QVariant(42.0);
        QTest::newRow("remove") << "pvrManager.RemoveTask(1, 2)" << 1904u
                                << QByteArray("3ade68b1000003fc0000000400000000") << QVariant();
        QTest::newRow("change end")
            << "pvrManager.ChangeEndTime(1, '2')" << 1905u
            << QByteArray("3ade68b1000003fd0000000400000003") << QVariant(3.0);
        QTest::newRow("by id") << "pvrManager.GetTaskByID(1)" << 1906u << frame("03fe", "{1}")
                               << QVariant("{1}");
        QTest::newRow("by ids") << "pvrManager.GetTasksByIDs('[1]')" << 1907u
                                << frame("03ff", "[3]") << QVariant("[3]");
        QTest::newRow("maximum") << "pvrManager.SetMaxRecordingCnt(1)" << 1908u
                                 << QByteArray("3ade68b1000004000000000400000000") << QVariant();
        QTest::newRow("all") << "pvrManager.GetAllTasks()" << 1909u << frame("0401", "[4]")
                             << QVariant("[4]");
    }

    void answeredRequests()
    {
        QFETCH(QString, call);
        QFETCH(quint32, type);
        QFETCH(QByteArray, answer);
        QFETCH(QVariant, result);
        m_portal->receiver.answer(type, answer);
        QCOMPARE(m_portal->evaluate(call), result);
        QTRY_VERIFY(m_portal->receiver.received().startsWith(
            "3ade68b10000" + QByteArray::number(type, 16).rightJustified(4, '0')));
    }

    void events_data()
    {
        QTest::addColumn<QByteArray>("frame");
        QTest::addColumn<QString>("trace");
        const auto row = [](const char *name, const QByteArray &hex, const char *trace) {
            QTest::newRow(name) << hex << QString(trace);
        };
        row("play start", frame("03e9"), "event(4)");
        row("play end", frame("03ea"), "event(1)");
        row("audio tracks", frame("03f2", "[a]"), "event(7)");
        row("subtitle tracks", frame("03f5", "[s]"), "event(9)");
        // The broadcast comes first, for the keys are only posted.
        row("usb mounted", frame("03f9"),
            "broadcast(0,storage.mount) keydown(alt+80) keyup(alt+80)");
        row("usb unmounted", frame("03fa"),
            "broadcast(0,storage.unmount) keydown(alt+81) keyup(alt+81)");
        row("recording started", "3ade68b1000004020000000400000005",
            "debug(eventParams,{\"id\":5}) event(39,{\"id\":5})");
        row("recording finished", "3ade68b1000004030000000400000006",
            "debug(eventParams,{\"id\":6}) event(34,{\"id\":6})");
        row("recording error", "3ade68b10000040400000004ffffffff",
            "debug(eventParams,{\"id\":-1}) event(35,{\"id\":-1})");
        row("power off", frame("0405"), "keydown(ctrl+122) keyup(ctrl+122)");
        row("power off again", frame("0405"), "keydown(ctrl+122) keyup(ctrl+122)");
        row("power on", frame("0406"), "");
    }

    /** The marker frame shows that the event raised nothing more than its row says. */
    void events()
    {
        QFETCH(QByteArray, frame);
        QFETCH(QString, trace);
        m_portal->receiver.send(frame + ::frame("03ea"));
        QString expected = trace + " event(1)";
        // Posted keys arrive behind the marker's statement, which is evaluated at once.
        const int keys = trace.indexOf("keydown");
        if (keys >= 0)
            expected = trace.left(keys) + "event(1) " + trace.mid(keys);
        QTRY_COMPARE(m_portal->trace(), expected.simplified());
    }

    void stateFromEvents()
    {
        LogCapture log;
        m_portal->receiver.send(frame("03eb") + "3ade68b1000003ed000000080000ea60000007d0" +
                                "3ade68b1000003f30000000400000003" +
                                "3ade68b1000003f60000000400000004" + frame("03f2", "[a]") +
                                frame("03f5", "[s]") + frame("03e9"));
        QTRY_VERIFY(m_portal->trace().contains("event(4)"));
        QVERIFY(log.take().contains("Media Progressive"));
        QCOMPARE(m_portal->evaluate("[gSTB.GetMediaLen(), gSTB.GetPosTime(), gSTB.GetAudioPID(),"
                                    " gSTB.GetSubtitlePID(), gSTB.GetAudioPIDs(),"
                                    " gSTB.GetSubtitlePIDs(), gSTB.IsPlaying()].join()"),
                 QVariant("60,2,3,4,[a],[s],true"));
    }

    /** A signal that leads nowhere is a line that the wiring table lacks. */
    void everySignalIsConnected()
    {
        struct Sender : QObject
        {
            using QObject::isSignalConnected;
        };
        QStringList unconnected;
        const auto objects = m_portal->window.findChildren<QObject *>();
        for (const QObject *object : objects) {
            const QByteArray name = object->metaObject()->className();
            if (!QList<QByteArray>{"Enigma2", "VesprelV2", "PvrManager", "stbWindowMgr",
                                   "stbWebWindow"}
                     .contains(name))
                continue;
            const QMetaObject *meta = object->metaObject();
            for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
                const QMetaMethod method = meta->method(i);
                if (method.methodType() == QMetaMethod::Signal &&
                    !(object->*&Sender::isSignalConnected)(method))
                    unconnected += name + "::" + method.name();
            }
        }
        // No command seeks by percent; the signal is only part of the interface.
        QCOMPARE(unconnected.join(' '), QString("VesprelV2::OnSeekPercent"));
    }

    void firstPlayAndPortalLoaded()
    {
        // The first play of the process came with the first row above.
        QCOMPARE(m_portal->evaluate("stb.profile.enable_arrow_keys_setpos"), QVariant(1.0));
        m_portal->evaluate("gSTB.InitPlayer();");
        QCOMPARE(m_portal->evaluate("key.EXIT + ' ' + key.BACK"), QVariant("27 8"));
    }

    /** Without a page's own objects every statement fails there, and nowhere else. */
    void eventsIntoAnEmptyPage()
    {
        m_portal->load("<p>empty</p>");
        m_portal->receiver.send(frame("03e9") + frame("03f9") + frame("0405") + frame("0406") +
                                "3ade68b1000004020000000400000005");
        QTRY_COMPARE(m_portal->evaluate("pvrManager.GetEventParams()"), QVariant("{\"id\":5}"));
    }
};

QTEST_MAIN(TestConnections)
#include "test_connections.moc"
