// SPDX-License-Identifier: Apache-2.0
#include "shell/dialogs/dialog_panel.h"
#include "tests/support/http_server.h"
#include "tests/support/log_capture.h"
#include "tests/support/portal.h"

#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWebView>

#include <functional>

namespace {

using Keys = QVector<int>;
using Act = std::function<void(Portal &)>;

const QByteArray stopAndExit = "3ade68b1000003e9000000003ade68b1000007cf00000000";

} // namespace

Q_DECLARE_METATYPE(Keys)
Q_DECLARE_METATYPE(Act)

/** What pages ask, in front of a viewer with a remote, and when nobody answers. */
class TestDialogs : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Portal> m_portal;

    DialogPanel *panel() const { return m_portal->window.findChild<DialogPanel *>(); }

    void press(int key) const
    {
        const bool typed = key >= Qt::Key_Space && key <= Qt::Key_Z;
        QTest::sendKeyEvent(QTest::Click, m_portal->view(), Qt::Key(key),
                            typed ? QString(QChar(key)).toLower() : QString(), Qt::NoModifier);
    }

    /** The receiver announces the page that is shown, so that it can be quit. */
    void announce()
    {
        QSignalSpy loaded(m_portal->view(), &QWebView::loadFinished);
        m_portal->window.OnNewPortal(m_portal->view()->url().toString());
        QVERIFY(loaded.wait());
    }

    /** Starts a script from the page's own event loop and acts once while it waits. */
    void ask(const QString &script, const std::function<void()> &act)
    {
        bool acted = false;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [this, &act, &timer, &acted] {
            if (panel()) {
                timer.stop();
                acted = true;
                act();
            }
        });
        timer.start(5);
        m_portal->evaluate("setTimeout(function () { " + script + " }, 0)");
        QTRY_VERIFY(acted);
        QTRY_VERIFY(!panel());
    }

