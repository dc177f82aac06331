// SPDX-License-Identifier: Apache-2.0
#include "objects/placeholders.h"
#include "objects/player.h"
#include "objects/player_manager.h"
#include "objects/pvr_manager.h"
#include "objects/web_window.h"
#include "objects/window_manager.h"
#include "tests/support/files.h"
#include "tests/support/gstb_page.h"
#include "tests/support/log_capture.h"

#include <QMetaProperty>
#include <QTest>

#include <memory>
#include <tuple>

namespace {

/** The objects beside gSTB as a page has them, each with a trace of what it asks for. */
struct Objects
{
    Objects()
    {
        page.publish("stbPlayerManager", players);
        page.publish("stbPlayer", *players.firstPlayer());
        page.publish("pvrManager", recordings);
        page.publish("timeShift", timeShift);
        page.publish("stbStorage", storage);
        page.publish("stbWindowMgr", windows);
        page.publish("stbWebWindow", webWindow);
    }

    GstbPage page;
    stbPlayerManager players{nullptr, &page.gSTB};
    PvrManager recordings;
    stbTimeShift timeShift;
    stbStorage storage;
    stbWindowMgr windows;
    stbWebWindow webWindow;
    SignalTrace ofRecordings{recordings};
    SignalTrace ofWindows{windows};
    SignalTrace ofWebWindow{webWindow};

    QString requests()
    {
        return ofRecordings.take() + ofWindows.take() + ofWebWindow.take() + page.requests.take();
    }
};

/** Every property of an object's class with its type and value, and that none can be written. */
QString propertiesOf(QObject &object)
{
    QStringList properties;
    const QMetaObject &meta = *object.metaObject();
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        const bool written = property.write(&object, property.type() == QVariant::Bool ? 0 : 5);
        properties.append(QString("%1 %2%3").arg(property.name(), property.read(&object).toString(),
                                                 written ? " was written" : ""));
    }
    return properties.join(", ");
}

/** A row: what a page calls, what it gets as JSON, what is asked for and what is written. */
void call(const char *name, const char *script, const char *answer, const char *requests,
          const char *records)
{
    row(name, QString(script), QString(answer), QString(requests), QString(records));
}

} // namespace

/** The small portal objects as a page calls them. */
class TestObjects : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Objects> m_objects;

