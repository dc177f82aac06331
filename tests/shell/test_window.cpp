// SPDX-License-Identifier: Apache-2.0
#include "shell/window_placement.h"
#include "tests/support/http_server.h"
#include "tests/support/log_capture.h"
#include "tests/support/portal.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMdiSubWindow>
#include <QScreen>
#include <QTest>
#include <QWebSettings>
#include <QWebView>

namespace {

const QByteArray mediaStop = "3ade68b1000003e900000000";
const QByteArray quit = "3ade68b1000007cf00000000";
// "youtube", as a request to run an application.
const QByteArray youtube = "3ade68b100000776"
                           "00000007"
                           "796f7574756265";

} // namespace

/** The window around its pages: its place, what it shows and reads, quitting, its end. */
class TestWindow : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Portal> m_portal;

    void build()
    {
        m_portal = std::make_unique<Portal>();
        QVERIFY(m_portal->reachReceiver());
    }

private slots:
    void init()
    {
        for (const char *variable : {"Q_MAIN_APP_MODE", "Q_WEB_DEBUG", "VESPREL_WINDOW",
                                     "WAYLAND_DISPLAY", "WESTON_CONFIG_FILE"})
            qunsetenv(variable);
    }

    void cleanup() { m_portal.reset(); }

    void placement_data()
    {
        QTest::addColumn<QByteArray>("wanted");
        QTest::addColumn<QByteArrayList>("variables");
        QTest::addColumn<Qt::WindowStates>("state");
        QTest::addColumn<bool>("isFrameless");
        using Names = QByteArrayList;
        const Names weston = {"WAYLAND_DISPLAY", "WESTON_CONFIG_FILE"};
        const Qt::WindowStates ordinary;
        const Qt::WindowStates maximized = Qt::WindowMaximized;
        const Qt::WindowStates whole = Qt::WindowMaximized | Qt::WindowFullScreen;
        QTest::newRow("screen") << QByteArray() << Names() << whole << false;
        QTest::newRow("window") << QByteArray("640x400") << Names() << ordinary << false;
        // Its full screen would be black below the portal, where the video is.
        QTest::newRow("Weston") << QByteArray() << weston << maximized << true;
        QTest::newRow("other Wayland") << QByteArray() << weston.mid(0, 1) << whole << false;
        QTest::newRow("Weston's X") << QByteArray() << weston.mid(1) << whole << false;
        QTest::newRow("window of Weston") << QByteArray("640x400") << weston << ordinary << false;
    }

    void placement()
    {
        QFETCH(QByteArray, wanted);
        QFETCH(QByteArrayList, variables);
        QFETCH(bool, isFrameless);
        qputenv("VESPREL_WINDOW", wanted);
        for (const QByteArray &variable : qAsConst(variables))
            qputenv(variable.constData(), "here");
        QWidget window;
        window.setGeometry(70, 50, 640, 400);
        showInPlace(window);
        QTEST(window.windowState(), "state");
        QCOMPARE(window.windowFlags().testFlag(Qt::FramelessWindowHint), isFrameless);
        QVERIFY(window.isVisible());
        const QPoint place = window.geometry().topLeft();
        window.hide();
        showInPlace(window);
        QTEST(window.windowState(), "state");
        QCOMPARE(window.geometry().topLeft(), place);
    }

    void size_data()
    {
        QTest::addColumn<QByteArray>("wanted");
        QTest::addColumn<QSize>("size"); // Invalid: the screen's.
        QTest::addColumn<bool>("isReported");
        QTest::newRow("none") << QByteArray() << QSize() << false;
        QTest::newRow("window") << QByteArray("640x400") << QSize(640, 400) << false;
        QTest::newRow("too large") << QByteArray("1920x1080") << QSize() << true;
        QTest::newRow("too small") << QByteArray("63x400") << QSize() << true;
        QTest::newRow("no size") << QByteArray("640 x 400") << QSize() << true;
    }

    /** What a desktop asks for, or the whole screen and a line that tells why. */
    void size()
    {
        QFETCH(QByteArray, wanted);
        QFETCH(QSize, size);
        QFETCH(bool, isReported);
        qputenv("VESPREL_WINDOW", wanted);
        LogCapture log;
        build();
        showInPlace(m_portal->window);
        const QSize screen = QGuiApplication::primaryScreen()->size();
        QTRY_COMPARE(m_portal->view()->size(), size.isValid() ? size : screen);
        QCOMPARE(m_portal->window.isMaximized(), !size.isValid());
        QCOMPARE(!log.take().filter("VESPREL_WINDOW=" + wanted).isEmpty(), isReported);
    }

    void pageFollowsTheWindow()
    {
        build();
        m_portal->window.resize(500, 300);
        QTRY_COMPARE(m_portal->view()->size(), QSize(500, 300));
        // No pane has a menu that a key could open.
        for (const QMdiSubWindow *pane : m_portal->window.findChildren<QMdiSubWindow *>())
            QVERIFY(!pane->systemMenu());
    }

    void urlChange()
    {
        build();
        LogCapture log;
        m_portal->load("", "external/youtube/a b.html");
        const QString url = "file://" + m_portal->root.write("pages/external/youtube/a b.html", "");
        const QStringList records = log.take();
        QVERIFY(records.contains("Urlchanged QUrl(\"" + url + "\") 1"));
        QVERIFY(records.contains("setProgress 100"));
        QTRY_COMPARE(m_portal->receiver.received(), youtube);
        QCOMPARE(qgetenv("portal1"), QUrl(url).toEncoded());
    }

    void webDebugScript()
    {
        qputenv("Q_WEB_DEBUG", "document.title = 'debugged'");
        build();
        m_portal->load("<title>plain</title>");
        QCOMPARE(m_portal->evaluate("document.title"), QVariant("debugged"));
    }

    /** The video plane lies below the window: nothing but what pages draw may cover it. */
    void videoShowsThrough()
    {
        build();
        m_portal->window.OnNewPortal("about:blank");
        m_portal->load("<body>");
        m_portal->window.WinOpenWebFavorites("about:blank", 0);
        QVERIFY(m_portal->window.testAttribute(Qt::WA_TranslucentBackground));
        QList<QWidget *> painted = {&m_portal->window};
        for (QWebView *view : m_portal->window.findChildren<QWebView *>()) {
            QVERIFY(view->testAttribute(Qt::WA_TranslucentBackground));
            painted += view;
        }
        QCOMPARE(painted.size(), 4);
        for (QWidget *widget : qAsConst(painted)) {
            QImage image(widget->size(), QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            widget->render(&image);
            QCOMPARE(image.pixelColor(image.rect().center()).alpha(), 0);
        }
    }

    void webSettings()
    {
        using Settings = QWebSettings;
        const auto attributes = {Settings::PluginsEnabled, Settings::AcceleratedCompositingEnabled,
                                 Settings::WebGLEnabled};
        // Some are on by themselves in this engine, but not in every build of it.
        for (const auto attribute : attributes)
            Settings::globalSettings()->setAttribute(attribute, false);
        build();
        for (const auto attribute : attributes)
            QVERIFY2(Settings::globalSettings()->testAttribute(attribute),
                     QByteArray::number(attribute));
        m_portal->window.WinOpenWebFavorites("about:blank", 0);
        for (const QWebView *view : m_portal->window.findChildren<QWebView *>()) {
            for (const auto attribute : {Settings::JavascriptEnabled, Settings::PluginsEnabled,
                                         Settings::DeveloperExtrasEnabled})
                QVERIFY2(view->settings()->testAttribute(attribute), QByteArray::number(attribute));
        }
    }

    void quitAndNewPortal()
    {
        build();
        m_portal->load(tracingPage);
        // Idle from the start: the first portal cannot be quit.
        emit m_portal->window.pwr();
        QVERIFY(m_portal->window.isVisible());

        const QString next = "file://" + m_portal->root.write("next.html", "<title>next</title>");
        m_portal->receiver.send("3ade68b1000003e8" +
                                QByteArray::number(next.size(), 16).rightJustified(8, '0') +
                                next.toLatin1().toHex());
        QTRY_COMPARE(m_portal->evaluate("document.title"), QVariant("next"));
        QVERIFY(m_portal->window.isMaximized());
        m_portal->receiver.clear();

        QElapsedTimer quitting;
        quitting.start();
        emit m_portal->window.pwr();
        // Time for the receiver to act before anything else happens.
        QVERIFY(quitting.elapsed() >= 100);
        emit m_portal->window.pwr();
        QVERIFY(!m_portal->window.isVisible());
        QTRY_COMPARE(m_portal->receiver.received(), mediaStop + quit);
        QCOMPARE(qgetenv("portal1"), QByteArray());
    }

    /** A failed page gets no developer's script. */
    void noDebugScriptAfterFailure()
    {
        qputenv("Q_WEB_DEBUG", "gSTB.Debug('debugged')");
        build();
        LogCapture log;
        m_portal->window.setUrl(QUrl("file:///no/such/page.html"));
        QString seen;
        QTRY_VERIFY((seen += log.take().join('\n')).contains("finishLoading false"));
        QVERIFY(!seen.contains("debugged"));
    }

    void lastWords_data()
    {
        QTest::addColumn<QString>("script");
        for (const char *script :
             {"gSTB.HideVirtualKeyboard()", "gSTB.ShowVirtualKeyboard()", "gSTB.SetTopWin(1)",
              "stbWebWindow.SetGeometry(1, 2, 3, 4)", "stbWebWindow.close()",
              "stbWindowMgr.openWebFavorites('about:blank', 0)", "gSTB.Play('u')",
              "stbWindowMgr.GetFocusedInputInfo()", "pvrManager.GetAllTasks()",
              "[gSTB, stbPlayerManager, stbPlayer, pvrManager, timeShift, stbStorage, stbWindowMgr,"
              " stbWebWindow].forEach(function (o) { o.destroyed.connect(function () {"
              "   document.title = 'gone'; }); })"})
            QTest::newRow(script) << QString(script);
    }

    /** What a page says while its window goes touches nothing that went before. */
    void lastWords()
    {
        QFETCH(QString, script);
        build();
        m_portal->load("<script>onunload = function () { " + script.toUtf8() + "; };</script>");
        m_portal->evaluate(script.contains("destroyed") ? script : QString());
        m_portal->evaluate("stbWindowMgr.openWebFavorites('about:blank', 0)");
        m_portal->evaluate("onunload = function () { " + script + "; }");
        m_portal.reset();
    }

    /** A window may go in the middle of a load and under a flood of events. */
    void endsUnderLoad()
    {
        build();
        HttpServer server;
        server.silence("/never");
        m_portal->load(tracingPage);
        m_portal->window.setUrl(server.url("/never"));
        QTRY_COMPARE(server.requests().size(), 1);
        m_portal->evaluate("stbWindowMgr.openWebFavorites('about:blank', 0)");
        m_portal->receiver.send(QByteArray("3ade68b1000003e900000000").repeated(2000));
        QCoreApplication::processEvents();
        m_portal.reset();
    }
};

QTEST_MAIN(TestWindow)
#include "test_window.moc"
