// SPDX-License-Identifier: Apache-2.0
#include "objects/web_window.h"
#include "platform/box_paths.h"
#include "shell/pages/page_statement.h"
#include "tests/support/log_capture.h"
#include "tests/support/portal.h"

#include <QApplication>
#include <QFile>
#include <QMdiSubWindow>
#include <QSignalSpy>
#include <QTest>
#include <QWebFrame>
#include <QWebView>

namespace {

const char keyboardPath[] = "usr/share/vesprel/web/system/keyboard/index.html";

const char fieldPage[] = "<body><input id='i'><script>var i = document.getElementById('i');"
                         "i.focus();</script>";

} // namespace

/** The on-screen keyboard's window, states and keys, with a small page in its place. */
class TestKeyboard : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Portal> m_portal;

    QWebView *keyboardView() const
    {
        for (QWebView *view : m_portal->window.findChildren<QWebView *>()) {
            if (view != m_portal->view())
                return view;
        }
        return nullptr;
    }

    QString keyboardTrace() const
    {
        return keyboardView()
            ->page()
            ->mainFrame()
            ->evaluateJavaScript("trace.join(' ')")
            .toString();
    }

    QMdiSubWindow *subWindow() const
    {
        return qobject_cast<QMdiSubWindow *>(keyboardView()->parentWidget());
    }

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString &text = {})
    {
        QTest::sendKeyEvent(QTest::Click, m_portal->view(), Qt::Key(key), text, modifiers);
        QCoreApplication::sendPostedEvents();
    }

    void openKeyboard()
    {
        LogCapture log;
        m_portal->evaluate("gSTB.ShowVirtualKeyboard()");
        QString seen;
        QTRY_VERIFY((seen += log.take().join('\n')).contains("keyboard finishLoading true"));
    }

