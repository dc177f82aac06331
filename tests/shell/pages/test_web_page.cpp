// SPDX-License-Identifier: Apache-2.0
#include "platform/box_paths.h"
#include "shell/pages/portal_origins.h"
#include "tests/support/http_server.h"
#include "tests/support/log_capture.h"
#include "tests/support/portal.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <QWebElement>
#include <QWebFrame>
#include <QWebView>

namespace {

const QColor video("#204020");

/** The current page as it lies over the video. */
QImage shown(QWebView *view)
{
    QImage image(view->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(video);
    QPainter painter(&image);
    view->render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

/** How much of a part of an image is light, in percent. */
int lightPercent(const QImage &image, const QRect &part)
{
    int light = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x)
            light += image.pixelColor(x, y).lightness() > 180;
    }
    return 100 * light / (part.width() * part.height());
}

const QByteArray playX = "3ade68b1000003e80000000178";

} // namespace

/** What a page gets from the box: controls that can be read, objects, connections. */
class TestWebPage : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Portal> m_portal;

    void build(const QString &origins = QString())
    {
        qputenv("Q_PORTAL_ORIGINS", origins.toUtf8());
        m_portal = std::make_unique<Portal>();
        m_portal->window.resize(1280, 720);
        QVERIFY(m_portal->reachReceiver());
    }

    void open(const QUrl &url)
    {
        QSignalSpy loaded(m_portal->view(), &QWebView::loadFinished);
        m_portal->window.setUrl(url);
        QVERIFY(loaded.wait());
    }

