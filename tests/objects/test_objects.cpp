// SPDX-License-Identifier: Apache-2.0
#include "api/vesprelv2.h"
#include "objects/placeholders.h"
#include "objects/player.h"
#include "objects/player_manager.h"
#include "objects/pvr_manager.h"
#include "objects/web_window.h"
#include "objects/window_manager.h"
#include "platform/box_paths.h"
#include "tests/support/log_capture.h"

#include <QFile>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>
#include <tuple>

namespace {

using Factory = std::function<QObject *(VesprelV2 *)>;

template <typename Object>
QObject *plain(VesprelV2 *)
{
    return new Object;
}

QStringList methodsOf(const QMetaObject &meta)
{
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const char *type = method.methodType() == QMetaMethod::Signal ? "signal" : "slot";
        methods.append(
            QString("%1 %2 %3").arg(type, method.typeName(), QString(method.methodSignature())));
    }
    return methods;
}

/** Reads every property in order, and makes sure that none takes another value. */
QStringList propertiesOf(QObject &object)
{
    QStringList properties;
    const QMetaObject &meta = *object.metaObject();
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        const bool written = property.write(&object, property.type() == QVariant::Bool ? 0 : 5);
        const QVariant value = property.read(&object);
        const QString text = value.type() == QVariant::StringList
                                 ? "[" + value.toStringList().join(',') + "]"
                                 : value.toString();
        properties.append(
            QString("%1 %2 %3%4")
                .arg(property.typeName(), property.name(), text, written ? " was written" : ""));
    }
    return properties;
}

QString firstRow(const QSignalSpy &spy)
{
    QStringList texts;
    for (const QVariant &value : spy.value(0))
        texts.append(value.toString());
    return texts.join(',');
}

} // namespace

Q_DECLARE_METATYPE(Factory)

/** The small portal objects, each on its own and the player with gSTB. */
class TestObjects : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_root;
    std::unique_ptr<VesprelV2> m_gSTB;