private slots:
    void init()
    {
        m_portal = std::make_unique<Portal>();
        m_portal->root.write(keyboardPath,
                             QByteArray("<html>") + tracingPage +
                                 "<script>var typed = '';"
                                 "document.addEventListener('keypress', function (e) {"
                                 "  typed += String.fromCharCode(e.charCode); });"
                                 "</script>");
        m_portal->load(QByteArray(tracingPage) + fieldPage);
    }

    void cleanup() { m_portal.reset(); }

    void openAndClose()
    {
        QVERIFY(!subWindow()->isVisible());
        m_portal->evaluate("gSTB.ShowVirtualKeyboard()");
        QVERIFY(subWindow()->isVisible());
        // Until its page is loaded the keys are still the portal's.
        press(Qt::Key_A, Qt::NoModifier, "a");
        QCOMPARE(m_portal->trace(), QString("keydown(65) keyup(65)"));
        QTRY_VERIFY(keyboardTrace() == QString() && !keyboardView()->url().isEmpty());
        openKeyboard();
        LogCapture log;
        m_portal->evaluate("gSTB.HideVirtualKeyboard()");
        QCOMPARE(log.take(),
                 QStringList({"HideVirtualKeyboard ()", "VirtualKeyboardClose () false"}));
        QVERIFY(!subWindow()->isVisible());
        press(Qt::Key_A, Qt::NoModifier, "a");
        QVERIFY(m_portal->trace().endsWith("keydown(65) keyup(65)"));
    }

    /** Four presses: a modifier counts as a key of its own. */
    void keysGoToTheKeyboard()
    {
        openKeyboard();
        m_portal->clearTrace();
        LogCapture log;
        press(Qt::Key_F5, Qt::ShiftModifier);
        press(Qt::Key_Left);
        press(Qt::Key_U, Qt::NoModifier, "u");
        // The releases of the remote's keys still reach the portal, as all releases do.
        QCOMPARE(m_portal->trace(), QString("keyup(shift+116) keyup(16) keyup(37) keyup(85)"));
        QCOMPARE(keyboardTrace(), QString("keydown(16) keyup(16) keydown(shift+8) keyup(shift+8) "
                                          "keydown(37) keyup(37) keydown(85) keyup(85)"));
        QCOMPARE(keyboardView()->page()->mainFrame()->evaluateJavaScript("typed"), QVariant("u"));
        QCOMPARE(log.take().filter("In Keyboard, will act like Key").size(), 4);
        QVERIFY(m_portal->window.isVisible());
    }

    /** A second opening loads the page anew; until then the keys are the portal's again. */
    void openingTwiceReloads()
    {
        openKeyboard();
        press(Qt::Key_Left);
        QCOMPARE(keyboardTrace(), QString("keydown(37) keyup(37)"));
        m_portal->clearTrace();
        m_portal->evaluate("gSTB.ShowVirtualKeyboard()");
        press(Qt::Key_A, Qt::NoModifier, "a");
        QCOMPARE(m_portal->trace(), QString("keydown(65) keyup(65)"));
        openKeyboard();
        QCOMPARE(keyboardTrace(), QString());
    }

    /** Opening and closing leave the focus with the portal, so that the remote reaches it. */
    void focusStaysWithThePortal()
    {
        QApplication::setActiveWindow(&m_portal->window);
        openKeyboard();
        QCOMPARE(QApplication::focusWidget(), m_portal->view());
        QTest::mouseClick(subWindow(), Qt::LeftButton);
        QCOMPARE(QApplication::focusWidget(), m_portal->view());
        m_portal->view()->clearFocus();
        m_portal->evaluate("gSTB.HideVirtualKeyboard()");
        QCOMPARE(QApplication::focusWidget(), m_portal->view());
    }

    /** Each keyboard page brings the portal its functions again. */
    void keyboardFunctionsComeAgain()
    {
        m_portal->evaluate("delete window.KeyboardPress; KeyboardPress = undefined");
        openKeyboard();
        QCOMPARE(m_portal->evaluate("typeof KeyboardPress"), QVariant("function"));
    }

    void closedBeforeItsPageIsLoaded()
    {
        LogCapture log;
        m_portal->evaluate("gSTB.ShowVirtualKeyboard(); gSTB.HideVirtualKeyboard()");
        QString seen;
        QTRY_VERIFY((seen += log.take().join('\n')).contains("keyboard finishLoading false"));
        m_portal->clearTrace();
        press(Qt::Key_A, Qt::NoModifier, "a");
        QCOMPARE(m_portal->trace(), QString("keydown(65) keyup(65)"));
    }

    void missingPageLeavesKeysWithThePortal()
    {
        QFile::remove(BoxPaths::root() + "/" + keyboardPath);
        LogCapture log;
        m_portal->evaluate("gSTB.ShowVirtualKeyboard()");
        QString seen;
        QTRY_VERIFY((seen += log.take().join('\n')).contains("keyboard finishLoading false"));
        QVERIFY(subWindow()->isVisible());
        m_portal->clearTrace();
        press(Qt::Key_A, Qt::NoModifier, "a");
        QCOMPARE(m_portal->trace(), QString("keydown(65) keyup(65)"));
    }

    void objectsOfTheKeyboardPage()
    {
        openKeyboard();
        const QVariant found = keyboardView()->page()->mainFrame()->evaluateJavaScript(
            "[typeof gSTB, typeof timeShift, typeof stbStorage, typeof stbWindowMgr,"
            " typeof stbWebWindow, typeof stbPlayer, typeof pvrManager,"
            " typeof stbPlayerManager, typeof KeyboardPress].join()");
        QCOMPARE(found, QVariant("object,object,object,object,object,undefined,undefined,"
                                 "undefined,undefined"));
    }

    void geometry()
    {
        openKeyboard();
        keyboardView()->page()->mainFrame()->evaluateJavaScript(
            "stbWebWindow.SetGeometry(100, 200, 300, 50)");
        QCOMPARE(subWindow()->geometry(), QRect(QPoint(100, 200), QPoint(399, 249)));
        QCOMPARE(keyboardView()->size(), QSize(300, 50));
    }

    /** Closing from the keyboard's page hides it and gives the keys back. */
    void closedByItsPage()
    {
        openKeyboard();
        m_portal->clearTrace();
        keyboardView()->page()->mainFrame()->evaluateJavaScript("stbWebWindow.close()");
        QVERIFY(!subWindow()->isVisible());
        press(Qt::Key_A, Qt::NoModifier, "a");
        QCOMPARE(m_portal->trace(), QString("keydown(65) keyup(65)"));
    }

    void closedByTheBox_data()
    {
        QTest::addColumn<bool>("quits");
        QTest::newRow("new portal") << false;
        QTest::newRow("quit") << true;
    }

    /** As if the portal had closed it; one that is closed is not closed again. */
    void closedByTheBox()
    {
        QFETCH(bool, quits);
        QSignalSpy loaded(m_portal->view(), &QWebView::loadFinished);
        m_portal->window.OnNewPortal(m_portal->view()->url().toString());
        QVERIFY(loaded.wait(20000));
        openKeyboard();
        for (const char *closing : {"HideVirtualKeyboard ()", ""}) {
            LogCapture log;
            if (quits)
                emit m_portal->window.pwr();
            else
                m_portal->window.OnNewPortal("about:blank");
            QCOMPARE(log.take().filter("HideVirtualKeyboard").join(' '), QString(closing));
            QVERIFY(!subWindow()->isVisible());
            m_portal->window.OnNewPortal("about:blank");
        }
    }

    void hiddenBySignal()
    {
        openKeyboard();
        emit m_portal->window.findChild<stbWebWindow *>()->VKeyboardHide();
        QVERIFY(!subWindow()->isVisible());
    }

    void statements_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("value");
        const auto row = [](const char *name, const QString &key, const char *id,
                            const QString &statement, const QString &value) {
            QTest::newRow(name) << key << QString(id) << statement << value;
        };
        row("letter", "a", "1", "KeyboardPress('a', '1')", "a");
        row("backslash", "a\\b", "1", "KeyboardPress('a\\\\b', '1')", "a\\b");
        row("double quote", "\"", "1", "KeyboardPress('\"', '1')", "\"");
        row("single quote", "'", "1", "KeyboardPress(''', '1')", "");
        row("backslash and quote", "\\'", "1", "KeyboardPress('\\\\'', '1')", "");
        row("second place", "%2", "id", "KeyboardPress('id', 'id')", "id");
        row("first place", "%1", "id", "KeyboardPress('id', '%2')", "id");
        row("pair", QString::fromUtf8("\xf0\x9f\x98\x80"), "",
            QString::fromUtf8("KeyboardPress('\xf0\x9f\x98\x80', '')"),
            QString::fromUtf8("\xf0\x9f\x98\x80"));
        row("empty", "", "", "KeyboardPress('', '')", "");
        row("line break", "a\nb", "", "KeyboardPress('a\nb', '')", "");
    }

    void statements()
    {
        QFETCH(QString, key);
        QFETCH(QString, id);
        QFETCH(QString, value);
        QTEST(PageStatement::keyboardPress(key, id), "statement");
        m_portal->evaluate("i.focus()");
        LogCapture log;
        m_portal->window.VirtualKeyboardOnKey(key, id);
        const QString record = log.take().filter("VirtualKeyboardOnKey").value(0);
        QVERIFY2(record.startsWith("VirtualKeyboardOnKey (): "), qPrintable(record));
        QCOMPARE(m_portal->evaluate("i.value").toString(), value);
    }
};

QTEST_MAIN(TestKeyboard)
#include "test_keyboard.moc"
