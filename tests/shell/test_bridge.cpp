// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/injected_script.h"
#include "tests/support/log_capture.h"
#include "tests/support/portal.h"

#include <QTest>

namespace {

const char tvPage[] =
    "<style>#tv { position: absolute; left: 0; top: 0; width: 640px; height: 360px;"
    "  background: url(data:image/gif;base64,R0lGODlhAQABAIAAAP8AAP///ywAAAAAAQABAAACAkQBADs=); }"
    ".tv_prev_window { position: absolute; left: 100px; top: 50px; width: 200px; height: 100px;"
    "  padding: 10px; background: blue; }</style>"
    "<div class='layer_bg' id='tv'></div><div class='tv_prev_window'></div>";

} // namespace

/** What a page finds: the published objects and the injected scripts. */
class TestBridge : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Portal> m_portal;

    QVariant evaluate(const QString &script) { return m_portal->evaluate(script); }

private slots:
    void initTestCase()
    {
        m_portal = std::make_unique<Portal>();
        m_portal->load(tracingPage);
    }

    void cleanupTestCase() { m_portal.reset(); }

    /** Before the first script of every new document. */
    void publishedInEveryDocument()
    {
        for (const char *name : {"first.html", "second.html"}) {
            m_portal->load("<script>var seen = [gSTB, stbPlayerManager, stbPlayer, pvrManager, "
                           "timeShift, stbStorage, stbWindowMgr, stbWebWindow].length +"
                           " typeof stbPlayer.play + typeof KeyboardPress;"
                           "var surface = typeof stbSurface;</script>",
                           name);
            QCOMPARE(evaluate("seen"), QVariant("8functionfunction"));
            QCOMPARE(evaluate("surface"), QVariant("undefined"));
        }
    }

    void answers_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QVariant>("answer");
        const auto row = [](const char *script, const QVariant &answer) {
            QTest::newRow(script) << QString(script) << answer;
        };
        row("stbPlayerManager.list.length === 1 && stbPlayerManager.list[0] === stbPlayer", true);
        row("stbPlayerManager.externalProtocols.length", 0.0);
        row("[stbPlayerManager.autoFrameRate.fr24, stbPlayerManager.autoFrameRate.fr50,"
            " stbPlayerManager.autoFrameRate.fr60].join()",
            "true,true,true");
        row("stbPlayerManager.RTSP.type", 0.0);
        row("var r = stbPlayerManager.RTSP; [r.keepAlive, r.endByAnnounce, r.endByGetParameter,"
            " r.endByTimeout, r.endByRTP, r.useUDP, r.useRTPOverRTSP, r.updateDuration,"
            " r.nonSmoothPause].join('')",
            QString("false").repeated(9));
        row("stbPlayer.state", 0.0);
        row("stbPlayer.setHttpHeaders({}) && stbPlayer.setOption(1, 2)", true);
        row("stbPlayer.getOption(1)", "");
        row("String(stbPlayer.rotate(90)) + stbPlayer.reset() + stbPlayer.teletextCommand(1)",
            "undefinedundefinedundefined");
        row("[stbDownloadManager.AddJob(), stbDownloadManager.AddMeasureJob(),"
            " stbDownloadManager.StartJob(), stbDownloadManager.StopJob()].join()",
            "false,false,false,false");
        row("stbDownloadManager.GetMeasureInfo() + stbDownloadManager.GetQueueInfo()", "[][]");
        row("String(stbDownloadManager.RestoreJobs())", "undefined");
        row("stbStorage.getItem('any')", "");
        row("typeof timeShift.SetTimeShiftFolder('/media/x')", "undefined");
        row("stbWindowMgr.IsWebWindowExist()", true);
        row("stbWebWindow.windowId()", 1.0);
        row("stbWindowMgr.openWebWindow('http://a'); document.title", "");
        row("pvrManager.GetEventParams()", "");
        row("stbWindowMgr.GetFocusedInputInfo()",
            "{\"result\":{\"x\":0, \"y\":0, \"w\":0, \"h\":0, \"positionHint\": \"none\"} }");
    }

    void answers()
    {
        QFETCH(QString, script);
        QTEST(evaluate(script), "answer");
    }

    void records()
    {
        LogCapture log;
        evaluate("stbPlayer.play({uri: 'u'}); stbDownloadManager.DeleteJob(1);"
                 "stbPlayer.setOption(1, 2); stbWebWindow.messageSend(1, 'k');"
                 "pvrManager.RemoveTask(1, 0)");
        const QStringList records = log.take();
        for (const char *record :
             {"[Web] \"player0 debug\"", "PlayConfig (): \"{\\\"uri\\\":\\\"u\\\"}\"",
              "[Web] \"stbDownloadManager.DeleteJob\"", "[Web] \"stbPlayer.setOption\"",
              "messageSend (): 1 \"k\" \"\"", "RemoveTask", "PvrRemoveTask timeout"})
            QVERIFY2(records.contains(record), qPrintable(record + ("\n" + records.join('\n'))));
    }

    /** No page can destroy what other pages need; the state is that of the play request above. */
    void survivesDeleteLater()
    {
        evaluate("[gSTB, stbPlayerManager, stbPlayer, pvrManager, timeShift, stbStorage,"
                 " stbWindowMgr, stbWebWindow, stbPlayerManager.RTSP,"
                 " stbPlayerManager.autoFrameRate].forEach(function (o) { o.deleteLater(); })");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        QCOMPARE(evaluate("[gSTB.GetTeletextPID(), stbPlayer.state, pvrManager.GetEventParams(),"
                          " stbStorage.getItem(''), stbWindowMgr.IsWebWindowExist(),"
                          " stbPlayerManager.RTSP.type, stbPlayerManager.autoFrameRate.fr24,"
                          " stbWebWindow.windowId(), typeof timeShift.SetMaxDuration(1)].join()"),
                 QVariant("8192,1,,,true,0,true,1,undefined"));
    }

    void scriptResources()
    {
        for (const char *name : {"hole.js", "show_hole.js", "hide_hole.js", "kb.js", "shim.js"})
            QVERIFY2(!injectedScript(name).value_or(QString()).isEmpty(), name);
        QVERIFY(!injectedScript("no_such.js"));
    }

    void keyboardScript_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<int>("caret");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("result"); // the value with "|" at the caret
        const auto row = [](const char *name, const QString &value, int caret, const char *keys,
                            const QString &result) {
            QTest::newRow(name) << value << caret << QString(keys) << result;
        };
        row("insert in the middle", "ac", 1, "['b']", "ab|c");
        row("space", "ab", 1, "['Space']", "a |b");
        row("several letters", "", 0, "['www.', 'x']", "www.x|");
        row("backspace", "abc", 2, "['BackSpace']", "a|c");
        row("backspace at the start", "abc", 0, "['BackSpace']", "|abc");
        row("backspace takes a whole pair", QString::fromUtf8("a\xf0\x9f\x98\x80"), 3,
            "['BackSpace']", "a|");
        row("start and end", "abc", 1, "['Up', 'x', 'Down', 'y']", "xabcy|");
        row("left and right", "abc", 1, "['Right', 'Right', 'Right', 'Left', 'x']", "abx|c");
        row("left at the start", "abc", 0, "['Left', 'x']", "x|abc");
    }

    void keyboardScript()
    {
        QFETCH(QString, value);
        QFETCH(int, caret);
        QFETCH(QString, keys);
        m_portal->load("<input id='i'><script>var inputs = 0, i = document.getElementById('i');"
                       "i.addEventListener('input', function (e) {"
                       "  inputs += e.bubbles ? 100 : e.cancelable ? 1 : 1000; });</script>");
        evaluate("i.value = '" + value + "'; i.focus();" +
                 QString("i.setSelectionRange(%1, %1);").arg(caret) +
                 "var before = i.value, changes = 0;" + keys +
                 ".forEach(function (k) { KeyboardPress(k, 'id');"
                 "  if (i.value !== before) { changes++; before = i.value; } });");
        QTEST(evaluate("i.value.slice(0, i.selectionStart) + '|' + "
                       "i.value.slice(i.selectionStart)")
                  .toString(),
              "result");
        QCOMPARE(evaluate("inputs"), evaluate("changes"));
    }

    void keyboardScriptInFields_data()
    {
        QTest::addColumn<QByteArray>("field");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("result"); // the value and the events
        const auto row = [](const char *name, const char *field, const char *keys,
                            const char *result) {
            QTest::newRow(name) << QByteArray(field) << QString(keys) << QString(result);
        };
        row("text area", "<textarea id='i'>a</textarea>", "['Down', 'b']", "ab 1");
        row("number", "<input id='i' type='number' value='1'>", "['Down', '2']", "12 1");
        row("a negative number", "<input id='i' type='number'>", "['-', '1', '.', '5']", "-1.5 4");
        const char three[] = "<input id='i' type='number' value='3'>";
        row("a number, erased", three, "['Down', '.', 'BackSpace', '4']", "34 3");
        row("a second sign", three, "['-', '-', 'BackSpace']", "3 2");
        row("a decimal, erased", three, "['Down', '.', '5', 'BackSpace', 'BackSpace']", "3 4");
        row("a caret moved in a number", three, "['Down', 'e', 'Up', '1']", "13 2");
        row("a number that the page has changed", three,
            "['Down', '.', function () { i.value = 7; }, 'Down', '1']", "71 2");
        row("no number", three, "['Down', 'a', '1']", "31 1");
        row("read-only", "<input id='i' value='a' readonly>", "['b', 'BackSpace']", "a 0");
        row("disabled", "<input id='i' value='a'>",
            "['Down', 'b', function () { i.disabled = true; }, 'c', 'BackSpace']", "ab 1");
        row("full", "<input id='i' value='ab' maxlength='2'>", "['c', 'Space']", "ab 0");
        row("half full", "<input id='i' value='a' maxlength='3'>", "['Down', 'www.']", "aww 1");
        row("full, erased", "<input id='i' value='ab' maxlength='2'>", "['Down', 'BackSpace', 'c']",
            "ac 2");
        row("half a pair", "<input id='i' maxlength='1'>", "['\\ud83d\\ude00']", " 0");
        row("button", "<input id='i' type='button' value='go'>", "['a', 'BackSpace']", "go 0");
        row("button element", "<button id='i' value='go'>x</button>", "['a']", "go 0");
        row("check box", "<input id='i' type='checkbox' value='on'>", "['a']", "on 0");
        row("list", "<select id='i'><option>go</select>", "['a']", "go 0");
    }

    /** Only fields of text take keys, and only as much as they hold. */
    void keyboardScriptInFields()
    {
        QFETCH(QByteArray, field);
        QFETCH(QString, keys);
        m_portal->load(field + "<script>var inputs = 0, i = document.getElementById('i');"
                               "i.addEventListener('input', function () { inputs++; });"
                               "i.focus();</script>");
        evaluate(keys + ".forEach(function (k) {"
                        "  typeof k === 'function' ? k() : KeyboardPress(k, 'id'); });");
        QTEST(evaluate("i.value + ' ' + inputs").toString(), "result");
    }

    /** A frame has no script of the keyboard's own, so the page's reaches into it. */
    void keyboardScriptInFrames()
    {
        m_portal->load("<body style='margin: 0'><iframe style='position: absolute; left: 100px;"
                       "top: 50px; border: 7px solid'></iframe><script>"
                       "var outer = document.querySelector('iframe');"
                       "outer.contentDocument.body.innerHTML = '<iframe></iframe><p>x</p>';"
                       "var inner = outer.contentDocument.querySelector('iframe');"
                       "inner.contentDocument.body.innerHTML = '<input value=a>';"
                       "var field = inner.contentDocument.querySelector('input');"
                       "</script>");
        const QString keys = "['Down', 'b', 'BackSpace', 'c', 'Left', 'Space']";
        QCOMPARE(evaluate("field.focus();" + keys +
                          ".forEach(function (k) { KeyboardPress(k, ''); }); field.value"),
                 QVariant("a c"));
        QCOMPARE(evaluate("var at = GetFocusInputPos(), i = inner.getBoundingClientRect(),"
                          "    f = field.getBoundingClientRect();"
                          "[at.x - 107 - i.left - inner.clientLeft - f.left,"
                          " at.y - 57 - i.top - inner.clientTop - f.top,"
                          " at.w - f.width, at.h - f.height].join()"),
                 QVariant("0,0,0,0"));
        // Without a field it is the frame that has the focus.
        QCOMPARE(evaluate("field.blur(); outer.focus(); KeyboardPress('d', '');"
                          "GetFocusInputPos().x + ' ' + field.value"),
                 QVariant("100 a c"));
    }

    /** The scripts leave nothing in the page but what portals know. */
    void injectedNames()
    {
        m_portal->load("<p>plain</p>");
        evaluate("gSTB.SetTopWin(1); gSTB.SetTopWin(0);");
        QCOMPARE(evaluate("var f = document.createElement('iframe'); document.body.appendChild(f);"
                          "Object.getOwnPropertyNames(window).filter(function (n) {"
                          "  return !(n in f.contentWindow) && n !== 'f' && n !== '0'; })"
                          ".sort().join()"),
                 QVariant("GetFocusInputPos,KeyboardPress,gSTB,getCursortPosition,hide_hole,hole,"
                          "keyboardDel,keyboardWrite,pvrManager,setCaretPosition,show_hole,"
                          "stbDownloadManager,stbPlayer,stbPlayerManager,stbStorage,stbWebWindow,"
                          "stbWindowMgr,timeShift"));
    }

    void keyboardScriptWithoutField()
    {
        m_portal->load("<p>no field</p>");
        QCOMPARE(evaluate("try { ['a', 'BackSpace', 'Left', 'Up'].forEach(function (k) {"
                          " KeyboardPress(k, ''); }); 'quiet' } catch (e) { String(e) }"),
                 QVariant("quiet"));
    }

    void focusedField()
    {
        m_portal->load("<input id='i' style='position: absolute; left: 100px; top: 200px; "
                       "width: 300px; height: 40px; margin: 0; padding: 0; border: 0'>");
        evaluate("document.getElementById('i').focus()");
        QCOMPARE(evaluate("stbWindowMgr.GetFocusedInputInfo()"),
                 QVariant("{\"result\":{\"x\":100, \"y\":200, \"w\":300, \"h\":40, "
                          "\"positionHint\": \"none\"} }"));
    }

    void hole()
    {
        m_portal->load("<p>later</p>");
        // The page is asked again until its TV layer is there.
        evaluate(
            QString("document.body.innerHTML = \"%1\"").arg(QString(tvPage).replace('"', '\'')));
        evaluate("hole()");
        QTRY_COMPARE(evaluate("var p = document.getElementById('hole_bg').getContext('2d');"
                              "p.getImageData(5, 5, 1, 1).data[0]"),
                     QVariant(255.0));
        // Inside the padding the video shows, at the padding and beside it the picture stays.
        QCOMPARE(evaluate("[[115, 65], [305, 155], [312, 162], [95, 45]].map(function (at) {"
                          " return p.getImageData(at[0], at[1], 1, 1).data[3]; }).join()"),
                 QVariant("0,0,255,255"));
        QCOMPARE(evaluate("document.getElementById('ori_bg').getContext('2d')"
                          ".getImageData(115, 65, 1, 1).data[3]"),
                 QVariant(255.0));
        const char style[] = "['hole_bg', 'ori_bg'].map(function (id) {"
                             " return document.getElementById(id).style.display; }).join()";
        evaluate("gSTB.SetTopWin(1)");
        QCOMPARE(evaluate(style), QVariant("block,none"));
        evaluate("gSTB.SetTopWin(0)");
        QCOMPARE(evaluate(style), QVariant("none,block"));
        QCOMPARE(evaluate("getComputedStyle(document.querySelector('#tv')).backgroundImage"),
                 QVariant("none"));
    }

    /**
     * What was asked for before the TV layer was there holds once it is found, by the script's own
     * second look after 5 s. The canvases lie behind all that the portal shows.
     */
    void holeAskedForEarly()
    {
        m_portal->load("<p>later</p>");
        evaluate("gSTB.SetTopWin(0); gSTB.SetTopWin(1)");
        evaluate(
            QString("document.body.innerHTML = \"%1\"").arg(QString(tvPage).replace('"', '\'')));
        QTRY_COMPARE_WITH_TIMEOUT(
            evaluate("['hole_bg', 'ori_bg'].map(function (id) {"
                     "  var style = document.getElementById(id).style;"
                     "  return style.display + ' ' + style.zIndex; }).join()"),
            QVariant("block -2,none -1"), 20000);
    }

    /** Switching the hole in a page that has none does nothing. */
    void noHole()
    {
        m_portal->load("<p>no tv</p>");
        QCOMPARE(evaluate("gSTB.SetTopWin(1); gSTB.SetTopWin(0); 'quiet'"), QVariant("quiet"));
    }
};

QTEST_MAIN(TestBridge)
#include "test_bridge.moc"
