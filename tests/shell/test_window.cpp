// SPDX-License-Identifier: Apache-2.0
#include "platform/box_paths.h"
#include "shell/pages/network.h"
#include "shell/pages/page_kind.h"
#include "shell/window_placement.h"
#include "tests/support/http_server.h"
#include "tests/support/log_capture.h"
#include "tests/support/portal.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMdiSubWindow>
#include <QNetworkDiskCache>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QWebSettings>
#include <QWebView>

namespace {

const QByteArray mediaStop = "3ade68b1000003e900000000";
const QByteArray quit = "3ade68b1000007cf00000000";
// "show load page error" and "youtube", as requests to run an application.
const QByteArray errorPage = "3ade68b100000776"
                             "00000014"
                             "73686f77206c6f61642070616765206572726f72";
const QByteArray youtube = "3ade68b100000776"
                           "00000007"
                           "796f7574756265";

using Error = QNetworkReply::NetworkError;

} // namespace

Q_DECLARE_METATYPE(PageMode)

/** The window around its pages: loading, failures, quitting, its end and what it reads. */
class TestWindow : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Portal> m_portal;

    void build()
    {
        m_portal = std::make_unique<Portal>();
        QTRY_VERIFY(m_portal->receiver.isConnected());
        m_portal->receiver.clear();
    }