private slots:
    void initTestCase() { BoxPaths::setRoot(m_root.path()); }

    void init() { m_gSTB = std::make_unique<VesprelV2>(); }

    void cleanup() { m_gSTB.reset(); }

    void shape_data()
    {
        QTest::addColumn<Factory>("factory");
        QTest::addColumn<QStringList>("methods");
        QTest::addColumn<QStringList>("properties");
        const auto row = [](const char *name, const Factory &factory, const QStringList &methods,
                            const QStringList &properties) {
            QTest::newRow(name) << factory << methods << properties;
        };
        const Factory manager = [](VesprelV2 *gSTB) { return new stbPlayerManager(nullptr, gSTB); };
        const Factory player = [](VesprelV2 *gSTB) { return new stbPlayer(0, gSTB); };

        row("stbPlayerManager", manager, {},
            {"QStringList externalProtocols []",
             "stbPlayerManager::frameRateConfig* autoFrameRate ",
             "stbPlayerManager::RTSPConfig* RTSP "});
        row("frameRateConfig", plain<stbPlayerManager::frameRateConfig>, {},
            {"bool fr24 true", "bool fr50 true", "bool fr60 true"});
        row("RTSPConfig", plain<stbPlayerManager::RTSPConfig>, {},
            {"int type 0", "bool keepAlive false", "bool endByAnnounce false",
             "bool endByGetParameter false", "bool endByTimeout false", "bool endByRTP false",
             "bool useUDP false", "bool useRTPOverRTSP false", "bool updateDuration false",
             "bool nonSmoothPause false"});
        row("stbPlayer", player, {}, {"int state 0"});
        row("capabilitiesConfig", plain<stbPlayer::capabilitiesConfig>, {},
            {"bool video true", "bool audio true", "bool subtitles true", "bool teletext true"});
        row("statisticsConfig", plain<stbPlayer::statisticsConfig>, {},
            {"int continuityErrors 0", "int rtpErrors 0", "int decodingErrors 0", "int patErrors 0",
             "int pmtErrors 0", "int rtpDiscontinuity 0"});
        row("audioTrackConfig", plain<stbPlayer::audioTrackConfig>, {},
            {"int pid 0", "QStringList lang []", "int type 0"});
        row("PvrManager", plain<PvrManager>,
            {"signal int sCreateTask(QString,QString,QString,QString)",
             "signal void sRemoveTask(int,int)", "signal int sChangeEndTime(int,QString)",
             "signal QString sGetTaskByID(int)", "signal QString sGetTasksByIDs(QString)",
             "signal void sSetMaxRecordingCnt(int)", "signal QString sGetAllTasks()",
             "slot int CreateTask(QString,QString,QString,QString)",
             "slot void RemoveTask(int,int)", "slot int ChangeEndTime(int,QString)",
             "slot QString GetTaskByID(int)", "slot QString GetTasksByIDs(QString)",
             "slot void SetMaxRecordingCnt(int)", "slot QString GetAllTasks()",
             "slot QString GetEventParams()"},
            {});
        row("stbTimeShift", plain<stbTimeShift>,
            {"slot void SetSlidingMode(bool)", "slot void SetMaxDuration(int)",
             "slot void SetTimeShiftFolder(QString)"},
            {});
        row("stbStorage", plain<stbStorage>, {"slot QString getItem(QString)"}, {});
        row("stbWindowMgr", plain<stbWindowMgr>,
            {"signal void WebFavor(QString,int)", "signal void GetFocusPos(int&,int&,int&,int&)",
             "slot void InitWebWindow(QString,QString)", "slot void raiseWebWindow()",
             "slot void openWebFace(QString)", "slot void openWebWindow(QString)",
             "slot void LoadUrl(QString)", "slot void windowHide(int)", "slot void windowShow(int)",
             "slot void showPortalWindow()", "slot void openWebFavorites(QString,int)",
             "slot bool IsWebWindowExist()", "slot QString GetFocusedInputInfo()"},
            {});
        row("stbWebWindow", plain<stbWebWindow>,
            {"signal void OnVKey(QString,QString)", "signal void SetKeyboardPos(int,int,int,int)",
             "signal void VKeyboardHide()", "signal void sClose()", "slot int windowId()",
             "slot void SetGeometry(int,int,int,int)",
             "slot void SendVirtualKeypress(QString,QString)",
             "slot void messageSend(int,QString,QString)", "slot void messageSend(int,QString)",
             "slot void messageSend(int)", "slot void close()"},
            {});
        row("stbSurface", plain<stbSurface>, {}, {"int id 1"});
    }

    /** Portals find members by name, the bridge by index: the order is part of the interface. */
    void shape()
    {
        QFETCH(Factory, factory);
        const std::unique_ptr<QObject> object(factory(m_gSTB.get()));
        QTEST(methodsOf(*object->metaObject()), "methods");
        QTEST(propertiesOf(*object), "properties");
    }

    void propertyRecords()
    {
        stbPlayer::capabilitiesConfig capabilities;
        stbPlayer::statisticsConfig statistics;
        stbSurface surface;
        stbPlayerManager::RTSPConfig rtsp;
        stbPlayerManager manager(nullptr, m_gSTB.get());
        LogCapture log;
        for (QObject *object :
             {static_cast<QObject *>(&capabilities), static_cast<QObject *>(&statistics),
              static_cast<QObject *>(&surface), static_cast<QObject *>(&rtsp),
              static_cast<QObject *>(manager.firstPlayer()), static_cast<QObject *>(&manager)})
            propertiesOf(*object);
        QCOMPARE(log.take(),
                 QStringList({"getVideo (): true", "getAudio (): true", "getSub (): true",
                              "getTtx (): true", "getContinuityErrors (): 0", "getRtpErrors (): 0",
                              "getDecodingErrors (): 0", "getPatErrors (): 0", "getPmtErrors (): 0",
                              "getRtpDiscontinuity (): 0", "getId (): 1", "getState (): 0",
                              "getExternalProtocols ():", "getAutoFrameRate ():", "getRTSP ():"}));
    }

    void lifeRecords()
    {
        LogCapture log;
        std::make_unique<stbPlayerManager>(nullptr, m_gSTB.get());
        std::make_unique<PvrManager>();
        std::make_unique<stbWebWindow>();
        std::make_unique<stbWindowMgr>();
        std::make_unique<stbTimeShift>();
        std::make_unique<stbStorage>();
        std::make_unique<stbSurface>();
        QCOMPARE(log.take(),
                 QStringList({"stbPlayerManager ():", "stbPlayer ():", "~stbPlayerManager ():",
                              "~stbPlayer ():", "PvrManager", "~PvrManager", "stbWebWindow ()"}));
    }

    /** Each event reaches gSTB first and then its player, until the player is gone. */
    void playbackEvents()
    {
        auto manager = std::make_unique<stbPlayerManager>(nullptr, m_gSTB.get());
        LogCapture log;
        m_gSTB->OnPlayStarted();
        m_gSTB->OnAudioPids("[1]");
        m_gSTB->OnSubPids("[2]");
        m_gSTB->OnAudioPid(1);
        m_gSTB->OnSubPid(2);
        m_gSTB->setMediaProgress(10, 5);
        QCOMPARE(manager->firstPlayer()->property("state"), QVariant(2));
        m_gSTB->OnPlayEnded();
        QCOMPARE(manager->firstPlayer()->property("state"), QVariant(0));
        QCOMPARE(log.take(),
                 QStringList({"OnPlayStarted ()", "OnPlayStarted ()", "OnAudioPids (): \"[1]\"",
                              "OnAudioPids (): \"[1]\"", "OnSubPids (): \"[2]\"",
                              "OnSubPids (): \"[2]\"", "OnAudioPid (): 1", "OnAudioPid (): 1",
                              "OnSubPid (): 2", "OnSubPid (): 2", "getState (): 2",
                              "OnPlayEnded ()", "OnPlayEnded ()", "getState (): 0"}));
        manager.reset();
        log.take();
        m_gSTB->OnPlayStarted();
        m_gSTB->OnPlayEnded();
        QCOMPARE(log.take(), QStringList({"OnPlayStarted ()", "OnPlayEnded ()"}));
    }

    void audioLanguages_data()
    {
        QTest::addColumn<QStringList>("languages");
        QTest::addColumn<QString>("passedOn");
        QTest::newRow("none") << QStringList() << ",";
        QTest::newRow("one") << QStringList("ru") << "ru,";
        QTest::newRow("three") << QStringList({"ru", "en", "de"}) << "ru,en";
    }

    void audioLanguages()
    {
        QFETCH(QStringList, languages);
        QFETCH(QString, passedOn);
        stbPlayer player(0, m_gSTB.get());
        QSignalSpy spy(m_gSTB.get(), &VesprelV2::OnAudioLangs);
        LogCapture log;
        player.setAudioLanguages(languages);
        QCOMPARE(firstRow(spy), passedOn);
        QCOMPARE(player.getAudioLanguages(), languages);
        const QStringList records = log.take();
        QCOMPARE(records.first(), QString("setAudioLanguages ():"));
        QCOMPARE(records.last(), QString("getAudioLanguages ():"));
        // The receiver may have been told otherwise meanwhile, so the same list goes out again.
        player.setAudioLanguages(languages);
        QCOMPARE(spy.count(), 2);
    }

    /** Without a receiver there is a plain answer, and the records are the same. */
    void recordingsUnanswered()
    {
        PvrManager manager;
        LogCapture log;
        QCOMPARE(manager.CreateTask("u", "f", "1", "2"), 0);
        manager.RemoveTask(1, 2);
        QCOMPARE(manager.ChangeEndTime(1, "3"), 0);
        QCOMPARE(manager.GetTaskByID(1) + manager.GetTasksByIDs("1") + manager.GetAllTasks(),
                 QString());
        manager.SetMaxRecordingCnt(4);
        QCOMPARE(manager.GetEventParams(), QString());
        manager.OnPvrRecStarted();
        manager.OnPvrRecFinished();
        manager.OnPvrRecError();
        QCOMPARE(log.take(),
                 QStringList({"CreateTask \"u\"   \"f\"   \"1\"   \"2\"", "CreateTask 0",
                              "RemoveTask", "ChangeEndTime", "SetMaxRecordingCnt 4",
                              "OnPvrRecStarted", "OnPvrRecFinished", "OnPvrRecError"}));
        manager.setEventParams("{\"id\":5}");
        QCOMPARE(manager.GetEventParams(), QString("{\"id\":5}"));
    }

    /** Arguments go out unchanged, and the answer comes back within the call. */
    void recordingsAnswered()
    {
        PvrManager manager;
        QStringList asked;
        connect(
            &manager, &PvrManager::sCreateTask, this,
            [&](const QString &url, const QString &file, const QString &start, const QString &end) {
                asked += url + file + start + end;
                return 7;
            });
        connect(&manager, &PvrManager::sRemoveTask, this,
                [&](int id, int type) { asked += QString("%1,%2").arg(id).arg(type); });
        connect(&manager, &PvrManager::sChangeEndTime, this, [&](int id, const QString &end) {
            asked += QString::number(id) + end;
            return -1;
        });
        connect(&manager, &PvrManager::sGetTaskByID, this,
                [](int id) { return QString("{%1}").arg(id); });
        connect(&manager, &PvrManager::sGetTasksByIDs, this,
                [](const QString &list) { return list; });
        connect(&manager, &PvrManager::sGetAllTasks, this, [] { return QString("[8]"); });
        QCOMPARE(manager.CreateTask(" u", "", "s ", "e"), 7);
        manager.RemoveTask(1, 2);
        QCOMPARE(manager.ChangeEndTime(3, "x"), -1);
        QCOMPARE(asked, QStringList({" us e", "1,2", "3x"}));
        QCOMPARE(manager.GetTaskByID(5) + manager.GetTasksByIDs("[1, 2]") + manager.GetAllTasks(),
                 QString("{5}[1, 2][8]"));
    }

    void webWindow()
    {
        stbWebWindow window;
        QSignalSpy place(&window, &stbWebWindow::SetKeyboardPos);
        QSignalSpy key(&window, &stbWebWindow::OnVKey);
        QSignalSpy closed(&window, &stbWebWindow::sClose);
        QSignalSpy hidden(&window, &stbWebWindow::VKeyboardHide);
        LogCapture log;
        QCOMPARE(window.windowId(), 1);
        window.SetGeometry(1, -2, 3, 4);
        QCOMPARE(firstRow(place), QString("1,-2,3,4"));
        window.SendVirtualKeypress("'", "id");
        QCOMPARE(firstRow(key), QString("',id"));
        window.messageSend(1, "k", "v");
        window.messageSend(2, "k");
        window.messageSend(3);
        window.close();
        QCOMPARE(closed.count(), 1);
        QCOMPARE(hidden.count(), 0);
        QCOMPARE(log.take(),
                 QStringList({"windowId (): 1", "SetGeometry (): 1 -2 3 4",
                              "SendVirtualKeypress (): \"'\" \"id\"",
                              "messageSend (): 1 \"k\" \"v\"", "messageSend (): 2 \"k\" \"\"",
                              "messageSend (): 3 \"\" \"\"", "close ()"}));
    }

    void focusedInput()
    {
        stbWindowMgr manager;
        LogCapture log;
        const QString nowhere = manager.GetFocusedInputInfo();
        QCOMPARE(nowhere, QString("{\"result\":{\"x\":0, \"y\":0, \"w\":0, \"h\":0, "
                                  "\"positionHint\": \"none\"} }"));
        QCOMPARE(log.take().join('\n').remove('\\'),
                 QString("GetFocusedInputInfo (): \"%1\"").arg(nowhere));
        connect(&manager, &stbWindowMgr::GetFocusPos, this, [](int &x, int &y, int &w, int &h) {
            std::tie(x, y, w, h) = std::tuple(-1, 2, 3, 4);
        });
        QCOMPARE(manager.GetFocusedInputInfo(),
                 QString("{\"result\":{\"x\":-1, \"y\":2, \"w\":3, \"h\":4, "
                         "\"positionHint\": \"none\"} }"));
    }

    /** Accepted and dropped: no record, no request, an answer that never changes. */
    void silentRequests()
    {
        stbWindowMgr windows;
        stbTimeShift timeShift;
        stbStorage storage;
        QSignalSpy favourites(&windows, &stbWindowMgr::WebFavor);
        LogCapture log;
        windows.InitWebWindow("h", "f");
        windows.raiseWebWindow();
        windows.openWebFace("u");
        windows.openWebWindow("u");
        windows.LoadUrl("u");
        windows.windowHide(1);
        windows.windowShow(1);
        windows.showPortalWindow();
        QVERIFY(windows.IsWebWindowExist());
        timeShift.SetSlidingMode(true);
        timeShift.SetMaxDuration(1);
        timeShift.SetTimeShiftFolder(m_root.filePath("buffer"));
        QVERIFY(!QFile::exists(m_root.filePath("buffer")));
        QCOMPARE(storage.getItem("any"), QString());
        QCOMPARE(favourites.count(), 0);
        windows.openWebFavorites("u", 3);
        QCOMPARE(firstRow(favourites), QString("u,3"));
        QCOMPARE(log.take(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestObjects)
#include "test_objects.moc"
