// SPDX-License-Identifier: Apache-2.0
#include "platform/box_paths.h"
#include "shell/pages/network.h"
#include "shell/pages/page_kind.h"
#include "tests/support/http_server.h"
#include "tests/support/log_capture.h"
#include "tests/support/portal.h"

#include <QNetworkDiskCache>
#include <QSignalSpy>
#include <QTest>
#include <QWebView>

namespace {

// "show load page error", as a request to run an application.
const QByteArray errorPage = "3ade68b100000776"
                             "00000014"
                             "73686f77206c6f61642070616765206572726f72";

using Error = QNetworkReply::NetworkError;

} // namespace

Q_DECLARE_METATYPE(PageMode)

/** What pages ask of the network and of the box's files, and what comes of it. */
class TestNetwork : public QObject
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
        for (const char *variable :
             {"Q_MAIN_APP_MODE", "Q_USER_AGENT", "Q_CACHE_PATH", "Q_CACHE_MAX_SIZE"})
            qunsetenv(variable);
    }

    void cleanup() { m_portal.reset(); }

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

    void networkGoes()
    {
        build();
        LogCapture log;
        emit sharedNetworkAccess.networkAccessibleChanged(QNetworkAccessManager::NotAccessible);
        // Among what the link's thread says as it starts.
        QCOMPARE(log.take().count("NetworkAccessibleChanged( QNetworkAccessManager::NotAccessible"),
                 1);
    }
};

QTEST_MAIN(TestNetwork)
#include "test_network.moc"