private slots:
    void init()
    {
        for (const char *variable :
             {"Q_MAIN_APP_MODE", "Q_WEB_DEBUG", "Q_USER_AGENT", "Q_CACHE_PATH", "Q_CACHE_MAX_SIZE",
              "VESPREL_WINDOW", "WAYLAND_DISPLAY", "WESTON_CONFIG_FILE"})
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

    void judgedReplies_data()
    {
        QTest::addColumn<Error>("error");
        QTest::addColumn<QUrl>("reply");
        QTest::addColumn<bool>("loaded");
        QTest::addColumn<QString>("asks");
        const QUrl start("http://tv/start");
        const QUrl other("http://tv/other.png");
        const QUrl services("file:///home/web/services.html?x");
        QTest::newRow("success") << Error::NoError << start << false << "";
        QTest::newRow("cancelled") << Error::OperationCanceledError << start << false << "";
        QTest::newRow("unknown host")
            << Error::HostNotFoundError << other << true << "error record";
        QTest::newRow("start page") << Error::TimeoutError << start << false << "error record";
        QTest::newRow("start page, loaded") << Error::TimeoutError << start << true << "record";
        QTest::newRow("other") << Error::ContentNotFoundError << other << false << "record";
        QTest::newRow("services") << Error::ContentNotFoundError << services << false
                                  << "services record";
        QTest::newRow("services denied")
            << Error::ContentAccessDenied << services << false << "record";
    }

    void judgedReplies()
    {
        QFETCH(Error, error);
        QFETCH(QUrl, reply);
        QFETCH(bool, loaded);
        BoxPaths::setRoot("");
        const QUrl start("http://tv/start");
        const NetworkFailure failure = judgeReply(error, reply, start, loaded ? start : QUrl());
        QStringList asks;
        if (failure.servicesMenu)
            asks += "services";
        if (failure.errorPage)
            asks += "error";
        if (failure.reported)
            asks += "record";
        QTEST(asks.join(' '), "asks");
    }

    void pageModes_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<PageMode>("mode");
        QTest::newRow("portal") << "http://tv/c/index.html" << PageMode::Portal;
        QTest::newRow("application") << "file:///vesprel_apps/x" << PageMode::Application;
        QTest::newRow("video") << "http://tv/external/youtube/" << PageMode::Application;
        QTest::newRow("settings") << "http://tv/external/settings/" << PageMode::Settings;
        QTest::newRow("both") << "file:///vesprel_apps/external/settings" << PageMode::Application;
    }

    void pageModes()
    {
        QFETCH(QString, url);
        QTEST(pageModeOf(url), "mode");
    }

    void urlChange()
    {
        build();
        LogCapture log;
        m_portal->load("", "external/youtube/a b.html");
        const QString url = "file://" + m_portal->root.write("pages/external/youtube/a b.html", "");
        QVERIFY(log.take().contains("Urlchanged QUrl(\"" + url + "\") 1"));
        QTRY_COMPARE(m_portal->receiver.received(), youtube);
        QCOMPARE(qgetenv("portal1"), QUrl(url).toEncoded());
    }

    void failedStartPage()
    {
        build();
        HttpServer server;
        server.page("/sub", "<img src='/missing.png'>");
        const QUrl gone = server.url("/gone");
        LogCapture log;
        m_portal->window.setUrl(gone);
        QTRY_COMPARE(m_portal->receiver.received(), errorPage);
        QVERIFY(log.take().contains("Need show error page"));
        // A missing sub-resource of a page that does load asks for nothing.
        m_portal->receiver.clear();
        QSignalSpy loaded(m_portal->view(), &QWebView::loadFinished);
        m_portal->window.setUrl(server.url("/sub"));
        QVERIFY(loaded.wait());
        QVERIFY(log.take().join('\n').contains("QNetworkReply::ContentNotFoundError"));
        QCOMPARE(m_portal->receiver.received(), QByteArray());
    }

    void missingServicesPage()
    {
        build();
        const QString url = BoxPaths::servicesPageUrl();
        m_portal->window.setUrl(QUrl(url));
        QByteArray frame = "3ade68b100000776" +
                           QByteArray::number(url.size(), 16).rightJustified(8, '0') +
                           url.toLatin1().toHex();
        QTRY_COMPARE(m_portal->receiver.received(), frame + errorPage);
    }

    void userAgent_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::addColumn<QByteArray>("header");
        const QByteArray box = "Mozilla/5.0 (Unknown; Linux) AppleWebKit/538.1 (KHTML, like Gecko) "
                               "MAG200 stbapp ver: 4 rev: 734 Mobile Safari/538.1";
        QTest::newRow("override") << QByteArray("Test/1") << QByteArray("Test/1");
        QTest::newRow("prefix") << QByteArray("User-Agent: Test/2") << QByteArray("Test/2");
        QTest::newRow("other case") << QByteArray("user-agent: x") << QByteArray("user-agent: x");
        QTest::newRow("empty") << QByteArray("") << box;
    }

    void userAgent()
    {
        QFETCH(QByteArray, variable);
        QFETCH(QByteArray, header);
        qputenv("Q_USER_AGENT", variable);
        build();
        HttpServer server;
        server.page("/", "x");
        m_portal->window.setUrl(server.url("/"));
        QTRY_COMPARE(server.requests().size(), 1);
        QVERIFY(server.requests().first().contains("\r\nUser-Agent: " + header + "\r\n"));
    }

    /** The portal's API calls follow redirects by themselves; everything else as it came. */
    void redirects()
    {
        HttpServer server;
        server.redirect("/a.php?type=x", "/target");
        server.redirect("/a.php?TYPE=x", "/target");
        server.page("/target", "arrived");
        const auto fetch = [&server](const QString &path) {
            QNetworkReply *reply = sharedNetworkAccess.get(QNetworkRequest(server.url(path)));
            QSignalSpy finished(reply, &QNetworkReply::finished);
            finished.wait();
            reply->deleteLater();
            return reply->readAll();
        };
        QCOMPARE(fetch("/a.php?type=x"), QByteArray("arrived"));
        QCOMPARE(fetch("/a.php?TYPE=x"), QByteArray());
    }

    void diskCache_data()
    {
        QTest::addColumn<QByteArray>("size");
        QTest::addColumn<qint64>("maximum");
        QTest::newRow("unset") << QByteArray() << QNetworkDiskCache().maximumCacheSize();
        QTest::newRow("bytes") << QByteArray("5000000000") << qint64(5000000000);
        QTest::newRow("no number") << QByteArray("abc") << qint64(0);
    }

    void diskCache()
    {
        QFETCH(QByteArray, size);
        QTemporaryDir folder;
        qputenv("Q_CACHE_PATH", folder.filePath("cache").toLocal8Bit());
        if (!size.isNull())
            qputenv("Q_CACHE_MAX_SIZE", size);
        LogCapture log;
        build();
        auto *cache = qobject_cast<QNetworkDiskCache *>(sharedNetworkAccess.cache());
        QVERIFY(cache);
        QCOMPARE(cache->cacheDirectory(), folder.filePath("cache") + "/");
        QTEST(cache->maximumCacheSize(), "maximum");
        QCOMPARE(log.take().filter("etMaximumCacheSize").size(), size.isNull() ? 0 : 1);
        m_portal.reset();
        QVERIFY(!sharedNetworkAccess.cache());
    }

    void webDebugScript()
    {
        qputenv("Q_WEB_DEBUG", "document.title = 'debugged'");
        build();
        m_portal->load("<title>plain</title>");
        QCOMPARE(m_portal->evaluate("document.title"), QVariant("debugged"));
    }

    /** A page of the network may read the box's own files. */
    void localFilesFromTheNetwork()
    {
        build();
        HttpServer server;
        const QString file = m_portal->root.write("data.txt", "local text");
        server.page("/", "<script>var r = new XMLHttpRequest(), text = 'none';"
                         "r.onload = function () { text = r.responseText; };"
                         "r.open('GET', 'file://" +
                             file.toUtf8() + "'); r.send();</script>");
        m_portal->window.setUrl(server.url("/"));
        QTRY_COMPARE(m_portal->evaluate("text"), QVariant("local text"));
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

    void networkGoes()
    {
        build();
        LogCapture log;
        emit sharedNetworkAccess.networkAccessibleChanged(QNetworkAccessManager::NotAccessible);
        QCOMPARE(log.take(), QStringList("NetworkAccessibleChanged( "
                                         "QNetworkAccessManager::NotAccessible"));
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