private slots:
    void init()
    {
        m_portal = std::make_unique<Portal>();
        QVERIFY(m_portal->reachReceiver());
        m_portal->window.resize(1280, 720);
        m_portal->load(tracingPage);
    }

    void cleanup() { m_portal.reset(); }

    void answers_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<Keys>("keys");
        QTest::addColumn<QString>("answer");
        using namespace Qt;
        const auto row = [](const char *name, const char *script, const Keys &keys,
                            const char *answer) {
            QTest::newRow(name) << QString(script) << keys << QString(answer);
        };
        row("alert", "alert('x')", {Key_Return}, "undefined");
        row("alert, back", "alert('x')", {Key_Escape}, "undefined");
        row("yes", "confirm('x')", {Key_Enter}, "true");
        row("no", "confirm('x')", {Key_Right, Key_Right, Key_Return}, "false");
        row("and yes again", "confirm('x')", {Key_Right, Key_Left, Key_Enter}, "true");
        row("escape", "confirm('x')", {Key_Escape}, "false");
        row("backspace", "confirm('x')", {Key_Backspace}, "false");
        row("F5", "confirm('x')", {Key_F5}, "false");
        row("select", "confirm('x')", {Key_Select}, "true");
        row("the first answer counts", "confirm('x')", {Key_Back, Key_Return}, "false");
        row("a remote's back", "confirm('x')", {Key_Back}, "false");
        row("tab and back", "confirm('x')", {Key_Tab, Key_Backtab, Key_Return}, "true");
        row("others do nothing", "confirm('x')", {Key_F1, Key_B, Key_1, Key_Return}, "true");
        row("default", "prompt('x', 'abc')", {Key_Return}, "\"abc\"");
        row("digits", "prompt('x')", {Key_4, Key_2, Key_Return}, "\"42\"");
        row("letters of the remote's keys", "prompt('x')", {Key_B, Key_U, Key_Return}, "\"bu\"");
        row("longest text", "prompt('x', Array(1000).join('x')).substr(998)",
            {Key_B, Key_U, Key_Return}, "\"xb\"");
        row("longer default", "prompt('x', Array(2000).join('x')).length", {Key_Return}, "1000");
        row("back in a text", "prompt('x', 'abc')", {Key_Backspace}, "null");
        row("delete", "prompt('x', 'abc')", {Key_Delete, Key_Return}, "\"ab\"");
        row("delete what isn't there", "prompt('x')",
            {Key_Delete, Key_Up, Key_Return, Key_Down, Key_Down, Key_Down, Key_Down, Key_Return},
            "\"1\"");
        // The last cell below the first row's last is the button that cancels.
        row("nearest below", "prompt('x')",
            Keys(11, Key_Right) + Keys(4, Key_Down) + Keys{Key_Return}, "null");
        row("capital", "prompt('x')",
            Keys(4, Key_Down) + Keys{Key_Right, Key_Return, Key_Left} + Keys(3, Key_Up) +
                Keys{Key_Return} + Keys(3, Key_Down) + Keys{Key_Return},
            "\"B\"");
    }

    void answers()
    {
        QFETCH(QString, script);
        QFETCH(Keys, keys);
        const QString answer = "var answer = " + script +
                               "; trace.push(answer === undefined ? "
                               "'undefined' : JSON.stringify(answer));";
        ask(answer, [this, keys] {
            for (const int key : keys)
                press(key);
        });
        // No key of a dialog is one of the page's.
        QTEST(m_portal->trace(), "answer");
    }

    /** A key acts when it goes down, and the release of one that was down before does nothing. */
    void actsOnPresses()
    {
        const auto send = [this](QTest::KeyAction action, Qt::Key key) {
            QTest::sendKeyEvent(action, m_portal->view(), key, QString(), Qt::NoModifier);
        };
        ask("trace.push(confirm('x'))", [send] {
            send(QTest::Release, Qt::Key_Right);
            send(QTest::Press, Qt::Key_Return);
        });
        send(QTest::Release, Qt::Key_Return);
        QCOMPARE(m_portal->trace(), QString("true"));
    }

    /** Text is shown as it is, as much of it as can be read, and the arrows move it. */
    void texts()
    {
        ask("alert('<b>bold</b> ' + Array(20000).join('word '))", [this] {
            auto *text = panel()->findChild<QPlainTextEdit *>();
            QVERIFY(text->toPlainText().startsWith("<b>bold</b> word word"));
            QVERIFY(text->toPlainText().size() < 5000);
            QVERIFY(text->toPlainText().endsWith(QChar(0x2026)));
            QCOMPARE(text->verticalScrollBar()->value(), 0);
            press(Qt::Key_Down);
            const int line = text->verticalScrollBar()->value();
            QVERIFY(line > 3);
            press(Qt::Key_PageDown);
            QVERIFY(text->verticalScrollBar()->value() > line);
            press(Qt::Key_PageUp);
            QCOMPARE(text->verticalScrollBar()->value(), line);
            QVERIFY(panel()->rect().contains(panel()->childrenRect()));
            press(Qt::Key_Return);
        });
    }

    void readable_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::newRow("720p") << QSize(1280, 720);
        QTest::newRow("1080p") << QSize(1920, 1080);
    }

    /** Large and opaque, whatever style the window has and the video shows. */
    void readable()
    {
        QFETCH(QSize, screen);
        m_portal->window.resize(screen);
        ask("prompt('Name?', 'x')", [this, screen] {
            auto *field = panel()->findChild<QLabel *>("field");
            const int height = field->fontMetrics().height();
            const QRect place = panel()->findChild<QFrame *>("panel")->geometry();
            const QRect fieldPlace(field->mapTo(panel(), QPoint()), field->size());
            const int above = panel()->findChild<QPlainTextEdit *>()->geometry().bottom();
            const int top = field->geometry().top();
            const QImage shown = m_portal->window.grab().toImage();
            QCOMPARE(panel()->findChild<QPlainTextEdit *>()->toPlainText(), QString("Name?"));
            m_portal->window.resize(screen * 3 / 4);
            QCOMPARE(panel()->size(), screen * 3 / 4);
            // Where a pointer clicks moves no focus: the keys are the remote's.
            for (const QPushButton *button : panel()->findChildren<QPushButton *>())
                QCOMPARE(button->focusPolicy(), Qt::NoFocus);
            press(Qt::Key_Return);
            QVERIFY(height >= screen.height() / 22);
            // With some room around what is in it.
            QVERIFY(place.adjusted(height / 3, height / 3, -height / 3, -height / 3)
                        .contains(fieldPlace));
            QVERIFY(above < top);
            QVERIFY(QRect(QPoint(), screen).contains(place));
            QCOMPARE(shown.pixelColor(place.left() + 10, place.center().y()), QColor("#16202c"));
        });
    }

    void boxKeys_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("stand-by") << int(Qt::Key_PowerOff)
                                  << QByteArray("3ade68b10000077700000000");
        QTest::newRow("applications")
            << int(Qt::Key_F12) << QByteArray("3ade68b1000007760000000461707073");
        QTest::newRow("home") << int(Qt::Key_Home) << stopAndExit;
        QTest::newRow("U") << int(Qt::Key_U) << stopAndExit;
    }

    /** Keys that are the box's reach it while a page asks. */
    void boxKeys()
    {
        QFETCH(int, key);
        announce();
        ask("confirm('x')", [this, key] {
            press(key);
            if (panel()->isVisible())
                press(Qt::Key_Escape);
        });
        QFETCH(QByteArray, bytes);
        QTRY_COMPARE(m_portal->receiver.received(), bytes);
    }

    /** Keys that the box makes of events are the page's, also while it asks. */
    void eventKeys()
    {
        ask("trace.push(confirm('x'))", [this] {
            m_portal->window.OnUsbMounted();
            QCoreApplication::sendPostedEvents();
            press(Qt::Key_Return);
        });
        QTRY_VERIFY(m_portal->trace().endsWith("true"));
        QVERIFY2(m_portal->trace().contains("keydown(alt+80)"), qPrintable(m_portal->trace()));
    }

    void answeredByThemselves_data()
    {
        QTest::addColumn<Act>("act");
        QTest::addColumn<QString>("url");
        QTest::newRow("new portal")
            << Act([](Portal &p) { p.window.OnNewPortal("data:text/html,new"); })
            << "data:text/html,new";
        QTest::newRow("quit") << Act([](Portal &p) { emit p.window.pwr(); }) << "about:blank";
        QTest::newRow("stand-by") << Act([](Portal &p) { p.window.OnPowerOff(); }) << "";
    }

    /** Nothing waits for a viewer who is gone, however often a page asks, and dialogs in dialogs.
     */
    void answeredByThemselves()
    {
        QFETCH(Act, act);
        QFETCH(QString, url);
        announce();
        m_portal->evaluate("stbEvent.onEvent = function () { gSTB.Debug(confirm('inner')); }");
        LogCapture log;
        ask("var answers = []; for (var i = 0; i < 5; ++i) answers.push(confirm('outer'));"
            "gSTB.Debug(answers)",
            [this, act] {
                QTimer::singleShot(0, this, [this, act] {
                    act(*m_portal);
                    for (const auto *left : m_portal->window.findChildren<DialogPanel *>())
                        QVERIFY(!left->isVisible());
                });
                m_portal->window.OnPlayEnd();
            });
        if (!url.isEmpty())
            QTRY_COMPARE(m_portal->view()->url().toString(), url);
        QCOMPARE(log.take().filter("[Web]"),
                 QStringList({"[Web] \"false\"", "[Web] \"false,false,false,false,false\""}));
    }

    /** A box that is on again has a viewer who answers. */
    void askedAgainAfterStandby()
    {
        m_portal->window.OnPowerOff();
        m_portal->evaluate("answers = []; setTimeout(function () {"
                           " answers.push(confirm('off')) }, 0)");
        QTRY_COMPARE(m_portal->evaluate("answers.join()"), QVariant("false"));
        m_portal->window.OnPowerOn();
        ask("answers.push(confirm('on'))", [this] { press(Qt::Key_Return); });
        QCOMPARE(m_portal->evaluate("answers.join()"), QVariant("false,true"));
    }

    /** A page is asked whether it may be left by its own links, not by the receiver. */
    void leaving()
    {
        m_portal->evaluate("window.onbeforeunload = function () { return 'stay'; }");
        ask("location.href = 'data:text/html,other'", [this] { press(Qt::Key_Escape); });
        QCOMPARE(m_portal->trace(), QString());
        m_portal->window.OnNewPortal("data:text/html,new");
        QTRY_COMPARE(m_portal->view()->url(), QUrl("data:text/html,new"));
        QVERIFY(!panel());
    }

    /** The answer that a page waits for in a request's callback outlives the request. */
    void inRequestCallback()
    {
        HttpServer server;
        server.page("/", "<title>page</title>");
        server.page("/data", "data");
        m_portal->window.setUrl(server.url("/"));
        QTRY_COMPARE(m_portal->evaluate("document.title"), QVariant("page"));
        ask("var r = new XMLHttpRequest(); r.onreadystatechange = function () { alert('x'); };"
            "r.open('GET', '/data'); r.send()",
            [this] { m_portal->window.OnNewPortal("data:text/html,new"); });
        QTRY_COMPARE(m_portal->view()->url(), QUrl("data:text/html,new"));
    }

    void nobodyIsAsked_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("answer");
        QTest::newRow("print") << "window.print(); trace.push('printed')"
                               << "printed";
        QTest::newRow("window") << "trace.push('' + window.open('about:blank'))"
                                << "undefined";
        QTest::newRow("position") << "navigator.geolocation.getCurrentPosition(function () {},"
                                     "function (e) { trace.push('error ' + e.code) })"
                                  << "error 1";
        QTest::newRow("notification")
            << "Notification.requestPermission(function (answer) { trace.push(answer) })"
            << "denied";
        QTest::newRow("file") << "var f = document.createElement('input'); f.type = 'file';"
                                 "document.body.appendChild(f); f.focus(); f.onkeyup = "
                                 "function () { trace = ['files ' + f.files.length]; }"
                              << "files 0";
    }

    /** What a viewer with a remote can't answer has its answer. */
    void nobodyIsAsked()
    {
        QFETCH(QString, script);
        m_portal->evaluate(script);
        if (QTest::currentDataTag() == QByteArray("file")) {
            m_portal->evaluate("document.removeEventListener('keyup', note)");
            press(Qt::Key_Space);
        }
        QFETCH(QString, answer);
        QTRY_COMPARE(m_portal->trace(), answer);
        QVERIFY(!panel());
        QVERIFY(!QApplication::activeModalWidget());
    }

    void downloadLeavesThePage()
    {
        QSignalSpy loaded(m_portal->view(), &QWebView::loadFinished);
        m_portal->evaluate("trace.push('here'); location.href = 'data:application/zip,PK'");
        QVERIFY(loaded.wait());
        QCOMPARE(m_portal->trace(), QString("here"));
    }
};

QTEST_MAIN(TestDialogs)
#include "test_dialogs.moc"
