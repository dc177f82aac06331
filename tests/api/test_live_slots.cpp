// SPDX-License-Identifier: Apache-2.0
#include "platform/device_identity.h"
#include "platform/sound.h"
#include "tests/support/files.h"
#include "tests/support/gstb_page.h"
#include "tests/support/log_capture.h"

#include <QDir>
#include <QFile>
#include <QNetworkInterface>
#include <QTest>

#include <memory>

namespace {

/** What the receiver tells gSTB through the window, callable by a row's script. */
class Receiver : public QObject
{
    Q_OBJECT

public:
    explicit Receiver(VesprelV2 &gSTB)
        : m_gSTB(gSTB)
    {
    }

public slots:
    void started() { m_gSTB.OnPlayStarted(); }
    void ended() { m_gSTB.OnPlayEnded(); }
    void progress(int length, int position) { m_gSTB.setMediaProgress(length, position); }
    int state() { return m_gSTB.playState(); }
    void tracks()
    {
        m_gSTB.OnAudioPids("[1]");
        m_gSTB.OnSubPids("[2]");
        m_gSTB.OnAudioPid(3);
        m_gSTB.OnSubPid(4);
    }
    QString keyState()
    {
        return QString("%1 %2 %3 %4")
            .arg(m_gSTB.timeshiftState())
            .arg(m_gSTB.currPlace())
            .arg(m_gSTB.isTvMenuVisible())
            .arg(m_gSTB.isInPortal());
    }
    int gain()
    {
        HI_UNF_SND_GAIN_ATTR_S gain = {};
        HI_UNF_SND_GetVolume(HI_UNF_SND_0, HI_UNF_SND_OUTPUTPORT_ALL, &gain);
        return gain.bLinearMode ? gain.s32Gain : -1000;
    }

private:
    VesprelV2 &m_gSTB;
};

QString allScripts;

/** A row: what a page calls, what it gets as JSON, what gSTB asks for and what it writes. */
void live(const char *name, const char *script, const char *answer, const char *requests,
          const char *records)
{
    allScripts += script;
    row(name, QString(script), QString(answer), QString(requests), QString(records));
}

void playback()
{
    live("first play", "gSTB.Play('/a.ts'), box.state()", "1", "OnPlay(/a.ts) sFirstPlay()",
         "Play () \"/a.ts\"");
    live("second play", "gSTB.Play('a'), gSTB.Play('ffmpeg b')", "null",
         "OnPlay(a) sFirstPlay() OnPlay(b)", "Play () \"a\"\nPlay () \"ffmpeg b\"");
    live("other prefixes", "gSTB.Play('FFMPEG a'), gSTB.Play('auto a'), gSTB.Play('ffmpeg')",
         "null", "OnPlay(FFMPEG a) sFirstPlay() OnPlay(auto a) OnPlay(ffmpeg)",
         "Play () \"FFMPEG a\"\nPlay () \"auto a\"\nPlay () \"ffmpeg\"");
    live("proxy", "gSTB.Play('u', 'p')", "null", "OnPlay(u) sFirstPlay()",
         "Play () \"u\" \"p\"\nPlay () \"u\"");
    live("solution", "gSTB.PlaySolution('s', 'u')", "null", "OnPlay(u) sFirstPlay()",
         "PlaySolution () \"u\" \"s\"\nPlay () \"u\"");
    live("configuration", "gSTB.PlayConfig('{}')", "null", "OnPlay( position:0) sFirstPlay()",
         "PlayConfig (): \"{}\"\nPlay () \" position:0\"");
    live("pause only while playing", "gSTB.Pause(), gSTB.Play('u'), gSTB.Pause(), gSTB.Continue()",
         "null", "OnPlay(u) sFirstPlay()", "Play () \"u\"");
    live("pause and continue",
         "box.started(), gSTB.Continue(), gSTB.Pause(), gSTB.Pause(), state = box.state(),"
         " gSTB.Continue(), [state, box.state()]",
         "[3,2]", "OnPause() OnContinue()", "OnPlayStarted ()\nPause ()\nContinue ()");
    live("paused counts as playing", "box.started(), gSTB.Pause(), gSTB.IsPlaying()", "true",
         "OnPause()", "OnPlayStarted ()\nPause ()\nIsPlaying ()");
    live("stop in every state", "gSTB.Stop(), box.started(), gSTB.Stop(), gSTB.Pause()", "null",
         "OnStop() OnStop()", "Stop ()\nOnPlayStarted ()\nStop ()");
    live("player made anew", "box.started(), gSTB.InitPlayer(), gSTB.InitPlayer(), box.state()",
         "0", "OnPortalLoaded()", "OnPlayStarted ()\nInitPlayer ()\nInitPlayer ()");
    live("loop", "gSTB.SetLoop(2)", "null", "", "SetLoop ():  2");
    live("seconds", "gSTB.SetPosTime(5)", "null", "OnSeekTime(5000)",
         "SetPosTime ():  5\nSetPosTimeEx ():  5000");
    live("seconds beyond the range", "gSTB.SetPosTime(2147484), gSTB.SetPosTime(-2147484)", "null",
         "OnSeekTime(2147483647) OnSeekTime(-2147483648)",
         "SetPosTime ():  2147484\nSetPosTimeEx ():  2147483647\n"
         "SetPosTime ():  -2147484\nSetPosTimeEx ():  -2147483648");
    live("percent", "gSTB.SetPosPercent(50)", "null", "OnSeekPercent(5000)",
         "SetPosPercent ():  50\nSetPosPercentEx ():  5000");
    live("fine units", "gSTB.SetPosTimeEx(7), gSTB.SetPosPercentEx(8)", "null",
         "OnSeekTime(7) OnSeekPercent(8)", "SetPosTimeEx ():  7\nSetPosPercentEx ():  8");
    live("position",
         "box.progress(90500, 30999), [gSTB.GetPosTime(), gSTB.GetPosTimeEx(),"
         " gSTB.GetPosPercent(), gSTB.GetPosPercentEx(), gSTB.GetMediaLen(), gSTB.GetMediaLenEx()]",
         "[30,30999,34,3425,90,90500]", "",
         "GetPosTime ():  30\nGetPosTimeEx ():  30999\nGetPosPercent ():  34\n"
         "GetPosPercentEx ():  3425\nGetMediaLen ():  90\nGetMediaLenEx 90500");
    live("no length", "box.progress(0, 5000), gSTB.GetPosPercent() + gSTB.GetPosPercentEx()", "0",
         "", "GetPosPercent ():  0\nGetPosPercentEx ():  0");
    live("many hours, and before the start",
         "box.progress(100000000, 50000000), all = gSTB.GetPosPercentEx(),"
         " box.progress(1000, -1999), [all, gSTB.GetPosTime(), gSTB.GetPosPercent()]",
         "[5000,-1,-199]", "",
         "GetPosPercentEx ():  5000\nGetPosTime ():  -1\nGetPosPercent ():  -199");
}

void tracksAndPicture()
{
    live("requested tracks",
         "gSTB.SetAudioPID(3), gSTB.SetSubtitlePID(4), gSTB.SetAudioLangs('ru', 'en'),"
         " gSTB.SetSubtitleLangs('de', 'tr'), gSTB.SetSubtitles(true), gSTB.SetSubtitles(false),"
         " gSTB.GetAudioPID() + gSTB.GetSubtitlePID()",
         "0",
         "OnAudioTrack(3) OnSubTrack(4) OnAudioLangs(ru,en) OnSubLangs(de,tr) OnSubOnOff(true)"
         " OnSubOnOff(false)",
         "SetAudioPID ():  3\nSetSubtitlePID ():  4\nSetAudioLangs (): \"ru\" \"en\"\n"
         "SetSubtitleLangs (): \"de\" \"tr\"\nSetSubtitles (): true\nSetSubtitles (): false\n"
         "GetAudioPID (): 0\nGetSubtitlePID (): 0");
    const QString reported = "OnAudioPids (): \"[1]\"\nOnSubPids (): \"[2]\"\n"
                             "OnAudioPid (): 3\nOnSubPid (): 4\n";
    live("reported tracks",
         "box.tracks(), [gSTB.GetAudioPIDsEx(), gSTB.GetAudioPIDs(), gSTB.GetSubtitlePIDs(),"
         " gSTB.GetAudioPID(), gSTB.GetSubtitlePID()]",
         R"(["[1]","[1]","[2]",3,4])", "",
         qPrintable(reported + "GetAudioPIDs (): \"[1]\"\nGetAudioPIDs (): \"[1]\"\n"
                               "GetSubtitlePIDs (): \"[2]\"\nGetAudioPID (): 3\n"
                               "GetSubtitlePID (): 4"));
    live("viewport", "gSTB.SetViewport(1280, 720, 10, 20)", "null", "OnViewPort(10,20,1280,720)",
         "SetViewport (): 10 20 1280 720");
    live("viewport with clip", "gSTB.SetViewportEx(1, 2, 3, 4, 5, 6, 7, 8, true)", "null",
         "OnViewPort(3,4,1,2)", "SetViewportEx ()\nSetViewport (): 3 4 1 2");
    live("picture in graphics", "gSTB.SetPIG(0, 1, 2, 3), gSTB.SetPIG(1, 1, 2, 3)", "null",
         "OnViewPort(0,0,0,0)",
         "SetPIG ():  0 1 2 3\nSetPIG ():  1 1 2 3\nSetPIG : Set Full Screen");
    live("top window", "gSTB.SetTopWin(1), gSTB.SetTopWin(0), gSTB.SetTopWin(2), gSTB.GetTopWin()",
         "2", "OnShowHole() OnHideHole()",
         "SetTopWin ():  1\nSetTopWin ():  0\nSetTopWin ():  2\nGetTopWin ():  2");
    live("aspect", "gSTB.SetAspect(16)", "null", "sSetAspect(16)", "SetAspect ():  16");
    live("volume",
         "gains = [150, -5, 42].map(function (v) { gSTB.SetVolume(v); return box.gain(); }),"
         " gains.concat(gSTB.GetVolume())",
         "[100,-5,42,42]", "",
         "SetVolume ():  150\nSetVolume ():  -5\nSetVolume ():  42\nGetVolume ():  42");
    live("mute",
         "gSTB.SetMute(3), muted = gSTB.GetMute(), gSTB.SetMute(0), [muted, gSTB.GetMute()]",
         "[1,0]", "", "SetMute () 3\nGetMute () 1\nSetMute () 0\nGetMute () 0");
}

void stateAndSystem()
{
    live("keyboard",
         "shown = [gSTB.IsVirtualKeyboardActive()], gSTB.ShowVirtualKeyboard(),"
         " shown.push(gSTB.IsVirtualKeyboardActive(), gSTB.IsVirtualKeyboardActiveEx()),"
         " gSTB.HideVirtualKeyboard(),"
         " shown.concat(gSTB.IsVirtualKeyboardActive())",
         "[false,true,true,false]", "VKeyboardOpen() VKeyboardClose()",
         "IsVirtualKeyboardActive (): false\nShowVirtualKeyboard ()\nIsVirtualKeyboardActive (): "
         "true\n"
         "IsVirtualKeyboardActiveEx ():\nHideVirtualKeyboard ()\n"
         "IsVirtualKeyboardActive (): false");
    live("stand-by",
         "gSTB.StandBy(true), states = [gSTB.GetStandByStatus()],"
         " [2, 0, 1].forEach(function (mode) {"
         " gSTB.StandBy(mode); states.push(gSTB.GetStandByStatus()); }), states",
         "[false,true,false,true]", "",
         "StandBy (): true\nGetStandByStatus (): false\nStandBy (): 2\nGetStandByStatus (): true\n"
         "StandBy (): 0\nGetStandByStatus (): false\nStandBy (): 1\nGetStandByStatus (): true");
    live("for the key filter",
         "gSTB.SetTimeshiftState(7), gSTB.SetCurrPlace('tv'), gSTB.SetTVMenuState(0),"
         " gSTB.EnableVKButton(true), box.keyState()",
         "\"7 tv 1 1\"", "",
         "SetTimeshiftState (): 7\nSetCurrPlace (): \"tv\"\nSetTVMenuState (): true\n"
         "EnableVKButton (): true\nisInPortal (): true");
    live("hidden menu", "gSTB.SetTVMenuState(0), gSTB.SetTVMenuState(5), box.keyState()",
         "\"0  0 0\"", "",
         "SetTVMenuState (): true\nSetTVMenuState (): false\nisInPortal (): false");
    live("debug", "gSTB.Debug('x')", "null", "", "[Web] \"x\"");
    live("screen mode", "gSTB.ExecAction('graphicres 1080'), gSTB.ExecAction('graphicres1080')",
         "null", "OnScreenMode(1080) OnScreenMode(80)",
         "ExecAction (): \"graphicres 1080\"\nExecAction (): graphicres \"1080\"\n"
         "ExecAction (): \"graphicres1080\"\nExecAction (): graphicres \"080\"");
    live("reboot", "gSTB.ExecAction('RebootDHCP'), gSTB.ExecAction('reboot_now')", "null",
         "OnReboot()", "ExecAction (): \"RebootDHCP\"\nExecAction (): \"reboot_now\"");
    live("script", "gSTB.ExecAction('Reboot'), gSTB.IsFileExist('ROOT/ran')", "true", "",
         "ExecAction (): \"Reboot\"\nIsFileExist ():  \"ROOT/ran\"");
    live("local pages",
         "gSTB.LoadURL('file:///home/web/x.html'), gSTB.LoadURL('file:///home/webx')", "null",
         "OnReboot() OnReboot()", "LoadURL ()\nLoadURL ()");
    live("other pages",
         "gSTB.LoadURL('http://home/web'), gSTB.LoadURL('FILE:///home/web'),"
         " gSTB.LoadURL('file:///home/we')",
         "null", "", "LoadURL ()\nLoadURL ()\nLoadURL ()");
    live("storage", "gSTB.GetStorageInfo('f')",
         R"("{\"errCode\": 0,\"errMsg\": \"\",\"result\":[disk]}")", "sGetStorageInfo()",
         "GetStorageInfo (): \"f\"");
}

void identity()
{
    live("environment",
         "[gSTB.Version(), gSTB.GetDeviceVendor(), gSTB.GetDeviceModel(),"
         " gSTB.GetDeviceModelExt(), gSTB.GetDeviceVersionHardware(), gSTB.GetDeviceImageVersion(),"
         " gSTB.GetDeviceImageVersionCurrent(), gSTB.GetDeviceImageDesc()].join()",
         "\"of Q_VERSION,of Q_DEVICE_VENDOR,of Q_MODEL,of Q_MODEL,of Q_HARDWARE_VERSION,"
         "of Q_IMAGE_VERSION,of Q_IMAGE_VERSION,of Q_IMAGE_DESCRIPTION\"",
         "",
         "Version (): \"of Q_VERSION\"\nGetDeviceImageVersion ()\n"
         "GetDeviceImageVersionCurrent ()\nGetDeviceImageVersionCurrent ()\nGetDeviceImageDesc ()");
    live("serial number", "gSTB.GetDeviceSerialNumber()", "\"SN 1\"", "",
         "GetDeviceSerialNumber (): \"SN 1\"");
    live("keyed identifiers",
         "[gSTB.GetUID('device_id'), gSTB.GetUID(''), gSTB.GetUID('x', 't'),"
         " gSTB.GetUID('device_id', 't')]",
         R"(["","KV_SN 1","KV_SN 1",""])", "",
         "GetUID (param): \"device_id\" \"\"\nGetUID (param): \"\" \"KV_SN 1\"\n"
         "GetUID (param, param): \"KV_SN 1\"\nGetUID (param, param): \"\"");
    live("fixed texts",
         "[gSTB.GetDeviceActiveBank(), gSTB.GetDefaultUpdateUrl(), gSTB.GetExtProtocolList(),"
         " gSTB.GetNetworkGateways(), gSTB.GetNetworkNameServers(), gSTB.GetPppoeIp(),"
         " gSTB.GetNetworkWifiMac(), gSTB.GetWifiLinkStatusEx(), gSTB.GetSystemPaths()].join('|')",
         "\"||[]|192.168.1.1|8.8.8.8|||{}|\"", "",
         "GetDefaultUpdateUrl ()\nGetExtProtocolList ()\nGetWifiLinkStatusEx ()\n"
         "GetSystemPaths (): ");
    live("fixed states",
         "[gSTB.GetLanLinkStatus(), gSTB.GetWifiLinkStatus(), gSTB.GetPppoeLinkStatus()]",
         "[true,true,false]", "", "");
}

void storedThings()
{
    live("settings",
         "gSTB.SetEnv('{\"b\":\"2\",\"a\":\"1\",\"n\":3}'),"
         " gSTB.GetEnv('{\"varList\":[\"n\",\"b\",\"a\",5,\"language\"]}')",
         R"("{\"errCode\":0,\"errMsg\":\"\",\"result\":{\"a\":\"1\",\"b\":\"2\",)"
         R"(\"language\":\"en\",\"n\":\"\"}}")",
         "",
         R"(SetEnv (): "{\"b\":\"2\",\"a\":\"1\",\"n\":3}")"
         "\n"
         R"(GetEnv (): "{\"varList\":[\"n\",\"b\",\"a\",5,\"language\"]}")"
         "\n"
         R"(GetEnv (): "{\"errCode\":0,\"errMsg\":\"\",\"result\":{\"a\":\"1\",\"b\":\"2\",)"
         R"(\"language\":\"en\",\"n\":\"\"}}")");
    live("stored whatever it was", "gSTB.SetEnv('junk')", "true", "", "SetEnv (): \"junk\"");
    live("user data", "gSTB.SaveUserData('d', 'one two'), gSTB.LoadUserData('d')", "\"one\"", "",
         "SaveUserData (): \"d\" \"one two\"\nLoadUserData (): \"d\"");
    live("layouts", "gSTB.SaveUserData('keyboard.json', 'x'), gSTB.LoadUserData('keyboard.json')",
         R"("{\"layouts\":[\"en\", \"ru\", \"uk\", \"de\", \"tr\"],)"
         R"(\"order\":[\"en\", \"ru\", \"uk\", \"de\", \"tr\"] }")",
         "", "SaveUserData (): \"keyboard.json\" \"x\"\nLoadUserData (): \"keyboard.json\"");
    live("other spelling, missing, home",
         "gSTB.SaveUserData('Keyboard.json', 'x'), gSTB.SaveUserData('', 'x'),"
         " [gSTB.LoadUserData('Keyboard.json'), gSTB.LoadUserData('no/d'), gSTB.LoadUserData('')]",
         R"(["x","",""])", "",
         "SaveUserData (): \"Keyboard.json\" \"x\"\nSaveUserData (): \"\" \"x\"\n"
         "LoadUserData (): \"Keyboard.json\"\nLoadUserData (): \"no/d\"\nLoadUserData (): \"\"");
    live("parameters", "gSTB.WriteCFG('a=1\\nb 2'), gSTB.ReadCFG()", R"("a=1\nb 2")", "",
         "WriteCFG (): \"a=1\\nb 2\"\nReadCFG ()");
    live("no parameters", "gSTB.RDir('RemoveFile ROOT/etc/stb_params'), gSTB.ReadCFG()", "\"\"", "",
         "RDir try delete file  \"ROOT/etc/stb_params\"\n"
         "RDir \"RemoveFile ROOT/etc/stb_params\" \"Ok\"\nReadCFG ()\n"
         "Could not open file for Reading");
    live(
        "a file that is no file",
        "[gSTB.IsFileExist('ROOT/data'), gSTB.IsFileExist('ROOT'), gSTB.IsFolderExist('ROOT/data'),"
        " gSTB.IsFolderExist('ROOT'), gSTB.IsFileUTF8Encoded('no'), gSTB.SaveFile('ROOT/new', 'x'),"
        " gSTB.IsFileExist('ROOT/new')]",
        "[true,false,false,true,true,true,false]", "",
        "IsFileExist ():  \"ROOT/data\"\nIsFileExist ():  \"ROOT\"\nIsFolderExist ():  "
        "\"ROOT/data\"\nIsFolderExist ():  \"ROOT\"\nIsFileUTF8Encoded ():  \"no\"\nSaveFile ():\n"
        "IsFileExist ():  \"ROOT/new\"");
    live("listing",
         "none = gSTB.ListDir('ROOT/media/'), gSTB.SetListFilesExt('.ts .mp4'),"
         " [none, gSTB.ListDir('ROOT/media', false)]",
         R"(["var dirs = [\"sub/\"];var files = [];",)"
         R"("var dirs = [\"sub/\"];var files = [{\"name\":\"a.mp4\",\"size\":3}];"])",
         "", "SetListFilesExt (): \".ts .mp4\"");
    live("internal disk", "gSTB.ListDir('///media/HDD-SATA-1/x/')",
         R"("var dirs = [\"inside/\"];var files = [];")", "", "ListDir \"./USB-345-1/x/\"");
    live("queried storage", "gSTB.RDir('get_hdd_info')", "\"[disk]\"", "sGetStorageInfo()",
         "RDir \"get_hdd_info\" \"[disk]\"");
    live("stored by query", "gSTB.RDir('setenv city Rome'), gSTB.RDir('getenv city')", "\"Rome\"",
         "",
         "RDir setenv key: \"city\" value: \"Rome\"\nRDir \"setenv city Rome\" \"\"\n"
         "RDir getenv key: \"city\" value: \"Rome\"\nRDir \"getenv city\" \"Rome\"");
}

} // namespace

