// SPDX-License-Identifier: Apache-2.0
#include "desktop/watch/folder_watch.h"
#include "desktop/watch/portal_probe.h"
#include "tests/support/files.h"
#include "tests/support/http_server.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

namespace {

using Change = std::function<void(const QString &folder)>;

constexpr int noMoreMs = 300; ///< Longer than changes are waited for.

QString names(const QSignalSpy &spy)
{
    QStringList list;
    for (const auto &signal : spy)
        list += signal.first().toString();
    return list.join(' ');
}

} // namespace

Q_DECLARE_METATYPE(Change)

/** What is seen of a portal that is worked on. */
class TestWatch : public QObject
{
    Q_OBJECT

private slots:
    void changesAreTold_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("told");
        row("written", Change([](const QString &f) { writeFile(f + "/page.html", "2"); }),
            QString("page.html"));
        row("renamed over", Change([](const QString &f) {
                writeFile(f + "/.page.tmp", "2");
                QFile::remove(f + "/page.html");
                QFile::rename(f + "/.page.tmp", f + "/page.html");
            }),
            QString("page.html"));
        row("in a folder", Change([](const QString &f) { writeFile(f + "/js/a.js", "2"); }),
            QString("js/a.js"));
        row("removed", Change([](const QString &f) { QFile::remove(f + "/js/a.js"); }),
            QString("js/a.js"));
        row("many at once", Change([](const QString &f) {
                for (int i = 0; i < 50; ++i)
                    writeFile(f + QString("/js/%1.js").arg(i), "2");
            }),
            QString("js/49.js"));
        row("by a link",
            Change([](const QString &f) { QFile::link("page.html", f + "/link.html"); }),
            QString("link.html"));
        row("what editors leave", Change([](const QString &f) {
                for (const char *name : {".page.swp", "page.html~", "#page#", "4913", ".git/index",
                                         "node_modules/x/y.js"})
                    writeFile(f + '/' + name, "x");
            }),
            QString());
    }

    void changesAreTold()
    {
        QFETCH(Change, change);
        QFETCH(QString, told);
        const QTemporaryDir folder;
        writeFile(folder.filePath("page.html"), "1");
        writeFile(folder.filePath("js/a.js"), "1");
        QVERIFY(QDir(folder.path()).mkpath(".git") && QDir(folder.path()).mkpath("node_modules/x"));
        // A link that leads in a circle.
        QFile::link("..", folder.filePath("js/up"));
        FolderWatch watch;
        QSignalSpy changes(&watch, &FolderWatch::changed);
        QCOMPARE(watch.start(folder.path()), QString());
        change(folder.path());
        QTRY_COMPARE_WITH_TIMEOUT(names(changes), told, 2000);
        QTest::qWait(noMoreMs);
        QCOMPARE(names(changes), told);
    }

    /** Folders that were not there at the beginning, and the watched one itself made anew. */
    void newFoldersAreWatched()
    {
        const QTemporaryDir parent;
        const QString folder = parent.filePath("dist");
        writeFile(folder + "/a", "1");
        FolderWatch watch;
        QSignalSpy changes(&watch, &FolderWatch::changed);
        QCOMPARE(watch.start(folder), QString());
        const auto tells = [&changes](const QString &name) {
            return !changes.isEmpty() && changes.last().first() == name;
        };
        QVERIFY(QDir(folder).mkpath("new"));
        QTRY_VERIFY(tells("new"));
        writeFile(folder + "/new/b", "1");
        QTRY_VERIFY(tells("new/b"));
        QVERIFY(QDir(folder).removeRecursively());
        QTest::qWait(noMoreMs);
        QVERIFY(QDir(folder).mkpath("."));
        QTRY_VERIFY(tells("dist"));
        writeFile(folder + "/c", "1");
        QTRY_VERIFY(tells("c"));
    }

    void nothingToWatch()
    {
        FolderWatch watch;
        QCOMPARE(watch.start("/no/such"), QString("There is no folder /no/such to watch."));
    }

    void serverThatComesUp()
    {
        QTcpServer port;
        QVERIFY(port.listen(QHostAddress::LocalHost));
        const QUrl address(QString("http://127.0.0.1:%1/portal").arg(port.serverPort()));
        port.close();
        PortalProbe probe(50);
        QSignalSpy failures(&probe, &PortalProbe::failed);
        QSignalSpy answers(&probe, &PortalProbe::answered);
        probe.start(address);
        QTRY_COMPARE(names(failures), QString("Connection refused"));
        QTest::qWait(noMoreMs);
        QCOMPARE(failures.count(), 1); // The same reason is told once.
        QVERIFY(port.listen(QHostAddress::LocalHost, quint16(address.port())));
        QTRY_VERIFY(port.hasPendingConnections());
        QTcpSocket *socket = port.nextPendingConnection();
        // The rest of the page never comes, and is not waited for.
        socket->write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n<html>");
        QTRY_COMPARE(answers.count(), 1);
        QCOMPARE(answers.first().first().toBool(), true);
    }

    void pageThatIsWritten()
    {
        HttpServer server;
        const QTemporaryDir folder;
        const QString file = folder.filePath("a b#.html");
        const auto appears = [](const QUrl &address, const QString &reason, const Change &make) {
            PortalProbe probe(50);
            QSignalSpy failures(&probe, &PortalProbe::failed);
            QSignalSpy answers(&probe, &PortalProbe::answered);
            probe.start(address);
            QTRY_COMPARE(names(failures), reason);
            make(QString());
            QTRY_COMPARE(answers.count(), 1);
            probe.start(address);
            QTRY_COMPARE(answers.count(), 2);
            QCOMPARE(answers.last().first().toBool(), false);
        };
        appears(server.url("/a"), "the server answers 404 Not Found",
                [&server](const QString &) { server.page("/a", "page"); });
        appears(QUrl::fromLocalFile(file), "there is no such file",
                [&file](const QString &) { writeFile(file, "page"); });
    }
};

QTEST_GUILESS_MAIN(TestWatch)

#include "test_watch.moc"
