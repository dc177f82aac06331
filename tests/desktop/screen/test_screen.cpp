// SPDX-License-Identifier: Apache-2.0
#include "platform/box_paths.h"
#include "tests/support/portal.h"
#include "tests/support/program.h"

#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

namespace {

const char page[] =
    "<script>function tell() { console.log('page ' + innerWidth + 'x' + innerHeight); }"
    "onresize = tell; setTimeout(tell, 300)</script>";

QString sizeText(const QRect &area)
{
    return QString("page %1x%2").arg(area.width()).arg(area.height());
}

} // namespace

/** Program and receiver on one display: where the page is, there is the video. */
class TestScreen : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TemporaryRoot> m_root;
    std::unique_ptr<BareScreen> m_screen;
    std::vector<std::unique_ptr<QProcess>> m_processes;
    QByteArray m_log;

    QProcess &start(const QString &program, const QStringList &arguments,
                    const QByteArray &window = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DISPLAY", m_screen->display());
        environment.insert("QT_QPA_PLATFORM", "xcb");
        environment.insert("VESPREL_ROOT", BoxPaths::root());
        environment.insert("VESPREL_WINDOW", window);
        environment.remove("QT_LOGGING_RULES");
        m_processes.push_back(std::make_unique<QProcess>());
        QProcess &process = *m_processes.back();
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        if (!process.waitForStarted())
            qFatal("%s does not start", qPrintable(program));
        return process;
    }

    QByteArray ask(const QString &program, const QStringList &arguments)
    {
        QProcess &process = start(program, arguments);
        process.waitForFinished();
        return process.readAllStandardOutput();
    }

    QString idOf(const QStringList &search)
    {
        return ask("xdotool", QStringList{"search", "--onlyvisible"} + search).trimmed();
    }

    QString windowOf(const QProcess &process)
    {
        return idOf({"--pid", QString::number(process.processId())});
    }
    QString plane() { return idOf({"--name", "^Vesprel video$"}); }

    /** The area that a window covers on the display. */
    QRect areaOf(const QString &window)
    {
        const QString text = ask("xwininfo", {"-id", window});
        const auto number = [&text](const char *name) {
            const QRegularExpression form(QString(name) + ": +(-?\\d+)");
            return form.match(text).captured(1).toInt();
        };
        return {number("upper-left X"), number("upper-left Y"), number("Width"), number("Height")};
    }

    void startWindowManager(const QString &name)
    {
        if (name.isEmpty())
            return;
        start(name, {});
        QTRY_VERIFY_WITH_TIMEOUT(ask("xprop", {"-root", "_NET_CLIENT_LIST"}).contains("window id"),
                                 30000);
    }

    bool says(QProcess &process, const QString &text)
    {
        return QTest::qWaitFor([&] { return (m_log += process.readAll()).contains(text.toUtf8()); },
                               20000);
    }

private slots:
    void initTestCase()
    {
        QByteArray missing = BareScreen::missing();
        for (const char *tool : {"xwininfo", "xprop"}) {
            if (QStandardPaths::findExecutable(tool).isEmpty())
                missing = QByteArray("needs ") + tool;
        }
        if (!missing.isEmpty())
            QSKIP(missing);
    }

    void init()
    {
        m_root = std::make_unique<TemporaryRoot>();
        m_screen = std::make_unique<BareScreen>();
        m_log.clear();
    }

    void cleanup()
    {
        for (auto process = m_processes.rbegin(); process != m_processes.rend(); ++process) {
            (*process)->kill();
            (*process)->waitForFinished();
        }
        m_processes.clear();
        m_screen.reset();
    }

    void videoFollows_data()
    {
        QTest::addColumn<QString>("manager");
        QTest::addColumn<QByteArray>("window");
        QTest::addColumn<QSize>("size");
        const QSize whole(1280, 720);
        QTest::newRow("bare, whole screen") << QString() << QByteArray() << whole;
        QTest::newRow("bare, window") << QString() << QByteArray("800x450") << QSize(800, 450);
        QTest::newRow("whole screen") << "openbox" << QByteArray() << whole;
        QTest::newRow("window") << "openbox" << QByteArray("800x450") << QSize(800, 450);
    }

    void videoFollows()
    {
        QFETCH(QString, manager);
        QFETCH(QByteArray, window);
        QFETCH(QSize, size);
        if (!manager.isEmpty() && QStandardPaths::findExecutable(manager).isEmpty())
            QSKIP("needs a window manager");
        startWindowManager(manager);
        const QString file = m_root->write("pages/portal.html", page);
        start(RECEIVER,
              {"--player", "simulated", "--portal", QUrl::fromLocalFile(file).toString()});
        QTRY_VERIFY_WITH_TIMEOUT(!plane().isEmpty(), 30000);
        QProcess &box = start(VESPREL_PROGRAM, {}, window);
        QVERIFY2(says(box, sizeText({{}, size})), m_log.constData());
        const QString ours = windowOf(box);
        const QString video = plane();
        QCOMPARE(areaOf(ours).size(), size);
        QTRY_COMPARE_WITH_TIMEOUT(areaOf(video), areaOf(ours), 30000);
        if (size == QSize(1280, 720))
            return;
        m_log.clear();
        ask("xdotool", {"windowmove", ours, "70", "90"});
        ask("xdotool", {"windowsize", ours, "640", "400"});
        QVERIFY2(says(box, "page 640x400"), m_log.constData());
        QTRY_COMPARE_WITH_TIMEOUT(areaOf(video), areaOf(ours), 30000);
        QVERIFY(areaOf(ours).topLeft() != QPoint(0, 0));
    }

    /** A terminal, say, never lies between the two. */
    void otherWindows()
    {
        const QString root = BoxPaths::root();
        if (QStandardPaths::findExecutable("openbox").isEmpty())
            QSKIP("needs a window manager");
        startWindowManager("openbox");
        const QString file = m_root->write("pages/portal.html", page);
        start(RECEIVER,
              {"--player", "simulated", "--portal", QUrl::fromLocalFile(file).toString()});
        QTRY_VERIFY_WITH_TIMEOUT(!plane().isEmpty(), 30000);
        const TemporaryRoot otherRoot;
        QProcess &other = start(VESPREL_PROGRAM, {}, "400x300");
        QTRY_VERIFY_WITH_TIMEOUT(!windowOf(other).isEmpty(), 30000);
        BoxPaths::setRoot(root);
        QProcess &box = start(VESPREL_PROGRAM, {});
        QVERIFY2(says(box, "page 1280x720"), m_log.constData());
        const auto order = [this] {
            const QString text = ask("xprop", {"-root", "_NET_CLIENT_LIST_STACKING"});
            return text.section('#', 1).remove(QRegularExpression("[ ,\n]"));
        };
        const auto hex = [](const QString &id) { return "0x" + QString::number(id.toUInt(), 16); };
        const QString another = hex(windowOf(other));
        const QString video = hex(plane());
        const QString portal = hex(windowOf(box));
        QTRY_COMPARE_WITH_TIMEOUT(order(), another + video + portal, 30000);
        ask("xdotool", {"windowactivate", windowOf(other)});
        QTRY_COMPARE_WITH_TIMEOUT(order(), video + portal + another, 30000);
        ask("xdotool", {"windowactivate", windowOf(box)});
        QTRY_COMPARE_WITH_TIMEOUT(order(), another + video + portal, 30000);
    }
};

QTEST_GUILESS_MAIN(TestScreen)
#include "test_screen.moc"
