// SPDX-License-Identifier: Apache-2.0
#include "shell/dialogs/dialog_panel.h"
#include "tests/support/http_server.h"
#include "tests/support/log_capture.h"
#include "tests/support/portal.h"

#include <QPointer>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QTimer>
#include <QWebFrame>
#include <QWebView>

/** The favourites view over the portal: opening, closing, and what its page may do meanwhile. */
class TestFavourites : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Portal> m_portal;

private slots:
    void init() { m_portal = std::make_unique<Portal>(); }

    void cleanup() { m_portal.reset(); }

    void favourites()
    {
        m_portal->load("<title>portal</title>");
        const QString page = m_portal->root.write("external/settings/f.html", "<title>fav</title>");
        m_portal->evaluate("stbWindowMgr.openWebFavorites('file://" + page + "', 1)");
        QCOMPARE(m_portal->stack()->currentIndex(), 1);
        QTRY_COMPARE(m_portal->evaluate("document.title"), QVariant("fav"));
        QCOMPARE(m_portal->evaluate("typeof gSTB + typeof stbPlayer.play"),
                 QVariant("objectfunction"));
        m_portal->evaluate("stbWebWindow.close()");
        QCOMPARE(m_portal->stack()->count(), 1);
        QCOMPARE(m_portal->evaluate("document.title"), QVariant("portal"));
        // Nothing to close any more, and nothing happens.
        m_portal->evaluate("stbWebWindow.close()");
        m_portal->window.WinCloseWebFavorites();
        QCOMPARE(m_portal->stack()->currentIndex(), 0);
    }

    /** However many are open, each close takes one, and the last brings the portal back. */
    void favouritesTwice()
    {
        m_portal->evaluate("stbWindowMgr.openWebFavorites('about:blank', 0)");
        m_portal->evaluate("stbWindowMgr.openWebFavorites('about:blank', 0)");
        QCOMPARE(m_portal->stack()->currentIndex(), 2);
        m_portal->evaluate("stbWebWindow.close()");
        QCOMPARE(m_portal->stack()->currentIndex(), 1);
        m_portal->evaluate("stbWebWindow.close()");
        QCOMPARE(m_portal->stack()->currentIndex(), 0);
    }

    /** A portal that loads anew below favourites is a whole one when they close. */
    void portalReloadedBelow()
    {
        m_portal->load("<script>var seen = typeof gSTB + typeof KeyboardPress;</script>");
        auto *portal = static_cast<QWebView *>(m_portal->stack()->widget(0));
        m_portal->window.WinOpenWebFavorites("about:blank", 0);
        QSignalSpy loaded(portal, &QWebView::loadFinished);
        portal->page()->mainFrame()->evaluateJavaScript("location.reload()");
        QVERIFY(loaded.wait());
        QCOMPARE(m_portal->evaluate("typeof gSTB"), QVariant("object"));
        m_portal->window.WinCloseWebFavorites();
        QCOMPARE(m_portal->evaluate("seen"), QVariant("objectfunction"));
    }

    void pageModeAfterFavourites_data()
    {
        QTest::addColumn<QString>("page");
        QTest::addColumn<bool>("isPortal");
        QTest::addColumn<QString>("trace");
        // The back key tells the mode: in an application it is the receiver's, in settings the
        // page's, elsewhere the page's if that is the portal.
        QTest::newRow("settings") << "external/settings/f.html" << true << "keydown(8) keyup(8)";
        QTest::newRow("settings, no portal") << "external/settings/f.html" << false << "keyup(8)";
        QTest::newRow("application") << "vesprel_apps/f.html" << true << "keyup(8)";
    }

    void pageModeAfterFavourites()
    {
        QFETCH(QString, page);
        QFETCH(bool, isPortal);
        m_portal->load(QByteArray(tracingPage) +
                       (isPortal ? "<script>gSTB.InitPlayer();</script>" : ""));
        const QString path = m_portal->root.write(page, "<title>fav</title>");
        m_portal->window.WinOpenWebFavorites("file://" + path, 0);
        QTRY_COMPARE(m_portal->evaluate("document.title"), QVariant("fav"));
        m_portal->window.WinCloseWebFavorites();
        QTest::keyClick(m_portal->view(), Qt::Key_Backspace);
        QTEST(m_portal->trace(), "trace");
    }

    /** A favourites page identifies itself as the box, but its failures are its own. */
    void favouritesOnTheNetwork()
    {
        HttpServer server;
        server.page("/fav", "<title>fav</title><img src='/missing.png'>");
        LogCapture log;
        m_portal->window.WinOpenWebFavorites(server.url("/fav").toString(), 0);
        QTRY_COMPARE(server.requests().size(), 2);
        QTRY_COMPARE(m_portal->evaluate("document.readyState"), QVariant("complete"));
        QVERIFY(server.requests().first().contains("MAG200 stbapp ver: 4 rev: 734"));
        const QStringList records = log.take();
        QCOMPARE(records.filter("NetworkReplyError").size(), 0);
        QVERIFY(
            records.contains("WinOpenWebFavorites () \"" + server.url("/fav").toString() + '"'));
    }

    /** Closed by an event while its own alert is open: the page's script ends before it goes. */
    void favouritesClosedDuringAlert()
    {
        m_portal->load("<title>portal</title>");
        const QString page =
            m_portal->root.write("alert.html", "<title>fav</title><script>var stbEvent = {onEvent:"
                                               "function () { stbWebWindow.close(); }};"
                                               "</script>");
        m_portal->window.WinOpenWebFavorites("file://" + page, 0);
        QTRY_COMPARE(m_portal->evaluate("document.title"), QVariant("fav"));
        const QPointer<QWebView> favourites = m_portal->view();
        m_portal->evaluate("setTimeout(function () { alert('open'); }, 0)");
        QTimer event;
        connect(&event, &QTimer::timeout, this, [this, &event] {
            if (m_portal->window.findChild<DialogPanel *>()) {
                event.stop();
                m_portal->window.OnPlayEnd();
            }
        });
        event.start(10);
        QTRY_VERIFY(favourites.isNull());
        QCOMPARE(m_portal->evaluate("document.title"), QVariant("portal"));
    }
};

QTEST_MAIN(TestFavourites)
#include "test_favourites.moc"
