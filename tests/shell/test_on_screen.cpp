// SPDX-License-Identifier: Apache-2.0
#include "platform/box_paths.h"
#include "tests/support/files.h"
#include "tests/support/http_server.h"
#include "tests/support/portal.h"
#include "tests/support/program.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QUrl>

namespace {

/** A page that tells the log which keys it gets. */
const QByteArray keysPage = "<!DOCTYPE html><html><body><input id='i'><script>"
                            "document.addEventListener('keydown', function (e) {"
                            "  gSTB.Debug('page ' + document.title + ' key ' + e.keyCode); });"
                            "gSTB.InitPlayer(); document.getElementById('i').focus();"
                            "</script>";

} // namespace

#define SAYS(text) QVERIFY2(m_run->says(text), m_run->log().constData())

/** Situations that only real keys on a real screen, without a window manager, bring about. */
class TestOnScreen : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TemporaryRoot> m_root;
    std::unique_ptr<ProgramOnScreen> m_run;

    QString page(const QString &name, const QByteArray &body) const
    {
        return m_root->write("pages/" + name, body);
    }

    /** A page that says its name in the log. */
    QString named(const QString &name) const
    {
        return page(name + ".html", "<title>" + name.toUtf8() + "</title>" + keysPage +
                                        "<script>gSTB.Debug('here is " + name.toUtf8() +
                                        "');</script>");
    }

    void start(const QByteArray &script, const QByteArray &body = QByteArray())
    {
        m_run->start(VESPREL_PROGRAM,
                     page("portal.html", "<title>portal</title>" + keysPage + body + "<script>" +
                                             script + "</script>"));
    }

    /** Answers the dialogs that the program may show until the log says this. */
    void answerUntil(const QByteArray &text)
    {
        for (int tries = 0; tries < 40; ++tries) {
            if (m_run->says(text, 500))
                return;
            m_run->press("Return");
        }
        QFAIL(m_run->log().constData());
    }

