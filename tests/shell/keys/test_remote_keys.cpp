// SPDX-License-Identifier: Apache-2.0
#include "tests/support/log_capture.h"
#include "tests/support/portal.h"

#include <QApplication>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QWebElement>
#include <QWebFrame>
#include <QWebView>

namespace {

const QByteArray reboot = "3ade68b10000076d00000000";

QByteArray runApp(const char *name)
{
    const QByteArray text(name);
    return "3ade68b100000776" + QByteArray::number(text.size(), 16).rightJustified(8, '0') +
           text.toHex();
}

// With a field that has the focus: the engine repeats Tab in a page without any focus.
const QByteArray focusedPage = QByteArray(tracingPage) +
                               "<body><input id='i'><script>document.getElementById('i').focus();"
                               "var module = {tv: {dom_obj: {hidden: true, isHidden: function () {"
                               "  return this.hidden; }}}};</script>";

const char launcherPage[] = "vesprel_launcher_apps/magcore-core-ministra/index.html";

} // namespace

/** Spontaneous keys into a real page: what the page gets, what the receiver is asked, in order. */
class TestRemoteKeys : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Portal> m_portal;
    std::unique_ptr<QSignalSpy> m_quit;

    void build(const QByteArray &body, const QString &name = "portal.html")
    {
        m_portal = std::make_unique<Portal>();
        m_quit = std::make_unique<QSignalSpy>(&m_portal->window, &Window::pwr);
        m_portal->load(body, name);
        QTRY_VERIFY(m_portal->receiver.isConnected());
        QTRY_VERIFY(!m_portal->receiver.received().isEmpty());
        m_portal->receiver.clear();
    }

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString &text = {})
    {
        QTest::sendKeyEvent(QTest::Click, m_portal->view(), Qt::Key(key), text, modifiers);
    }

    /** What the page got of a key, after a marker that only the end of the posted keys brings. */
    QString traceAfter(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                       const QString &text = {})
    {
        m_portal->clearTrace();
        press(key, modifiers, text);
        QCoreApplication::sendPostedEvents();
        return m_portal->trace();
    }