private slots:
    void init()
    {
        m_objects.reset();
        m_objects = std::make_unique<Objects>();
        m_objects->ofRecordings.answerWith("[8]", 7);
    }

    void cleanupTestCase() { m_objects.reset(); }

    void calls_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("requests");
        QTest::addColumn<QString>("records");
        call("create", "pvrManager.CreateTask(' u', '', 's ', 'e')", "7", "sCreateTask( u,,s ,e)",
             "CreateTask \" u\"   \"\"   \"s \"   \"e\"\nCreateTask 7");
        call("remove", "pvrManager.RemoveTask(1, 2)", "null", "sRemoveTask(1,2)", "RemoveTask");
        call("change end", "pvrManager.ChangeEndTime(3, 'x')", "7", "sChangeEndTime(3,x)",
             "ChangeEndTime");
        call("one task", "pvrManager.GetTaskByID(5)", "\"[8]\"", "sGetTaskByID(5)", "");
        call("some tasks", "pvrManager.GetTasksByIDs('[1, 2]')", "\"[8]\"",
             "sGetTasksByIDs([1, 2])", "");
        call("all tasks", "pvrManager.GetAllTasks()", "\"[8]\"", "sGetAllTasks()", "");
        call("maximum", "pvrManager.SetMaxRecordingCnt(4)", "null", "sSetMaxRecordingCnt(4)",
             "SetMaxRecordingCnt 4");
        call("no event yet", "pvrManager.GetEventParams()", "\"\"", "", "");

        call("window number", "stbWebWindow.windowId()", "1", "", "windowId (): 1");
        call("place", "stbWebWindow.SetGeometry(1, -2, 3, 4)", "null", "SetKeyboardPos(1,-2,3,4)",
             "SetGeometry (): 1 -2 3 4");
        call("key", "stbWebWindow.SendVirtualKeypress(\"'\", 'id')", "null", "OnVKey(',id)",
             "SendVirtualKeypress (): \"'\" \"id\"");
        call("messages",
             "stbWebWindow.messageSend(1, 'k', 'v'), stbWebWindow.messageSend(2, 'k'),"
             " stbWebWindow.messageSend(3)",
             "null", "",
             "messageSend (): 1 \"k\" \"v\"\nmessageSend (): 2 \"k\" \"\"\n"
             "messageSend (): 3 \"\" \"\"");
        call("close", "stbWebWindow.close()", "null", "sClose()", "close ()");

        call("favourites", "stbWindowMgr.openWebFavorites('u', 3)", "null", "WebFavor(u,3)", "");
        call("accepted and dropped",
             "stbWindowMgr.InitWebWindow('h', 'f'), stbWindowMgr.raiseWebWindow(),"
             " stbWindowMgr.openWebFace('u'), stbWindowMgr.openWebWindow('u'),"
             " stbWindowMgr.LoadUrl('u'), stbWindowMgr.windowHide(1), stbWindowMgr.windowShow(1),"
             " stbWindowMgr.showPortalWindow(), timeShift.SetSlidingMode(true),"
             " timeShift.SetMaxDuration(1), timeShift.SetTimeShiftFolder('ROOT/buffer'),"
             " [stbWindowMgr.IsWebWindowExist(), stbStorage.getItem('any')]",
             "[true,\"\"]", "", "");

        call("protocols", "stbPlayerManager.externalProtocols", "[]", "",
             "getExternalProtocols ():");
        call("frame rates", "f = stbPlayerManager.autoFrameRate, [f.fr24, f.fr50, f.fr60]",
             "[true,true,true]", "", "getAutoFrameRate ():");
        call("RTSP",
             "r = stbPlayerManager.RTSP, [r.type, r.keepAlive, r.endByAnnounce,"
             " r.endByGetParameter, r.endByTimeout, r.endByRTP, r.useUDP, r.useRTPOverRTSP,"
             " r.updateDuration, r.nonSmoothPause]",
             "[0,false,false,false,false,false,false,false,false,false]", "", "getRTSP ():");
        call("state", "gSTB.Play('u'), stbPlayer.state = 9, stbPlayer.state", "1",
             "OnPlay(u) sFirstPlay()", "Play () \"u\"\ngetState (): 1");
    }

    void calls()
    {
        QFETCH(QString, script);
        LogCapture log;
        QTEST(m_objects->page.answer(script), "answer");
        QTEST(m_objects->requests(), "requests");
        QTEST(log.take().join('\n'), "records");
        QVERIFY(!QFile::exists(m_objects->page.path("buffer")));
    }

    /** Objects that no page reaches, and what each read leaves in the log. */
    void innerObjects()
    {
        stbPlayer::capabilitiesConfig capabilities;
        stbPlayer::statisticsConfig statistics;
        stbPlayer::audioTrackConfig track;
        stbSurface surface;
        LogCapture log;
        QCOMPARE(propertiesOf(capabilities),
                 QString("video true, audio true, subtitles true, teletext true"));
        QCOMPARE(propertiesOf(statistics),
                 QString("continuityErrors 0, rtpErrors 0, decodingErrors 0, patErrors 0,"
                         " pmtErrors 0, rtpDiscontinuity 0"));
        QCOMPARE(propertiesOf(track), QString("pid 0, lang , type 0"));
        QCOMPARE(propertiesOf(surface), QString("id 1"));
        QCOMPARE(log.take().join(' '),
                 QString("getVideo (): true getAudio (): true getSub (): true getTtx (): true"
                         " getContinuityErrors (): 0 getRtpErrors (): 0 getDecodingErrors (): 0"
                         " getPatErrors (): 0 getPmtErrors (): 0 getRtpDiscontinuity (): 0"
                         " getPid (): getLang (): getType (): getId (): 1"));
    }

    void lifeRecords()
    {
        LogCapture log;
        std::make_unique<stbPlayerManager>(nullptr, &m_objects->page.gSTB);
        std::make_unique<PvrManager>();
        std::make_unique<stbWebWindow>();
        std::make_unique<stbWindowMgr>();
        QCOMPARE(log.take().join(' '),
                 QString("stbPlayerManager (): stbPlayer (): ~stbPlayerManager (): ~stbPlayer ():"
                         " PvrManager ~PvrManager stbWebWindow ()"));
    }

    /** Each event reaches gSTB first and then its player, until the player is gone. */
    void playbackEvents()
    {
        VesprelV2 &gSTB = m_objects->page.gSTB;
        auto manager = std::make_unique<stbPlayerManager>(nullptr, &gSTB);
        LogCapture log;
        gSTB.OnPlayStarted();
        gSTB.OnAudioPids("[1]");
        gSTB.OnSubPids("[2]");
        gSTB.OnAudioPid(1);
        gSTB.OnSubPid(2);
        gSTB.setMediaProgress(10, 5);
        gSTB.OnPlayEnded();
        const QStringList once = {"OnPlayStarted ()",      "OnAudioPids (): \"[1]\"",
                                  "OnSubPids (): \"[2]\"", "OnAudioPid (): 1",
                                  "OnSubPid (): 2",        "OnPlayEnded ()"};
        QStringList twice;
        for (const QString &record : once)
            twice << record << record;
        QCOMPARE(log.take(), twice);
        manager.reset();
        log.take();
        gSTB.OnPlayStarted();
        QCOMPARE(log.take(), QStringList("OnPlayStarted ()"));
    }

    void audioLanguages_data()
    {
        QTest::addColumn<QStringList>("languages");
        QTest::addColumn<QString>("passedOn");
        row("none", QStringList(), QString("OnAudioLangs(,)"));
        row("one", QStringList("ru"), QString("OnAudioLangs(ru,)"));
        row("three", QStringList({"ru", "en", "de"}), QString("OnAudioLangs(ru,en)"));
    }

    void audioLanguages()
    {
        QFETCH(QStringList, languages);
        stbPlayer &player = *m_objects->players.firstPlayer();
        LogCapture log;
        player.setAudioLanguages(languages);
        QTEST(m_objects->requests(), "passedOn");
        QCOMPARE(player.getAudioLanguages(), languages);
        QCOMPARE(log.take().constFirst(), QString("setAudioLanguages ():"));
        QCOMPARE(player.id(), 0);
        // The receiver may have been told otherwise meanwhile, so the same list goes out again.
        player.setAudioLanguages(languages);
        QTEST(m_objects->requests(), "passedOn");
    }

    void recordingEvents()
    {
        LogCapture log;
        PvrManager &manager = m_objects->recordings;
        manager.OnPvrRecStarted();
        manager.OnPvrRecFinished();
        manager.OnPvrRecError();
        QCOMPARE(log.take().join(' '), QString("OnPvrRecStarted OnPvrRecFinished OnPvrRecError"));
        manager.setEventParams("{\"id\":5}");
        QCOMPARE(m_objects->page.answer("pvrManager.GetEventParams()"),
                 QString("\"{\\\"id\\\":5}\""));
    }

    void focusedInput()
    {
        const QString form = "{\"result\":{\"x\":%1, \"y\":%2, \"w\":%3, \"h\":%4, "
                             "\"positionHint\": \"none\"} }";
        const auto ask = [this] {
            return m_objects->page.evaluate("stbWindowMgr.GetFocusedInputInfo()").toString();
        };
        LogCapture log;
        QCOMPARE(ask(), form.arg(0).arg(0).arg(0).arg(0));
        QVERIFY(log.take().constLast().startsWith("GetFocusedInputInfo (): \"{\\\"result"));
        connect(
            &m_objects->windows, &stbWindowMgr::GetFocusPos, this,
            [](int &x, int &y, int &w, int &h) { std::tie(x, y, w, h) = std::tuple(-1, 2, 3, 4); });
        QCOMPARE(ask(), form.arg(-1).arg(2).arg(3).arg(4));
    }
};

QTEST_MAIN(TestObjects)
#include "test_objects.moc"