private slots:
    void initTestCase()
    {
        const QByteArray missing = BareScreen::missing();
        if (!missing.isEmpty())
            QSKIP(missing.constData());
    }

    void init()
    {
        m_root = std::make_unique<TemporaryRoot>();
        m_run = std::make_unique<ProgramOnScreen>();
    }

    void cleanup()
    {
        m_run.reset();
        m_root.reset();
    }

    void remoteStaysAlive_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QString>("key");
        QTest::newRow("tab") << QByteArray() << "Tab";
        QTest::newRow("tab, nothing focused")
            << QByteArray("document.activeElement.blur();") << "Tab";
        QTest::newRow("channel key")
            << QByteArray("document.activeElement.blur();"
                          "var stb = {player: {}, cur_place: 'tv'}, module = {tv: {dom_obj:"
                          "{isHidden: function () { return true; }}}};")
            << "Prior";
        for (const char *key :
             {"shift+Tab", "ctrl+Tab", "ctrl+shift+Tab", "ctrl+w", "ctrl+F4", "alt+minus"})
            QTest::newRow(key) << QByteArray() << key;
        QTest::newRow("page lets go")
            << QByteArray("setTimeout(function () { window.blur(); }, 1)") << "b";
        QTest::newRow("keyboard page") << QByteArray("gSTB.ShowVirtualKeyboard();"
                                                     "gSTB.HideVirtualKeyboard();")
                                       << "b";
    }

    /** Whatever the key does to the page, the next one still comes past the filter to the page. */
    void remoteStaysAlive()
    {
        QFETCH(QByteArray, script);
        QFETCH(QString, key);
        start(script);
        m_run->press(key);
        SAYS("Key Pressed: ");
        m_run->press("b");
        SAYS("convert key to alt+");
        SAYS("page portal key 66");
    }

    void runsOnHidden_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<bool>("favourites");
        QTest::newRow("asks before it is left")
            << QByteArray("window.onbeforeunload = function () { return 'stay'; };") << false;
        QTest::newRow("alert below favourites") << QByteArray("alert('x');") << true;
        QTest::newRow("close below favourites") << QByteArray("stbWebWindow.close();") << true;
    }

    /** Home hides the program, whatever a page does about it, and the next portal is shown. */
    void runsOnHidden()
    {
        QFETCH(QByteArray, script);
        QFETCH(bool, favourites);
        start("");
        const QByteArray sign = BoxPaths::root().toUtf8() + "/pages/sign";
        QByteArray body = "<script>" + script + "</script>";
        if (favourites)
            body = "<script>stbWindowMgr.openWebFavorites('file://" + named("fav").toUtf8() +
                   "', 0); var wait = setInterval(function () { var r = new XMLHttpRequest();"
                   "r.open('GET', 'file://" +
                   sign +
                   "', false); try { r.send(); } catch (e) { return; }"
                   "if (r.responseText !== 'go') return;"
                   "clearInterval(wait); " +
                   script + " gSTB.Debug('done below'); }, 20);</script>";
        m_run->announce(
            page("next.html", keysPage + body + "<script>gSTB.Debug('armed')</script>"));
        SAYS(favourites ? "here is fav" : "armed");
        SAYS("finishLoading true");
        m_run->press("Home");
        answerUntil("QuitApp, do Exit message");
        if (favourites) {
            page("sign", "go");
            answerUntil("done below");
        }
        m_run->announce(named("last"));
        SAYS("here is last");
        QVERIFY(m_run->isRunning());
    }

    void leavesARunningScript_data()
    {
        QTest::addColumn<bool>("favourites");
        QTest::newRow("portal") << false;
        QTest::newRow("favourites") << true;
    }

    /** A script in a request's callback waits for its dialog while the box goes to another page. */
    void leavesARunningScript()
    {
        QFETCH(bool, favourites);
        HttpServer server;
        server.page("/data", "data");
        server.page("/asks", "<title>asks</title>" + keysPage +
                                 "<script>var r = new XMLHttpRequest(); r.onload = function () {"
                                 "  gSTB.Debug('asking'); alert('x'); gSTB.Debug('asked'); };"
                                 "r.open('GET', '/data'); r.send();</script>");
        const QByteArray url = server.url("/asks").toEncoded();
        start(favourites ? "stbWindowMgr.openWebFavorites('" + url + "', 0);"
                         : "location = '" + url + "';");
        SAYS("asking");
        m_run->announce(named("next"));
        SAYS("asked");
        m_run->press("Return");
        SAYS("here is next");
        m_run->press("b");
        SAYS("page next key 66");
    }

    void asksWithoutEnd_data()
    {
        QTest::addColumn<bool>("quits");
        QTest::newRow("new portal") << false;
        QTest::newRow("home, then a new portal") << true;
    }

    /** A script that asks again whatever the answer is keeps neither Home nor a portal away. */
    void asksWithoutEnd()
    {
        QFETCH(bool, quits);
        start("");
        m_run->announce(page("asks.html", "<title>asks</title>" + keysPage +
                                              "<script>document.addEventListener('keydown', "
                                              "function () { while (true) alert('again'); });"
                                              "</script>"));
        SAYS("setUrl:");
        SAYS("finishLoading true");
        m_run->press("b");
        SAYS("Dialog: ");
        if (quits) {
            m_run->press("Home");
            SAYS("QuitApp, do Exit message");
        }
        m_run->announce(named("next"));
        SAYS("here is next");
        m_run->press("b");
        SAYS("page next key 66");
    }

    void keyAfterAList_data()
    {
        QTest::addColumn<QString>("closing");
        QTest::addColumn<QByteArray>("reached");
        QTest::newRow("chosen") << "Return" << QByteArray("webframe");
        QTest::newRow("left") << "Escape" << QByteArray("page fav key 27");
    }

    /** The key that closes a drop-down list is the list's, the one after it is not. */
    void keyAfterAList()
    {
        QFETCH(QString, closing);
        QFETCH(QByteArray, reached);
        const QString favourites =
            page("external/settings/f.html",
                 "<title>fav</title>" + keysPage +
                     "<select id='s'><option>1<option>2</select><script>"
                     "document.getElementById('s').focus(); gSTB.Debug('fav is here');</script>");
        start("stbWindowMgr.openWebFavorites('file://" + favourites.toUtf8() + "', 0);");
        SAYS("fav is here");
        SAYS("finishLoading true");
        m_run->press("Return");
        SAYS("webframe");
        m_run->press("Down");
        // How many of the keys the list takes while it rolls down is the toolkit's matter.
        for (int tries = 0; tries < 20 && !m_run->says("Key Pressed: ", 500); ++tries)
            m_run->press(closing);
        SAYS(reached);
    }

    /** Back on the keyboard's page closes the keyboard and leaves the favourites as they are. */
    void keyboardOverFavourites()
    {
        for (const QString &name : QDir(WEB_DIR "/keyboard").entryList(QDir::Files))
            m_root->write("usr/share/vesprel/web/system/keyboard/" + name,
                          contentOf(QString(WEB_DIR "/keyboard/") + name));
        const QString favourites =
            page("fav.html", "<title>fav</title>" + keysPage +
                                 "<script>document.addEventListener('keydown', function (e) {"
                                 "  if (e.keyCode === 49) gSTB.ShowVirtualKeyboard();"
                                 "  else gSTB.Debug('fav: ' + gSTB.IsVirtualKeyboardActive());"
                                 "}); gSTB.Debug('fav is here');</script>");
        start("stbWindowMgr.openWebFavorites('file://" + favourites.toUtf8() + "', 0);");
        SAYS("fav is here");
        SAYS("finishLoading true");
        m_run->press("1");
        SAYS("keyboard finishLoading true");
        m_run->press("Escape");
        SAYS("VirtualKeyboardClose () false");
        m_run->press("2");
        SAYS("fav: false");

        // A new portal finds no keyboard over it.
        m_run->press("1");
        SAYS("keyboard finishLoading true");
        m_run->announce(named("next"));
        SAYS("VirtualKeyboardClose () false");
        SAYS("here is next");
        m_run->press("b");
        SAYS("page next key 66");
    }

    /** OpenGL costs a third of the start and of the memory, so only a page that uses it has it. */
    void openGlWaitsForItsPage()
    {
        start("");
        QVERIFY(m_run->hasLoaded("libQt5WebKit"));
        QVERIFY(!m_run->hasLoaded("xcbglintegrations"));
        m_run->announce(page("webgl.html", keysPage +
                                               "<canvas id='c'></canvas><script>"
                                               "gSTB.Debug('context ' + !!document"
                                               ".getElementById('c')"
                                               ".getContext('experimental-webgl'));</script>"));
        SAYS("context ");
        QVERIFY(m_run->hasLoaded("xcbglintegrations"));
    }

    /** While the keyboard's page isn't there, Home is still the box's and takes the pane along. */
    void quitClosesTheKeyboard()
    {
        start("");
        m_run->announce(page("next.html", keysPage + "<script>gSTB.ShowVirtualKeyboard();"
                                                     "</script>"));
        SAYS("keyboard finishLoading false");
        m_run->press("Home");
        SAYS("VirtualKeyboardClose () false");
        SAYS("QuitApp, do Exit message");
    }
};

QTEST_GUILESS_MAIN(TestOnScreen)
#include "test_on_screen.moc"
