// SPDX-License-Identifier: Apache-2.0
#include "enigma2/frame.h"
#include "enigma2/private_settings_name.h"
#include "tests/enigma2/link_bench.h"
#include "tests/support/log_capture.h"

#include <QElapsedTimer>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QVarLengthArray>
#include <QtEndian>

#include <functional>
#include <set>

namespace {

using Action = std::function<void(Enigma2 &)>;
using Request = std::function<QVariant(Enigma2 &)>;

} // namespace

Q_DECLARE_METATYPE(Action)
Q_DECLARE_METATYPE(Request)

/** What the link sends and what it makes of frames; the wire's oracle is literal bytes. */
class TestEnigma2 : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_bench = std::make_unique<LinkBench>(); }

    void cleanup() { m_bench.reset(); }

    /** The bytes of what no page asks for, and of what is unusual; the others: test_connections. */
    void commands_data()
    {
        QTest::addColumn<Action>("action");
        QTest::addColumn<QByteArray>("bytes");
        const auto row = [](const char *name, const QByteArray &bytes, const Action &action) {
            QTest::newRow(name) << action << bytes.simplified().replace(' ', "");
        };
        row("MediaPlay", "3ade68b1 000003e8 00000003 e93f3f",
            [](Enigma2 &e) { e.MediaPlay(QString::fromUtf8("\u00e9\u20ac\u0416")); });
        row("MediaPlay empty", "3ade68b1 000003e8 00000000", [](Enigma2 &e) { e.MediaPlay(""); });
        row("MediaSeek negative", "3ade68b1 000003ed 00000004 fffffffe",
            [](Enigma2 &e) { e.MediaSeek(-2); });
        row("SubLangs", "3ade68b1 000003ff 00000002 7275 3ade68b1 00000400 00000000",
            [](Enigma2 &e) { e.SubLangs("ru", ""); });
        row("SubOnOff", "3ade68b1 00000401 00000004 00000001 3ade68b1 00000401 00000004 00000000",
            [](Enigma2 &e) {
                e.SubOnOff(true);
                e.SubOnOff(false);
            });
        row("VolUp", "3ade68b1 0000044c 00000000", [](Enigma2 &e) { e.VolUp(); });
        row("VolDown", "3ade68b1 0000044d 00000000", [](Enigma2 &e) { e.VolDown(); });
        row("Mute", "3ade68b1 0000044e 00000000", [](Enigma2 &e) { e.Mute(); });
        row("RunApp", "3ade68b1 00000776 00000004 61707073", [](Enigma2 &e) { e.RunApp("apps"); });
        row("Standby", "3ade68b1 00000777 00000000", [](Enigma2 &e) { e.Standby(); });
        row("Exit", "3ade68b1 000007cf 00000000", [](Enigma2 &e) { e.Exit(); });
    }

    void commands()
    {
        QFETCH(Action, action);
        QFETCH(QByteArray, bytes);
        m_bench->connect();
        action(*m_bench->link);
        QTRY_COMPARE(m_bench->peer->received(), bytes);
    }

    void events_data()
    {
        QTest::addColumn<QByteArray>("hex");
        QTest::addColumn<QByteArray>("signal");
        QTest::addColumn<QVariantList>("arguments");
        const auto row = [](const char *name, const char *hex, const char *signal,
                            const QVariantList &arguments = {}) {
            QTest::newRow(name) << QByteArray(hex) << QByteArray(signal) << arguments;
        };
        row("new portal", "3ade68b1000003e800000004 613a2fe9", "OnNewPortal(QString)",
            {QString::fromUtf8("a:/\u00e9")});
        row("play start with payload", "3ade68b1000003e900000001 ff", "OnPlayStart()");
        row("progressive", "3ade68b1000003eb00000000", "OnPlayProgressive()");
        row("time status", "3ade68b1000003ed00000008 0000ea60 ffffffff", "OnPlayTStatus(int,int)",
            {60000, -1});
        row("time status cut", "3ade68b1000003ed00000005 0000ea60 01", "OnPlayTStatus(int,int)",
            {60000, 0x01000000});
        row("time status empty", "3ade68b1000003ed00000000", "OnPlayTStatus(int,int)", {0, 0});
        row("audio list", "3ade68b1000003f200000004 5be2825d", "OnAudioPids(QString)",
            {QString::fromUtf8("[\xe2\x82]")});
        row("audio list ends at NUL", "3ade68b1000003f200000004 5b5d0041", "OnAudioPids(QString)",
            {"[]"});
        row("subtitle list", "3ade68b1000003f500000002 d096", "OnSubPids(QString)",
            {QString::fromUtf8("\u0416")});
        row("recording finished", "3ade68b10000040300000004 00000007", "OnPvrRecFinished(int)",
            {7});
        row("recording error", "3ade68b10000040400000004 ffffffff", "OnPvrRecError(int)", {-1});
    }

    /** Each event raises its signal, and no other event signal, in the thread of the link. */
    void events()
    {
        QFETCH(QByteArray, hex);
        QFETCH(QByteArray, signal);
        QFETCH(QVariantList, arguments);
        m_bench->connect();
        std::vector<std::unique_ptr<QSignalSpy>> others;
        std::unique_ptr<QSignalSpy> expected;
        const QMetaObject &meta = Enigma2::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            if (method.methodType() != QMetaMethod::Signal)
                continue;
            auto spy = std::make_unique<QSignalSpy>(m_bench->link.get(), method);
            if (method.methodSignature() == signal)
                expected = std::move(spy);
            else
                others.push_back(std::move(spy));
        }
        QVERIFY(expected);
        m_bench->peer->send(hex);
        QTRY_COMPARE(expected->count(), 1);
        QCOMPARE(expected->first(), arguments);
        for (const auto &spy : others)
            QVERIFY2(spy->isEmpty(), spy->signal());
    }

    /** Empty texts, unknown types and answers that nobody awaits raise nothing. */
    void droppedFrames()
    {
        m_bench->connect();
        QSignalSpy portal(m_bench->link.get(), &Enigma2::OnNewPortal);
        QSignalSpy audio(m_bench->link.get(), &Enigma2::OnAudioPids);
        QSignalSpy subtitles(m_bench->link.get(), &Enigma2::OnSubPids);
        QSignalSpy start(m_bench->link.get(), &Enigma2::OnPlayStart);
        for (const char *typeAndLength :
             {"000003e800000000", "000003f200000000", "000003f500000000", "000003ec00000000",
              "000003ee00000000", "000003f400000000", "000003f700000000", "000003e700000000",
              "0000040700000000", "ffffffff00000000", "8000000000000000", "0000040100000000"})
            m_bench->peer->send(frame(typeAndLength));
        m_bench->peer->send(frame("000003e900000000"));
        QTRY_COMPARE(start.count(), 1);
        QVERIFY(portal.isEmpty() && audio.isEmpty() && subtitles.isEmpty());
    }

    /** Each slot sends, with whatever arguments, and together they send each command there is. */
    void slotsSendEveryCommand()
    {
        m_bench->connect();
        m_bench->link->setReplyTimeout(0);
        const QMetaObject &meta = Enigma2::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            if (method.methodType() != QMetaMethod::Slot || method.access() != QMetaMethod::Public)
                continue;
            QVector<QVariant> values;
            QVarLengthArray<void *> pointers = {nullptr};
            for (int argument = 0; argument < method.parameterCount(); ++argument)
                values.append(QVariant(method.parameterType(argument), nullptr));
            for (QVariant &value : values)
                pointers.append(value.data());
            m_bench->link->qt_metacall(QMetaObject::InvokeMetaMethod, i, pointers.data());
        }
        std::set<int> expected;
        for (const CommandRow &row : commandRows)
            expected.insert(int(row.command));
        const auto sent = [this] {
            std::set<int> types;
            FrameSplitter splitter;
            splitter.feed(QByteArray::fromHex(m_bench->peer->received()).toStdString());
            while (const auto frame = splitter.next())
                types.insert(frame->type);
            return types;
        };
        QTRY_COMPARE(sent(), expected);
    }

    void everySignalIsAnEventOfTheTable()
    {
        std::multiset<QByteArray> named;
#define NAME_SIGNAL(number, name, signal, ...) named.insert(#signal);
        VESPREL_EVENTS(NAME_SIGNAL)
#undef NAME_SIGNAL
        std::multiset<QByteArray> declared;
        const QMetaObject &meta = Enigma2::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            if (meta.method(i).methodType() == QMetaMethod::Signal)
                declared.insert(meta.method(i).name());
        }
        QVERIFY(named == declared);
    }

    void requests_data()
    {
        QTest::addColumn<Request>("request");
        QTest::addColumn<quint32>("type");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QVariant>("result");
        QTest::addColumn<QVariant>("unanswered");
        const auto row = [](const char *name, quint32 type, const char *payload, const char *answer,
                            const QVariant &result, const QVariant &unanswered,
                            const Request &request) {
            QTest::newRow(name) << request << type << QByteArray(payload) << QByteArray(answer)
                                << result << unanswered;
        };
        row("GetStorageInfo", 1902, "", "3ade68b1000003f800000003 5b315d", "[1]", "[]",
            [](Enigma2 &e) { return e.GetStorageInfo(); });
        row("PvrCreateTask", 1903, R"({"endTime":"t2","fileName":"f","startTime":"t1","url":"?"})",
            "3ade68b1000003fb00000004 0000002a", 42, -1, [](Enigma2 &e) {
                return e.PvrCreateTask(QString::fromUtf8("\u0416"), "f", "t1", "t2");
            });
        row("PvrCreateTask refused", 1903,
            R"({"endTime":"","fileName":"","startTime":"","url":""})",
            "3ade68b1000003fb00000004 ffffffff", -1, -1,
            [](Enigma2 &e) { return e.PvrCreateTask("", "", "", ""); });
        row("PvrRemoveTask", 1904, R"({"id":7,"removeType":2})",
            "3ade68b1000003fc00000004 00000000", QVariant(), QVariant(), [](Enigma2 &e) {
                e.PvrRemoveTask(7, 2);
                return QVariant();
            });
        row("PvrChangeEndTime", 1905, R"({"endTime":"t","id":7})", "3ade68b1000003fd00000002 0001",
            65536, -1, [](Enigma2 &e) { return e.PvrChangeEndTime(7, "t"); });
        row("PvrGetTaskByID", 1906, R"({"id":7})", "3ade68b1000003fe00000003 7b7d41", "{}A", "{}",
            [](Enigma2 &e) { return e.PvrGetTaskByID(7); });
        row("PvrGetTasksByIDs", 1907, "{\"idList\":\"[1,\\\"2\\\"]\"}",
            "3ade68b1000003ff00000002 d096", QString::fromUtf8("\u0416"), "[]",
            [](Enigma2 &e) { return e.PvrGetTasksByIDs("[1,\"2\"]"); });
        row("PvrSetMaxRecordingCnt", 1908, R"({"maxCnt":3})", "3ade68b10000040000000004 00000000",
            QVariant(), QVariant(), [](Enigma2 &e) {
                e.PvrSetMaxRecordingCnt(3);
                return QVariant();
            });
        row("PvrGetAllTasks", 1909, "", "3ade68b10000040100000002 5b5d", "[]", "[]",
            [](Enigma2 &e) { return e.PvrGetAllTasks(); });
    }

    void requests()
    {
        QFETCH(Request, request);
        QFETCH(quint32, type);
        QFETCH(QByteArray, payload);
        QFETCH(QByteArray, answer);
        m_bench->connect();
        LogCapture log;
        QTEST(request(*m_bench->link), "unanswered");
        const QString name = QString(QTest::currentDataTag()).section(' ', 0, 0);
        QVERIFY(log.take().contains(name + " timeout"));
        QByteArray header(12, '\0');
        qToBigEndian<quint32>(987654321, header.data());
        qToBigEndian<quint32>(type, header.data() + 4);
        qToBigEndian<quint32>(quint32(payload.size()), header.data() + 8);
        QTRY_COMPARE(m_bench->peer->received(), (header + payload).toHex());

        m_bench->peer->answer(type, answer);
        m_bench->link->setReplyTimeout(3000);
        QElapsedTimer timer;
        timer.start();
        QTEST(request(*m_bench->link), "result");
        QVERIFY2(timer.elapsed() < 1500, "the answer did not wake the request");
        QVERIFY(!log.take().join('\n').contains("timeout"));
    }

    /** An empty answer wakes its request, which returns what the last text answer left. */
    void emptyTextAnswerLeavesThePreviousText()
    {
        m_bench->connect();
        m_bench->link->setReplyTimeout(3000);
        m_bench->peer->answer(1902, frame("000003f800000000"));
        QCOMPARE(m_bench->link->GetStorageInfo(), QString());
        QSignalSpy start(m_bench->link.get(), &Enigma2::OnPlayStart);
        m_bench->peer->send(frame("0000040100000002", "7b7d") + frame("000003e900000000"));
        QTRY_COMPARE(start.count(), 1);
        m_bench->peer->answer(1907, frame("000003ff00000000"));
        QCOMPARE(m_bench->link->PvrGetTasksByIDs(""), QString("{}"));
        QCOMPARE(m_bench->link->GetStorageInfo(), QString("{}"));
    }

    /** The answer of another request does not end the wait. */
    void foreignAnswerWakesNobody()
    {
        m_bench->connect();
        m_bench->peer->answer(1906, frame("000003ff00000002", "5b5d"));
        QCOMPARE(m_bench->link->PvrGetTaskByID(1), QString("{}"));
    }

    void unansweredRequestGivesUpAfterThreeSeconds()
    {
        m_bench->link = std::make_unique<Enigma2>();
        m_bench->connect();
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(m_bench->link->PvrGetAllTasks(), QString("[]"));
        QVERIFY2(timer.elapsed() >= 2900 && timer.elapsed() < 4500,
                 qPrintable(QString::number(timer.elapsed())));
    }

    void missingServerLosesCommands()
    {
        LogCapture log;
        m_bench->link->ConnectServer(m_bench->socketPath());
        QVERIFY(log.take().contains("Enigma2 onError:  2"));
        // Nothing calls it, but it is part of the interface.
        QVERIFY(QMetaObject::invokeMethod(m_bench->link.get(), "onDisConnected"));
        // Among what the reader's thread says as it starts.
        QCOMPARE(log.take().count("Enigma2 onDisConnected"), 1);
        m_bench->link->MediaStop();
        QCOMPARE(m_bench->link->GetStorageInfo(), QString("[]"));
    }

    void privateSettings_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("name");
        QTest::newRow("host and port") << "http://10.0.0.5:88/c/index.html"
                                       << "private_settings_10_0_0_5_88";
        QTest::newRow("host only") << "https://tv.example"
                                   << "private_settings_tv_example";
        QTest::newRow("nested") << "a://b://c"
                                << "private_settings_b_";
        QTest::newRow("file") << "file:///home/web/x.html"
                              << "private_settings_";
        QTest::newRow("none") << "tv.example/c" << QString();
    }

    void privateSettings()
    {
        QFETCH(QString, url);
        QFETCH(QString, name);
        QCOMPARE(privateSettingsName(url).value_or(QString()), name);

        m_bench->connect();
        qputenv("Q_PRIVATE_SETTING_PATH", "before");
        QByteArray seen;
        QString told;
        connect(m_bench->link.get(), &Enigma2::OnNewPortal, this, [&](const QString &portal) {
            seen = qgetenv("Q_PRIVATE_SETTING_PATH");
            told = portal;
        });
        const QByteArray payload = url.toLatin1().toHex();
        const QByteArray length = QByteArray::number(url.size(), 16).rightJustified(8, '0');
        m_bench->peer->send(frame("000003e8" + length, payload));
        QTRY_COMPARE(told, url);
        QCOMPARE(QString(seen), name.isNull() ? QString("before") : name);
    }

    void logRecords()
    {
        LogCapture log;
        m_bench->connect();
        m_bench->link->GetStorageInfo(); // Unanswered, so the answer below finds nobody waiting.
        m_bench->link->MediaPlay("http://a");
        m_bench->link->MediaSeek(30);
        m_bench->link->RunApp("setup");
        QSignalSpy on(m_bench->link.get(), &Enigma2::OnPowerOn);
        m_bench->peer->send(frame("0000040100000002", "5b5d") +
                            frame("000003f300000004", "00000007") + frame("0000040600000000"));
        QTRY_COMPARE(on.count(), 1);
        const QStringList records = log.take();
        for (const char *record :
             {"\u5f00\u59cb\u6267\u884c", "Enigma2 onConnected", "Enigma2 OnPlay:  \"http://a\"",
              "MediaSeek:  \"\\x00\\x00\\x00\\x1E\"", "Enigma2 RunApp:  \"setup\"",
              "VirtualScreen:  1280 \"\\x00\\x00\\x05\\x00\"", "MsgPvrGetAllTasks:  start 0",
              "MsgPvrGetAllTasks:  end", "MsgGetAudioPid:  7", "got power on msg"})
            QVERIFY2(records.contains(record), qPrintable(record + ("\n" + records.join('\n'))));
    }

private:
    std::unique_ptr<LinkBench> m_bench;
};

QTEST_GUILESS_MAIN(TestEnigma2)
#include "test_enigma2.moc"
