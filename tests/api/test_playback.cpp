// SPDX-License-Identifier: Apache-2.0
#include "api/vesprelv2.h"
#include "platform/box_paths.h"
#include "platform/sound.h"
#include "tests/support/log_capture.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

namespace {

using Steps = std::function<void(VesprelV2 &)>;

/** Writes every request that gSTB makes as one word with its arguments, in order. */
class RequestTrace
{
public:
    explicit RequestTrace(VesprelV2 &gSTB)
    {
        const auto note = [this](const char *name) { return [this, name] { m_trace += name; }; };
        const auto noteInt = [this](const char *name) {
            return [this, name](int value) { m_trace += QString("%1 %2").arg(name).arg(value); };
        };
        QObject::connect(&gSTB, &VesprelV2::sFirstPlay, &m_context, note("first"));
        QObject::connect(&gSTB, &VesprelV2::OnPlay, &m_context,
                         [this](const QString &url) { m_trace += "play [" + url + "]"; });
        QObject::connect(&gSTB, &VesprelV2::OnStop, &m_context, note("stop"));
        QObject::connect(&gSTB, &VesprelV2::OnPause, &m_context, note("pause"));
        QObject::connect(&gSTB, &VesprelV2::OnContinue, &m_context, note("continue"));
        QObject::connect(&gSTB, &VesprelV2::OnSeekTime, &m_context, noteInt("seek"));
        QObject::connect(&gSTB, &VesprelV2::OnSeekPercent, &m_context, noteInt("percent"));
        QObject::connect(&gSTB, &VesprelV2::OnShowHole, &m_context, note("show"));
        QObject::connect(&gSTB, &VesprelV2::OnHideHole, &m_context, note("hide"));
        QObject::connect(&gSTB, &VesprelV2::OnAudioTrack, &m_context, noteInt("audio"));
        QObject::connect(&gSTB, &VesprelV2::OnSubTrack, &m_context, noteInt("subtitle"));
        QObject::connect(&gSTB, &VesprelV2::sSetAspect, &m_context, noteInt("aspect"));
        QObject::connect(&gSTB, &VesprelV2::OnSubOnOff, &m_context, noteInt("subtitles"));
        QObject::connect(&gSTB, &VesprelV2::OnPortalLoaded, &m_context, note("loaded"));
        QObject::connect(&gSTB, &VesprelV2::VKeyboardOpen, &m_context, note("open"));
        QObject::connect(&gSTB, &VesprelV2::VKeyboardClose, &m_context, note("close"));
        QObject::connect(&gSTB, &VesprelV2::OnReboot, &m_context, note("reboot"));
        QObject::connect(&gSTB, &VesprelV2::OnScreenMode, &m_context, noteInt("screen"));
        QObject::connect(&gSTB, &VesprelV2::OnViewPort, &m_context,
                         [this](int x, int y, int w, int h) {
                             m_trace += QString("viewport %1 %2 %3 %4").arg(x).arg(y).arg(w).arg(h);
                         });
        QObject::connect(
            &gSTB, &VesprelV2::OnAudioLangs, &m_context,
            [this](const QString &a, const QString &b) { m_trace += "audiolangs " + a + " " + b; });
        QObject::connect(
            &gSTB, &VesprelV2::OnSubLangs, &m_context,
            [this](const QString &a, const QString &b) { m_trace += "sublangs " + a + " " + b; });
    }

    QStringList take()
    {
        QStringList taken;
        taken.swap(m_trace);
        return taken;
    }

private:
    QObject m_context;
    QStringList m_trace;
};

HI_S32 deviceGain()
{
    HI_UNF_SND_GAIN_ATTR_S gain = {};
    HI_UNF_SND_GetVolume(HI_UNF_SND_0, HI_UNF_SND_OUTPUTPORT_ALL, &gain);
    return gain.s32Gain;
}

} // namespace

Q_DECLARE_METATYPE(Steps)

class TestPlayback : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_root;
    std::unique_ptr<VesprelV2> m_gSTB;
    std::unique_ptr<RequestTrace> m_requests;