/** Every slot of gSTB that does something, called by a page. */
class TestLiveSlots : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<GstbPage> m_page;
    std::unique_ptr<Receiver> m_receiver;

private slots:
    void init()
    {
        for (const char *name : {"Q_VERSION", "Q_DEVICE_VENDOR", "Q_MODEL", "Q_HARDWARE_VERSION",
                                 "Q_IMAGE_DESCRIPTION", "Q_IMAGE_VERSION"})
            qputenv(name, QByteArray("of ") + name);
        m_page.reset();
        m_page = std::make_unique<GstbPage>([](const QString &root) {
            writeFile(root + "/proc/stb/info/sn", " SN 1\n");
            writeFile(root + "/etc/stb_params", "old");
            writeFile(root + "/data", "x");
            writeFile(root + "/media/a.mp4", "123");
            writeFile(root + "/media/sub/b.mp4", "1");
            writeFile(root + "/USB-345-1/x/inside/c.mp4", "1");
            QDir::setCurrent(root);
            writeFile(root + "/home/default/action.sh",
                      "#!/bin/sh\ntouch " + root.toUtf8() + "/ran; exit 3\n");
            QFile::setPermissions(root + "/home/default/action.sh", QFile::Permissions(0x7700));
        });
        m_page->requests.answerWith("[disk]", 7);
        m_receiver = std::make_unique<Receiver>(m_page->gSTB);
        m_page->publish("box", *m_receiver);
    }

    void cleanupTestCase() { m_page.reset(); }

    void liveSlots_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("requests");
        QTest::addColumn<QString>("records");
        playback();
        tracksAndPicture();
        stateAndSystem();
        identity();
        storedThings();
    }

    void liveSlots()
    {
        QFETCH(QString, script);
        LogCapture log;
        const QString answer = m_page->answer(script);
        QTEST(answer, "answer");
        QTEST(m_page->requests.take(), "requests");
        QTEST(log.take().join('\n').replace(m_page->path(""), "ROOT"), "records");
    }

    void playConfig_data()
    {
        QTest::addColumn<QString>("config");
        QTest::addColumn<QString>("url");
        row("position", R"({"uri":"/a.ts","position":30})", "/a.ts position:30");
        row("fraction", R"({"uri":"/a.ts","position":30.9})", "/a.ts position:30");
        row("huge", R"({"uri":"a","position":1e99})", "a position:2147483647");
        row("position as text", R"({"uri":"a","position":"30"})", "a position:0");
        row("prefix", R"({"uri":"ffmpeg a"})", "a position:0");
        row("uri is no text", R"({"uri":5})", " position:0");
        row("array", "[1]", " position:0");
        row("not JSON", "{", " position:0");
        row("empty", "", " position:0");
    }

    void playConfig()
    {
        QFETCH(QString, config);
        QFETCH(QString, url);
        m_page->gSTB.PlayConfig(config);
        QCOMPARE(m_page->requests.take(), "OnPlay(" + url + ") sFirstPlay()");
    }

    /** What the receiver reported is answered until stop or end, then all of it is gone. */
    void mediaIsForgotten_data()
    {
        QTest::addColumn<QString>("end");
        row("stop", "gSTB.Stop()");
        row("end of playback", "box.ended()");
    }

    void mediaIsForgotten()
    {
        QFETCH(QString, end);
        const QString all = "[gSTB.IsPlaying(), gSTB.GetAudioPIDs(), gSTB.GetSubtitlePIDs(),"
                            " gSTB.GetAudioPID(), gSTB.GetSubtitlePID(), gSTB.GetMediaLenEx(),"
                            " gSTB.GetPosTimeEx(), box.state()]";
        QCOMPARE(m_page->answer("box.started(), box.tracks(), box.progress(10, 5), " + all),
                 QString(R"([true,"[1]","[2]",3,4,10,5,2])"));
        QCOMPARE(m_page->answer(end + ", " + all), QString(R"([false,"","",0,0,0,0,0])"));
    }

    /** Each of the three from its own source. */
    void whoTheBoxIs()
    {
        const QString mac = DeviceIdentity::ofThisBox().macAddress;
        const QString ip = lastUsableAddress(QNetworkInterface::allAddresses()).value_or("");
        QCOMPARE(m_page->answer("[gSTB.RDir('SerialNumber'), gSTB.RDir('MACAddress'),"
                                " gSTB.GetDeviceMacAddress(), gSTB.RDir('IPAddress')].join()"),
                 QString("\"SN 1,%1,%1,%2\"").arg(mac, ip));
        QVERIFY(m_page->evaluate("/^[0-9A-F]{64}$/.test(gSTB.GetUID())").toBool());
        QVERIFY(m_page->evaluate("/^[0-9a-f]{40}$/.test(gSTB.GetHashVersion1('a', 'b'))").toBool());
    }

    /** A box that opens its sound has nothing to tell of it. */
    void soundDeviceOpens()
    {
        m_page.reset();
        LogCapture log;
        m_page = std::make_unique<GstbPage>();
        QCOMPARE(log.take().filter("HI_UNF_SND"), QStringList());
    }

    /** A device that was taken away costs records and answers of 0, nothing else. */
    void soundDeviceGone()
    {
        HI_UNF_SND_Close(HI_UNF_SND_0);
        HI_UNF_SND_DeInit();
        QCOMPARE(m_page->answer("gSTB.SetVolume(10), [gSTB.GetVolume(), gSTB.GetMute()]"),
                 QString("[0,0]"));
        LogCapture log;
        m_page.reset();
        QCOMPARE(log.take(),
                 QStringList({"call HI_UNF_SND_Close failed.", "call HI_UNF_SND_DeInit failed."}));
    }

    /** No slot that does something is left out above. */
    void noneIsForgotten()
    {
        if (allScripts.isEmpty())
            QSKIP("only with the rows");
        allScripts += "gSTB.GetHashVersion1( gSTB.GetDeviceMacAddress(";
        for (const QByteArray &line : contentOf(TEST_DATA_DIR "/catalogue.txt").split('\n')) {
            const QByteArrayList cells = line.split('|');
            if (cells.value(1) != "slot")
                continue;
            const QString call = "gSTB." + cells[3].left(cells[3].indexOf('(') + 1);
            QVERIFY2(allScripts.contains(call), qPrintable(call));
        }
    }
};

QTEST_MAIN(TestLiveSlots)
#include "test_live_slots.moc"