private slots:
    void init() { qunsetenv("Q_MAIN_APP_MODE"); }

    void cleanup()
    {
        m_quit.reset();
        m_portal.reset();
    }

    void plainRows_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("trace");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("quits");
        QTest::addColumn<QString>("record");
        const auto row = [](const char *name, int key, const char *trace, const char *record,
                            const QByteArray &bytes = {}, int quits = 0, const char *text = "") {
            QTest::newRow(name) << key << QString(text) << QString(trace) << bytes << quits
                                << QString(record);
        };
        // Releases are not filtered: the remote's own release comes before what was posted.
        const char control[] = "In ministra portal, convert ctrl+";
        row("F1", Qt::Key_F1, "keyup(112) keydown(ctrl+112) keyup(ctrl+112)", control);
        row("F4", Qt::Key_F4, "keyup(115) keydown(ctrl+115) keyup(ctrl+115)", control);
        row("F5", Qt::Key_F5, "keyup(116) keydown(8) keyup(8)", "convert F5 to Backspace");
        row("F6", Qt::Key_F6, "keydown(117) keyup(117)", "");
        row("F10", Qt::Key_F10, "keydown(121) keyup(121)", "");
        row("F11", Qt::Key_F11, "keydown(122) keyup(122)", "Key_F11 false");
        row("F12", Qt::Key_F12, "keyup(123)", "Enigma2 RunApp:  \"apps\"", runApp("apps"));
        row("settings", 0x100011c, "keyup(0)", "Enigma2 RunApp:  \"setup\"", runApp("setup"));
        row("power off", Qt::Key_PowerOff, "keyup(0)", "APP request standby",
            "3ade68b10000077700000000");
        row("home", Qt::Key_Home, "keydown(36) keyup(36)", "", "", 1);
        row("U", Qt::Key_U, "keydown(85) keyup(85)", "", "", 1, "u");
        row("channel down", 0x1000119, "keyup(0) keydown(shift+9) keyup(shift+9)",
            "convert key to alt+");
        const char alt[] = "convert key to alt+";
        row("B", Qt::Key_B, "keyup(66) keydown(alt+66) keyup(alt+66)", alt, "", 0, "b");
        row("F", Qt::Key_F, "keyup(70) keydown(alt+70) keyup(alt+70)", alt, "", 0, "f");
        row("G", Qt::Key_G, "keyup(71) keydown(alt+71) keyup(alt+71)", alt, "", 0, "g");
        row("L", Qt::Key_L, "keyup(76) keydown(alt+76) keyup(alt+76)", alt, "", 0, "l");
        row("R", Qt::Key_R, "keyup(82) keydown(alt+82) keyup(alt+82)", alt, "", 0, "r");
        row("S", Qt::Key_S, "keyup(83) keydown(alt+83) keyup(alt+83)", alt, "", 0, "s");
        row("W", Qt::Key_W, "keyup(87) keydown(alt+87) keyup(alt+87)", alt, "", 0, "w");
        row("Y", Qt::Key_Y, "keyup(89) keydown(alt+89) keyup(alt+89)", alt, "", 0, "y");
        row("backquote", Qt::Key_QuoteLeft, "keyup(192) keydown(alt+192) keyup(alt+192)", alt, "",
            0, "`");
        row("A", Qt::Key_A, "keydown(65) keyup(65)", "", "", 0, "a");
        row("enter", Qt::Key_Return, "keydown(13) keyup(13)", "Key_Enter false", "", 0, "\r");
    }

    void plainRows()
    {
        QFETCH(int, key);
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, record);
        build(focusedPage);
        LogCapture log;
        QTEST(traceAfter(key, Qt::NoModifier, text), "trace");
        const QStringList records = log.take();
        QCOMPARE(records.filter("Key Pressed: " + QString::number(key, 16)).isEmpty(), false);
        if (!record.isEmpty())
            QVERIFY2(records.contains(record), qPrintable(records.join('\n')));
        QTRY_COMPARE(m_portal->receiver.received(), bytes);
        QTEST(m_quit->count(), "quits");
    }

    /** F5 keeps its modifiers; the marks of other keys replace theirs. */
    void modifiers()
    {
        build(focusedPage);
        QCOMPARE(traceAfter(Qt::Key_F5, Qt::AltModifier),
                 QString("keydown(alt+18) keyup(alt+116) keyup(18) keydown(alt+8) keyup(alt+8)"));
        QCOMPARE(traceAfter(Qt::Key_F2, Qt::ShiftModifier),
                 QString("keydown(shift+16) keyup(shift+113) keyup(16) "
                         "keydown(ctrl+113) keyup(ctrl+113)"));
    }

    /** Keys that a busy box takes in one go reach the page in their order, rewritten or not. */
    void order()
    {
        build(focusedPage);
        m_portal->clearTrace();
        press(Qt::Key_F1);
        press(Qt::Key_A);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(m_portal->trace(), QString("keyup(112) keydown(ctrl+112) keyup(ctrl+112) "
                                            "keydown(65) keyup(65)"));
    }

    void channelKeys_data()
    {
        QTest::addColumn<QString>("state");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("trace");
        QTest::addColumn<QString>("record");
        const QString tv = "stb.cur_place = 'tv';";
        QTest::newRow("up") << tv << int(Qt::Key_PageUp) << "keyup(33) keydown(9) keyup(9)"
                            << "convert key to ch+";
        QTest::newRow("down") << tv << int(Qt::Key_PageDown)
                              << "keyup(34) keydown(shift+9) keyup(shift+9)"
                              << "convert key to ch-";
        QTest::newRow("time shift") << tv + "stb.player.active_time_shift = true;"
                                    << int(Qt::Key_PageUp) << "keydown(33) keyup(33)"
                                    << "";
        QTest::newRow("menu open") << tv + "module.tv.dom_obj.hidden = false;"
                                   << int(Qt::Key_PageUp) << "keydown(33) keyup(33)"
                                   << "";
        QTest::newRow("elsewhere")
            << "stb.cur_place = 'vclub';" << int(Qt::Key_PageDown) << "keydown(34) keyup(34)"
            << "";
        QTest::newRow("no portal objects")
            << "stb = undefined;" << int(Qt::Key_PageUp) << "keydown(33) keyup(33)"
            << "";
    }

    void channelKeys()
    {
        QFETCH(QString, state);
        QFETCH(int, key);
        build(focusedPage);
        m_portal->evaluate(state);
        LogCapture log;
        QTEST(traceAfter(key), "trace");
        const QStringList records = log.take();
        QCOMPARE(records.filter("timeshift mode ").size(), 1);
        QTEST(records.filter("convert key").join(' '), "record");
    }

    void backKeys_data()
    {
        QTest::addColumn<QString>("page");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QByteArray>("appMode");
        QTest::addColumn<QString>("result"); // page, quit, reboot or backspace
        QTest::addColumn<QString>("record");
        const auto row = [](const char *name, const char *page, const QByteArray &body,
                            const char *result, const char *record = "", const char *appMode = "") {
            QTest::newRow(name) << QString(page) << body << QByteArray(appMode) << QString(result)
                                << QString(record);
        };
        const char app[] = "In APP, will act back to prev website";
        row("application", "vesprel_apps/a.html", "", "reboot", app);

        const QByteArray menu = "<div class='main_menu' style='display: block;'></div>";
        const QByteArray subPage = "<div style='display: block;'></div>";
        row("portal", "a.html", "", "page");
        row("main menu", "a.html", menu, "quit", "exit browser by main menu");
        row("main menu, app mode", "a.html", menu, "page", "", "true");
        row("main menu, other app mode", "a.html", menu, "quit", "", "TRUE");
        row("main menu and page after", "a.html", menu + "<p></p>" + subPage, "page");
        row("main menu and page before", "a.html", subPage + "<p></p>" + menu, "page");
        row("main menu hidden", "a.html", "<div class='main_menu' style='display: none;'></div>",
            "page");
        row("main menu of more classes", "a.html",
            "<div class='main_menu x' style='display: block;'></div>", "page");
        const char special[] = "exit browser by special menu";
        row("cut off", "a.html", "<div class='cut_off' style='display: block;'></div>", "quit",
            special);
        row("cut off without style", "a.html", "<div class='cut_off'></div>", "page");
        row("loader without style", "a.html", "<div class='loader'></div>", "quit", special);
        row("loader shown", "a.html", "<div class='loader' style='display: block;'></div>", "quit",
            special);
        row("loader hidden", "a.html", "<div class='loader' style='display: none;'></div>", "page");

        const QByteArray hidden = "<iframe style='visibility: hidden;' src='magcore-app-launcher'>"
                                  "</iframe>";
        const QByteArray shown = "<iframe src='about:blank?magcore-app-launcher'></iframe>";
        const QByteArray other = "<iframe src='about:blank'></iframe>";
        const char byLauncher[] = "exit browser by launcher";
        const char toBackspace[] = "In portal, convert esc to backspace";
        row("launcher frame", launcherPage, shown, "quit", byLauncher);
        row("launcher frame later", launcherPage, hidden + other + hidden + shown, "quit",
            byLauncher);
        row("launcher frame hidden", launcherPage, other + hidden, "backspace", toBackspace);
        row("launcher without frames", launcherPage, "", "backspace", toBackspace);
    }

    void backKeys()
    {
        QFETCH(QString, page);
        QFETCH(QByteArray, body);
        QFETCH(QByteArray, appMode);
        QFETCH(QString, result);
        QFETCH(QString, record);
        qputenv("Q_MAIN_APP_MODE", appMode);
        build(focusedPage + "<script>gSTB.InitPlayer();</script>" + body, page);
        LogCapture log;
        for (const auto &[key, code] : {std::pair(Qt::Key_Escape, 27), {Qt::Key_Backspace, 8}}) {
            m_quit->clear();
            m_portal->receiver.clear();
            QString expected = QString("keyup(%1)").arg(code);
            // Backspace needs no translation, so the launcher gets it as it came.
            if (result == "page" || (result == "backspace" && key == Qt::Key_Backspace))
                expected.prepend(QString("keydown(%1) ").arg(code));
            else if (result == "backspace")
                expected.append(" keydown(8) keyup(8)");
            QCOMPARE(traceAfter(key), expected);
            QCOMPARE(m_quit->count(), result == "quit" ? 1 : 0);
            QTRY_COMPARE(m_portal->receiver.received(), result == "reboot" ? reboot : "");
        }
        if (!record.isEmpty())
            QVERIFY(log.take().contains(record));
    }

    /** On a page other than the portal's, before and after the portal reported itself. */
    void backOnForeignPage()
    {
        build(focusedPage);
        press(Qt::Key_Escape);
        QCOMPARE(m_quit->count(), 1);
        m_portal->evaluate("gSTB.InitPlayer()");
        m_portal->load(focusedPage, "other.html");
        LogCapture log;
        QCOMPARE(traceAfter(Qt::Key_Backspace), QString("keyup(8)"));
        QTRY_COMPARE(m_portal->receiver.received(), reboot);
        QCOMPARE(m_quit->count(), 1);
        QCOMPARE(log.take().filter("it seems not current portal: QUrl(").size(), 1);
    }

    void poweredOff()
    {
        build(focusedPage);
        LogCapture log;
        m_portal->window.OnPowerOff();
        QCoreApplication::sendPostedEvents();
        QCOMPARE(log.take().filter("OnPower"), QStringList("OnPowerOff (): "));
        QCOMPARE(traceAfter(Qt::Key_A), QString("keyup(65)"));
        QVERIFY(log.take().contains("In power off state, ignore any keys"));
        press(Qt::Key_PowerOff);
        QTRY_COMPARE(m_portal->receiver.received(), QByteArray("3ade68b10000077700000000"));
        m_portal->window.OnPowerOn();
        QCOMPARE(log.take().filter("OnPower"), QStringList("OnPowerOn (): "));
        QCOMPARE(traceAfter(Qt::Key_A), QString("keydown(65) keyup(65)"));
    }

    /** The keyboard takes all keys, but on a box that is off nobody sees it. */
    void powerKeyWakesBelowTheKeyboard()
    {
        build(focusedPage);
        m_portal->root.write("usr/share/vesprel/web/system/keyboard/index.html", "keys");
        LogCapture log;
        QStringList lines;
        m_portal->window.VirtualKeyboardOpen();
        QTRY_VERIFY((lines += log.take()).contains("keyboard finishLoading true"));
        press(Qt::Key_PowerOff);
        m_portal->window.OnPowerOff();
        press(Qt::Key_A);
        press(Qt::Key_PowerOff);
        lines = log.take();
        QCOMPARE(lines.filter("In Keyboard, will act like Key").size(), 2);
        QCOMPARE(lines.filter("APP request standby").size(), 1);
        QTRY_COMPARE(m_portal->receiver.received(), QByteArray("3ade68b10000077700000000"));
    }

    /** A list that is open would take keys of a box that is off. */
    void powerOffClosesTheList()
    {
        build("<select id='f'><option>1<option>2</select>");
        QTest::mouseClick(
            m_portal->view(), Qt::LeftButton, Qt::NoModifier,
            m_portal->view()->page()->mainFrame()->findFirstElement("#f").geometry().center());
        QTRY_VERIFY(QApplication::activePopupWidget());
        m_portal->window.OnPowerOff();
        QVERIFY(!QApplication::activePopupWidget());
    }

    /** In the launcher F11 is the portal's; elsewhere it closes the favourites view. */
    void favouritesKey()
    {
        build(focusedPage, launcherPage);
        LogCapture log;
        QCOMPARE(traceAfter(Qt::Key_F11), QString("keyup(122) keydown(ctrl+122) keyup(ctrl+122)"));
        QVERIFY(log.take().contains("In portal, convert ctrl+F11"));
        m_portal->window.WinOpenWebFavorites("about:blank", 0);
        QCOMPARE(m_portal->stack()->count(), 2);
        press(Qt::Key_F11);
        QCOMPARE(m_portal->stack()->count(), 1);
        QCOMPARE(m_portal->trace(), QString("keyup(122) keydown(ctrl+122) keyup(ctrl+122)"));
    }

    void okInFavourites_data()
    {
        QTest::addColumn<QByteArray>("element");
        QTest::addColumn<QString>("trace");
        QTest::addColumn<bool>("combobox");
        // The key's text and modifiers go with the space.
        QTest::newRow("checkbox") << QByteArray("<input id='f' type='checkbox'>")
                                  << "keydown(ctrl+17) keyup(ctrl+13) keyup(17) "
                                     "keydown(ctrl+32) keyup(ctrl+32)"
                                  << false;
        QTest::newRow("drop-down")
            << QByteArray("<select id='f'><option>1<option>2</select>") << "keyup(13)" << true;
        QTest::newRow("button") << QByteArray("<button id='f'>b</button>")
                                << "keydown(13) keyup(13)" << false;
        QTest::newRow("nothing") << QByteArray("<p id='f'>") << "keydown(13) keyup(13)" << false;
    }

    /** Only a favourites page of the settings kind gets more of OK than the key. */
    void okElsewhere()
    {
        const QByteArray checkbox =
            QByteArray(tracingPage) +
            "<body><input id='f' type='checkbox'><script>document.getElementById('f').focus();"
            "</script>";
        build(checkbox, "external/settings/portal.html");
        QCOMPARE(traceAfter(Qt::Key_Return), QString("keydown(13) keyup(13)"));
        const QString favourites = m_portal->root.write("plain.html", checkbox);
        m_portal->window.WinOpenWebFavorites("file://" + favourites, 0);
        QTRY_COMPARE(m_portal->evaluate("typeof trace"), QVariant("object"));
        QTRY_COMPARE(m_portal->evaluate("document.readyState"), QVariant("complete"));
        QCOMPARE(traceAfter(Qt::Key_Return), QString("keydown(13) keyup(13)"));
    }

    void okInFavourites()
    {
        QFETCH(QByteArray, element);
        QFETCH(bool, combobox);
        build(focusedPage);
        const QString page =
            m_portal->root.write("external/settings/f.html",
                                 QByteArray(tracingPage) + "<body>" + element +
                                     "<script>var clicks = 0; document.getElementById('f').focus();"
                                     "document.addEventListener('mousedown', function (e) {"
                                     "  clicks += e.target.tagName === 'SELECT'; });</script>");
        m_portal->window.WinOpenWebFavorites("file://" + page, 0);
        QTRY_COMPARE(m_portal->evaluate("clicks"), QVariant(0.0));
        LogCapture log;
        const bool checkbox = element.contains("checkbox");
        QTEST(traceAfter(Qt::Key_Return, checkbox ? Qt::ControlModifier : Qt::NoModifier, "\r"),
              "trace");
        const QStringList records = log.take();
        QVERIFY(records.contains("Key_Enter true"));
        QCOMPARE(records.filter("webframe QPoint(").size(), combobox ? 1 : 0);
        QCOMPARE(m_portal->evaluate("clicks"), QVariant(combobox ? 1.0 : 0.0));
        if (!combobox)
            return;
        // A key that comes past the open list is swallowed once; the next one is not.
        QCOMPARE(traceAfter(Qt::Key_Escape), QString("keyup(27)"));
        QVERIFY(log.take().contains("Just backed from Combobox, will ingore this key"));
        QCOMPARE(traceAfter(Qt::Key_Escape), QString("keydown(27) keyup(27)"));
        press(Qt::Key_Return);
        QCOMPARE(traceAfter(Qt::Key_A), QString("keydown(65) keyup(65)"));
        // Nor is one after the list has gone.
        press(Qt::Key_Return);
        QCoreApplication::sendPostedEvents();
        if (QWidget *list = QApplication::activePopupWidget())
            list->close();
        QCOMPARE(traceAfter(Qt::Key_Escape), QString("keydown(27) keyup(27)"));
    }

    /** Keys that wait are the page's in their order, before the one that is pressed now. */
    void postedKeysKeepTheirOrder()
    {
        build(focusedPage);
        m_portal->clearTrace();
        m_portal->window.OnUsbMounted();
        m_portal->window.OnUsbUmounted();
        QTest::keyClick(m_portal->view(), Qt::Key_Left);
        QCOMPARE(m_portal->trace().split(' ').filter("key").join(' '),
                 QString("keydown(alt+80) keyup(alt+80) keydown(alt+81) keyup(alt+81) keydown(37) "
                         "keyup(37)"));
    }

    /** Keys that the program posts itself pass untouched, whatever they are. */
    void postedKeysPass()
    {
        build(focusedPage);
        m_portal->window.OnPowerOff();
        LogCapture log;
        m_portal->clearTrace();
        QCoreApplication::postEvent(m_portal->view(),
                                    new QKeyEvent(QEvent::KeyPress, Qt::Key_F5, Qt::NoModifier));
        QCoreApplication::sendPostedEvents();
        QVERIFY(m_portal->trace().endsWith("keydown(116)"));
        QVERIFY(log.take().contains("not spontaneous"));
    }
};

QTEST_MAIN(TestRemoteKeys)
#include "test_remote_keys.moc"