private slots:
    void initTestCase() { BoxPaths::setRoot(m_root.path()); }

    void init()
    {
        // One at a time, since there is one sound device.
        m_requests.reset();
        m_gSTB.reset();
        m_gSTB = std::make_unique<VesprelV2>();
        m_requests = std::make_unique<RequestTrace>(*m_gSTB);
    }

    void requests_data()
    {
        QTest::addColumn<Steps>("steps");
        QTest::addColumn<QStringList>("requests");
        QTest::addColumn<QStringList>("records");
        const auto row = [](const char *name, const QStringList &requests,
                            const QStringList &records, const Steps &steps) {
            QTest::newRow(name) << steps << requests << records;
        };
        row("first play", {"play [/a.ts]", "first"}, {"Play () \"/a.ts\""},
            [](VesprelV2 &g) { g.Play("/a.ts"); });
        row("second play", {"play [a]", "first", "play [b]"}, {"Play () \"a\"", "Play () \"b\""},
            [](VesprelV2 &g) {
                g.Play("a");
                g.Play("b");
            });
        row("play drops ffmpeg", {"play [/a.ts]", "first"}, {"Play () \"ffmpeg /a.ts\""},
            [](VesprelV2 &g) { g.Play("ffmpeg /a.ts"); });
        row("play keeps other prefixes", {"play [FFMPEG /a]", "first", "play [auto /a]"},
            {"Play () \"FFMPEG /a\"", "Play () \"auto /a\""}, [](VesprelV2 &g) {
                g.Play("FFMPEG /a");
                g.Play("auto /a");
            });
        row("play ignores the proxy", {"play [u]", "first"},
            {"Play () \"u\" \"p\"", "Play () \"u\""}, [](VesprelV2 &g) { g.Play("u", "p"); });
        row("play ignores the solution", {"play [u]", "first"},
            {"PlaySolution () \"u\" \"s\"", "Play () \"u\""},
            [](VesprelV2 &g) { g.PlaySolution("s", "u"); });
        row("pause only while playing", {}, {}, [](VesprelV2 &g) { g.Pause(); });
        row("pause after play", {"play [u]", "first"}, {"Play () \"u\""}, [](VesprelV2 &g) {
            g.Play("u");
            g.Pause();
            g.Continue();
        });
        row("pause and continue", {"pause", "continue", "pause"},
            {"OnPlayStarted ()", "Pause ()", "Continue ()", "Pause ()"}, [](VesprelV2 &g) {
                g.OnPlayStarted();
                g.Continue();
                g.Pause();
                g.Pause();
                g.Continue();
                g.Pause();
            });
        row("stop in every state", {"stop", "stop"}, {"Stop ()", "OnPlayStarted ()", "Stop ()"},
            [](VesprelV2 &g) {
                g.Stop();
                g.OnPlayStarted();
                g.Stop();
                g.Pause();
            });
        row("portal loaded once", {"loaded"}, {"InitPlayer ()", "InitPlayer ()"}, [](VesprelV2 &g) {
            g.InitPlayer();
            g.InitPlayer();
        });
        row("seek in seconds", {"seek 5000"}, {"SetPosTime ():  5", "SetPosTimeEx ():  5000"},
            [](VesprelV2 &g) { g.SetPosTime(5); });
        row("seek beyond the range", {"seek 2147483647"},
            {"SetPosTime ():  2147484", "SetPosTimeEx ():  2147483647"},
            [](VesprelV2 &g) { g.SetPosTime(2147484); });
        row("seek in percent", {"percent 5000"},
            {"SetPosPercent ():  50", "SetPosPercentEx ():  5000"},
            [](VesprelV2 &g) { g.SetPosPercent(50); });
        row("tracks", {"audio 3", "subtitle 4", "audiolangs ru en", "sublangs de ", "subtitles 1"},
            {"SetAudioPID ():  3", "SetSubtitlePID ():  4", "SetAudioLangs (): \"ru\" \"en\"",
             "SetSubtitleLangs (): \"de\" \"\"", "SetSubtitles (): true"},
            [](VesprelV2 &g) {
                g.SetAudioPID(3);
                g.SetSubtitlePID(4);
                g.SetAudioLangs("ru", "en");
                g.SetSubtitleLangs("de", "");
                g.SetSubtitles(true);
            });
        row("viewport", {"viewport 10 20 1280 720"}, {"SetViewport (): 10 20 1280 720"},
            [](VesprelV2 &g) { g.SetViewport(1280, 720, 10, 20); });
        row("viewport with clip", {"viewport 3 4 1 2"},
            {"SetViewportEx ()", "SetViewport (): 3 4 1 2"},
            [](VesprelV2 &g) { g.SetViewportEx(1, 2, 3, 4, 5, 6, 7, 8, true); });
        row("picture in graphics", {"viewport 0 0 0 0"},
            {"SetPIG ():  0 1 2 3", "SetPIG ():  1 1 2 3", "SetPIG : Set Full Screen"},
            [](VesprelV2 &g) {
                g.SetPIG(0, 1, 2, 3);
                g.SetPIG(1, 1, 2, 3);
            });
        row("top window", {"show", "hide"},
            {"SetTopWin ():  1", "SetTopWin ():  0", "SetTopWin ():  2", "GetTopWin ():  2"},
            [](VesprelV2 &g) {
                g.SetTopWin(1);
                g.SetTopWin(0);
                g.SetTopWin(2);
                QCOMPARE(g.GetTopWin(), 2);
            });
        row("aspect", {"aspect 16"}, {"SetAspect ():  16"}, [](VesprelV2 &g) { g.SetAspect(16); });
        row("keyboard", {"open", "close"},
            {"ShowVirtualKeyboard ()", "IsVirtualKeyboardActive (): true", "HideVirtualKeyboard ()",
             "IsVirtualKeyboardActiveEx ():"},
            [](VesprelV2 &g) {
                g.ShowVirtualKeyboard();
                QVERIFY(g.IsVirtualKeyboardActive());
                g.HideVirtualKeyboard();
                QVERIFY(!g.IsVirtualKeyboardActiveEx());
            });
        row("debug channel", {}, {"[Web] \"x\""}, [](VesprelV2 &g) { g.Debug("x"); });
        row("actions", {"screen 1080", "screen 80", "screen 0", "reboot"},
            {"ExecAction (): \"graphicres 1080\"", "ExecAction (): graphicres \"1080\"",
             "ExecAction (): \"graphicres1080\"", "ExecAction (): graphicres \"080\"",
             "ExecAction (): \"graphicres\"", "ExecAction (): graphicres \"\"",
             "ExecAction (): \"RebootDHCP\"", "ExecAction (): \"reboot_now\""},
            [](VesprelV2 &g) {
                for (const char *action : {"graphicres 1080", "graphicres1080", "graphicres",
                                           "RebootDHCP", "reboot_now"})
                    g.ExecAction(action);
            });
        row("local page", {"reboot"}, {"LoadURL ()", "LoadURL ()"}, [](VesprelV2 &g) {
            g.LoadURL("file:///home/web/x.html");
            g.LoadURL("http://home/web");
        });
    }

    void requests()
    {
        QFETCH(Steps, steps);
        LogCapture log;
        steps(*m_gSTB);
        QTEST(m_requests->take(), "requests");
        QTEST(log.take(), "records");
    }

    void playConfig_data()
    {
        QTest::addColumn<QString>("config");
        QTest::addColumn<QString>("url");
        QTest::newRow("position") << "{\"uri\":\"/a.ts\",\"position\":30}"
                                  << "/a.ts position:30";
        QTest::newRow("fraction") << "{\"uri\":\"/a.ts\",\"position\":30.9}"
                                  << "/a.ts position:30";
        QTest::newRow("huge") << "{\"uri\":\"a\",\"position\":1e99}"
                              << "a position:2147483647";
        QTest::newRow("position as text") << "{\"uri\":\"a\",\"position\":\"30\"}"
                                          << "a position:0";
        QTest::newRow("prefix") << "{\"uri\":\"ffmpeg a\"}"
                                << "a position:0";
        QTest::newRow("uri is no text") << "{\"uri\":5}"
                                        << " position:0";
        QTest::newRow("array") << "[1]"
                               << " position:0";
        QTest::newRow("not JSON") << "{"
                                  << " position:0";
        QTest::newRow("empty") << ""
                               << " position:0";
    }

    void playConfig()
    {
        QFETCH(QString, config);
        QFETCH(QString, url);
        m_gSTB->PlayConfig(config);
        QCOMPARE(m_requests->take().first(), "play [" + url + "]");
    }

    void position_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("position");
        QTest::addColumn<QList<int>>("answers");
        // Position in s and ms, in percent and hundredths, length in s and ms.
        QTest::newRow("middle") << 90500 << 30999 << QList<int>({30, 30999, 34, 3425, 90, 90500});
        QTest::newRow("no length") << 0 << 5000 << QList<int>({5, 5000, 0, 0, 0, 0});
        QTest::newRow("negative") << 1000 << -1999
                                  << QList<int>({-1, -1999, -199, -19990, 1, 1000});
        QTest::newRow("many hours")
            << 100000000 << 50000000 << QList<int>({50000, 50000000, 50, 5000, 100000, 100000000});
    }

    void position()
    {
        QFETCH(int, length);
        QFETCH(int, position);
        m_gSTB->setMediaProgress(length, position);
        LogCapture log;
        const QList<int> answers = {m_gSTB->GetPosTime(),    m_gSTB->GetPosTimeEx(),
                                    m_gSTB->GetPosPercent(), m_gSTB->GetPosPercentEx(),
                                    m_gSTB->GetMediaLen(),   m_gSTB->GetMediaLenEx()};
        QTEST(answers, "answers");
        QCOMPARE(log.take().last(), QString("GetMediaLenEx %1").arg(length));
    }

    /** What the receiver reported is answered until stop or end, then all of it is gone. */
    void mediaIsForgotten_data()
    {
        QTest::addColumn<Steps>("end");
        QTest::newRow("stop") << Steps([](VesprelV2 &g) { g.Stop(); });
        QTest::newRow("end of playback") << Steps([](VesprelV2 &g) { g.OnPlayEnded(); });
    }

    void mediaIsForgotten()
    {
        QFETCH(Steps, end);
        m_gSTB->OnPlayStarted();
        m_gSTB->OnAudioPids("[1]");
        m_gSTB->OnSubPids("[2]");
        m_gSTB->OnAudioPid(1);
        m_gSTB->OnSubPid(2);
        m_gSTB->setMediaProgress(10, 5);
        m_gSTB->SetAudioPID(9);
        QVERIFY(m_gSTB->IsPlaying());
        QCOMPARE(m_gSTB->GetAudioPIDsEx(), QString("[1]"));
        QCOMPARE(m_gSTB->GetSubtitlePIDs(), QString("[2]"));
        QCOMPARE(m_gSTB->GetAudioPID(), 1);
        QCOMPARE(m_gSTB->GetSubtitlePID(), 2);
        QCOMPARE(m_gSTB->playState(), 2);
        end(*m_gSTB);
        QVERIFY(!m_gSTB->IsPlaying());
        QCOMPARE(m_gSTB->GetAudioPIDs() + m_gSTB->GetSubtitlePIDs(), QString());
        QCOMPARE(m_gSTB->GetAudioPID() + m_gSTB->GetSubtitlePID(), 0);
        QCOMPARE(m_gSTB->GetMediaLenEx() + m_gSTB->GetPosTimeEx(), 0);
        QCOMPARE(m_gSTB->playState(), 0);
    }

    void sound()
    {
        LogCapture log;
        m_gSTB->SetVolume(150);
        QCOMPARE(deviceGain(), 100);
        m_gSTB->SetVolume(-5);
        QCOMPARE(deviceGain(), -5);
        m_gSTB->SetVolume(42);
        QCOMPARE(m_gSTB->GetVolume(), 42);
        m_gSTB->SetMute(3);
        QCOMPARE(m_gSTB->GetMute(), 1);
        m_gSTB->SetMute(0);
        QCOMPARE(m_gSTB->GetMute(), 0);
        QCOMPARE(log.take(), QStringList({"SetVolume ():  150", "SetVolume ():  -5",
                                          "SetVolume ():  42", "GetVolume ():  42", "SetMute () 3",
                                          "GetMute () 1", "SetMute () 0", "GetMute () 0"}));
    }

    /** A device that was taken away costs records and answers of 0, nothing else. */
    void soundDeviceGone()
    {
        HI_UNF_SND_Close(HI_UNF_SND_0);
        HI_UNF_SND_DeInit();
        m_gSTB->SetVolume(10);
        QCOMPARE(m_gSTB->GetVolume(), 0);
        QCOMPARE(m_gSTB->GetMute(), 0);
        LogCapture log;
        m_requests.reset();
        m_gSTB.reset();
        QCOMPARE(log.take(),
                 QStringList({"call HI_UNF_SND_Close failed.", "call HI_UNF_SND_DeInit failed."}));
    }

    void stateForTheKeyFilter()
    {
        LogCapture log;
        m_gSTB->SetTimeshiftState(1);
        m_gSTB->SetCurrPlace("tv");
        m_gSTB->SetTVMenuState(0);
        QCOMPARE(m_gSTB->timeshiftState(), 1);
        QCOMPARE(m_gSTB->currPlace(), QString("tv"));
        QVERIFY(m_gSTB->isTvMenuVisible());
        m_gSTB->SetTVMenuState(5);
        QVERIFY(!m_gSTB->isTvMenuVisible());
        m_gSTB->StandBy(true);
        QVERIFY(!m_gSTB->GetStandByStatus());
        m_gSTB->StandBy(2);
        QVERIFY(m_gSTB->GetStandByStatus());
        m_gSTB->EnableVKButton(true);
        QVERIFY(m_gSTB->isInPortal());
        QCOMPARE(log.take(), QStringList({"SetTimeshiftState (): 1", "SetCurrPlace (): \"tv\"",
                                          "SetTVMenuState (): true", "SetTVMenuState (): false",
                                          "StandBy (): true", "GetStandByStatus (): false",
                                          "StandBy (): 2", "GetStandByStatus (): true",
                                          "EnableVKButton (): true", "isInPortal (): true"}));
    }
};

QTEST_GUILESS_MAIN(TestPlayback)
#include "test_playback.moc"