private slots:
    void cleanup()
    {
        m_portal.reset();
        qunsetenv("Q_PORTAL_ORIGINS");
    }

    void controls_data()
    {
        QTest::addColumn<QByteArray>("control");
        QTest::addColumn<int>("light");
        QTest::newRow("check box") << QByteArray("<input type=checkbox id=c>") << 50;
        QTest::newRow("checked") << QByteArray("<input type=checkbox id=c checked>") << 30;
        QTest::newRow("radio") << QByteArray("<input type=radio id=c checked>") << 30;
        QTest::newRow("list") << QByteArray("<select id=c><option>one<option>two</select>") << 50;
        QTest::newRow("field") << QByteArray("<input id=c value=text>") << 50;
        QTest::newRow("area") << QByteArray("<textarea id=c>text</textarea>") << 50;
        QTest::newRow("button") << QByteArray("<button id=c>text</button>") << 50;
        QTest::newRow("range") << QByteArray("<input type=range id=c>") << 5;
        QTest::newRow("progress") << QByteArray("<progress id=c value=0.1></progress>") << 50;
        QTest::newRow("own") << QByteArray("<button id=c style='background: #204060; border: 0'>x"
                                           "</button>")
                             << 0;
    }

    /** On the transparent window, with nothing but the video behind them. */
    void controls()
    {
        QFETCH(QByteArray, control);
        QFETCH(int, light);
        build();
        m_portal->load("<body style='background: transparent'><p>" + control);
        QCOMPARE(m_portal->view()->styleSheet(), QString("background: transparent;"));
        const QRect place =
            m_portal->view()->page()->mainFrame()->findFirstElement("#c").geometry();
        LogCapture log;
        const QImage image = shown(m_portal->view());
        QCOMPARE(log.take().filter("QPainter"), QStringList());
        QCOMPARE(image.pixelColor(image.width() - 5, image.height() - 5), video);
        const int found = lightPercent(image, place);
        if (light == 0)
            QCOMPARE(image.pixelColor(place.left() + 2, place.top() + 2), QColor("#204060"));
        else
            QVERIFY2(found >= light, qPrintable(QString::number(found)));
    }

    /** The open list shows where one is. */
    void openList()
    {
        build();
        m_portal->load("<select id=c><option>one<option selected>two"
                       "<option disabled>three</select>");
        const QRect place =
            m_portal->view()->page()->mainFrame()->findFirstElement("#c").geometry();
        QTest::mouseClick(m_portal->view(), Qt::LeftButton, Qt::NoModifier, place.center());
        QTRY_VERIFY(QApplication::activePopupWidget());
        QWidget *popup = QApplication::activePopupWidget();
        auto *list = popup->findChild<QAbstractItemView *>();
        const auto ground = [list](int row) {
            const QRect item = list->visualRect(list->model()->index(row, 0));
            return list->grab().toImage().pixelColor(item.left() + 4, item.center().y());
        };
        // How dark the darkest of a row's letters is.
        const auto ink = [list](int row) {
            const QImage item =
                list->viewport()->grab(list->visualRect(list->model()->index(row, 0))).toImage();
            int darkest = 255;
            for (int y = 4; y < item.height() - 4; ++y) {
                for (int x = 4; x < item.width() - 4; ++x)
                    darkest = qMin(darkest, item.pixelColor(x, y).lightness());
            }
            return darkest;
        };
        const int usual = ink(0);
        const int disabled = ink(2);
        const int textHeight = list->fontMetrics().height();
        const QColor first = ground(0);
        const QColor second = ground(1);
        const QColor edge = list->grab().toImage().pixelColor(0, 0);
        popup->close();
        QVERIFY(first.lightness() > 240);
        QVERIFY(second.lightness() < 180);
        QVERIFY2(usual < 60 && disabled > 100,
                 qPrintable(QString("%1 %2").arg(usual).arg(disabled)));
        QCOMPARE(edge, QColor("#303030"));
        QVERIFY(textHeight >= 720 / 26);
    }

    void origins_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("page");
        QTest::addColumn<bool>("allowed");
        const auto row = [](const char *list, const char *page, bool allowed) {
            QTest::addRow("%s: %s", list, page) << QString(list) << QString(page) << allowed;
        };
        row("", "http://ads/", true);
        row("  ", "http://ads/", true);
        row("http://tv", "http://tv/c/index.html?x#y", true);
        row("http://tv", "http://tv:80/", true);
        row("http://tv:80/", "http://tv/", true);
        row("HTTP://TV.Example", "http://tv.example/", true);
        row("http://tv", "http://user:word@TV/", true);
        row("http://tv", "https://tv/", false);
        row("https://tv:443", "https://tv/", true);
        row("http://tv", "http://tv:8080/", false);
        row("http://tv", "http://tv.ads.example/", false);
        row("http://tv", "http://tv@ads/", false);
        row("http://[0:0::1]:8080", "http://[::1]:8080/", true);
        row("http://[fe80::1%25lan]", "http://[fe80::1%25lan]/", true);
        row("http://b\u00fccher", "http://xn--bcher-kva/", true);
        row("http://one http://tv", "http://tv/", true);
        row("http://tv", "file:///home/web/services.html", false);
        row("file://", "file:///home/web/services.html", true);
        row("http://tv", "about:blank", false);
        row("http://tv", "data:text/html,x", false);
        row("data: about: *", "data:text/html,x", false);
        row("tv", "http://tv/", false);
        row("//tv", "//tv/", false);
        row("http://tv/c/", "http://tv/c/", false);
        row("http://user@tv", "http://tv/", false);
    }

    void origins()
    {
        QFETCH(QString, list);
        QFETCH(QString, page);
        QTEST(PortalOrigins(list).allow(originText(QUrl(page))), "allowed");
    }

    /** Pages of other origins load, and have neither objects nor files; the keyboard keeps both. */
    void foreignPages()
    {
        HttpServer own;
        HttpServer foreign;
        build(own.url("").toString());
        const QString file = m_portal->root.write("secret", "secret");
        const QByteArray page = "<script>var r = new XMLHttpRequest(), found = '';"
                                "try { r.open('GET', 'file://" +
                                file.toUtf8() +
                                "', false); r.send(); found = r.responseText; } catch (e) {}"
                                "document.title = [typeof gSTB, typeof stbPlayerManager,"
                                "typeof stbPlayer, typeof pvrManager, typeof timeShift,"
                                "typeof stbStorage, typeof stbWindowMgr, typeof stbWebWindow,"
                                "found];</script>";
        own.page("/", page);
        own.redirect("/away", foreign.url("/").toEncoded());
        foreign.page("/", page);
        const QString all = QString("object,").repeated(8) + "secret";
        const QString none = QString("undefined,").repeated(8);

        open(own.url("/"));
        QCOMPARE(m_portal->evaluate("document.title").toString(), all);
        LogCapture log;
        open(own.url("/away"));
        QCOMPARE(m_portal->view()->url(), foreign.url("/"));
        QCOMPARE(m_portal->evaluate("document.title").toString(), none);
        const QString origin = foreign.url("").toString();
        QVERIFY(log.take().contains("page without the box's objects: \"" + origin +
                                    "\" \"127.0.0.1\""));
        m_portal->root.write("usr/share/vesprel/web/system/keyboard/index.html",
                             "<script>gSTB.Debug('keyboard')</script>");
        m_portal->window.VirtualKeyboardOpen();
        QStringList lines;
        QTRY_VERIFY((lines += log.take()).contains("keyboard finishLoading true"));
        QVERIFY(lines.contains("[Web] \"keyboard\""));
        m_portal->load("<script>document.title = typeof gSTB</script>");
        QCOMPARE(m_portal->evaluate("document.title"), QVariant("undefined"));
        open(own.url("/"));
        QCOMPARE(m_portal->evaluate("document.title").toString(), all);
    }

    void ignoredOrigins()
    {
        LogCapture log;
        build("http://tv nonsense");
        QCOMPARE(log.take().filter("no origin"), QStringList("no origin, ignored: \"nonsense\""));
    }

    /** Nobody is asked whether a script may go on, should the engine ever want to know. */
    void endlessScript()
    {
        build();
        m_portal->load("x");
        LogCapture log;
        QVERIFY(m_portal->view()->page()->shouldInterruptJavaScript());
        QVERIFY(log.take().join('\n').startsWith("script ended, it took too long: QUrl(\"file://"));
    }

    /** A page has its own connections and those of the program, none of its predecessors'. */
    void connections()
    {
        build();
        const QByteArray page = "<script>gSTB.OnPlay.connect(gSTB.Debug)</script>";
        const auto calls = [this] {
            LogCapture log;
            m_portal->evaluate("gSTB.Play('x')");
            return log.take().filter("[Web]").size();
        };
        for (int i = 0; i < 3; ++i)
            m_portal->load(page);
        QCOMPARE(calls(), 1);
        const QString favourites = m_portal->root.write("favourites.html", page);
        m_portal->window.WinOpenWebFavorites("file://" + favourites, 0);
        QTRY_COMPARE(calls(), 2);
        m_portal->window.WinCloseWebFavorites();
        QCOMPARE(calls(), 1);
        m_portal->load("");
        m_portal->receiver.clear();
        QCOMPARE(calls(), 0);
        QTRY_COMPARE(m_portal->receiver.received(), playX);
    }
};

QTEST_MAIN(TestWebPage)
#include "test_web_page.moc"
