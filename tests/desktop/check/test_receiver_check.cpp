// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/checks.h"
#include "desktop/check/document.h"
#include "desktop/check/report.h"
#include "tests/desktop/check/faulty_receiver.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <map>
#include <memory>

namespace {

constexpr int longestMs = 120000;

/** The check as a process, and what it is tried on. */
struct Run
{
    std::unique_ptr<FaultyReceiver> receiver;
    QProcess check;

    QString output;

    void start(const QStringList &arguments)
    {
        check.setProcessChannelMode(QProcess::MergedChannels);
        check.start(RECEIVER_CHECK, arguments);
    }

    /** Waits for the end; the exit status, -1 when it does not come. */
    int finish()
    {
        if (check.state() != QProcess::NotRunning && !check.waitForFinished(longestMs))
            return -1;
        output += QString::fromUtf8(check.readAll());
        return check.exitStatus() == QProcess::NormalExit ? check.exitCode() : -1;
    }

    /** The names of the checks that failed, and why the run was cut short. */
    QStringList failures() const
    {
        static const QRegularExpression line("^(?:not ok \\d+ - |(?=Bail out!))(.*)$",
                                             QRegularExpression::MultilineOption);
        QStringList names;
        for (auto matches = line.globalMatch(output); matches.hasNext();)
            names += matches.next().captured(1);
        return names;
    }
};

const char noConnection[] = "Bail out! The receiver takes no connection any more.";

} // namespace

/** vesprel-receiver-check on receivers with one fault each, and on the one of a desktop. */
class TestReceiverCheck : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    std::map<Fault, Run> m_runs;

    QString path(const QString &name) const { return m_folder.filePath(name); }

private slots:
    void initTestCase()
    {
        // All at once, since most of their time they wait.
        for (int fault = int(Fault::None); fault <= int(Fault::EndsAtClosedListener); ++fault) {
            Run &run = m_runs[Fault(fault)];
            const QString socket = path(QString::number(fault));
            run.receiver = std::make_unique<FaultyReceiver>(socket, Fault(fault));
            const bool isEndless = Fault(fault) == Fault::SendsRubbish;
            run.start({"--all", "--url", "http://127.0.0.1:1/", "--junit", socket + ".xml",
                       "--time-limit", isEndless ? "5" : "100", socket});
        }
    }

    void findsFault_data()
    {
        QTest::addColumn<int>("fault");
        QTest::addColumn<QStringList>("failures");
        const auto row = [](const char *name, Fault fault, const QStringList &failures) {
            QTest::newRow(name) << int(fault) << failures;
        };
        row("none", Fault::None, {});
        row("no answer", Fault::AnswersNothing, {"answers 1909, get all recordings"});
        row("an answer of another type", Fault::AnswersWithOtherType,
            {"answers 1902, get storage information"});
        row("an integer of two bytes", Fault::AnswersWithTwoBytes,
            {"answers 1903, create recording ..."});
        row("an empty text", Fault::AnswersWithEmptyText, {"answers 1906, get recording ..."});
        row("broken JSON", Fault::AnswersWithBrokenJson, {"answers 1907, get recordings ..."});
        row("two answers", Fault::AnswersTwice, {"answers once, and only what was asked"});
        row("no answer to nonsense", Fault::AnswersNonsenseNot,
            {"lives with commands that make no sense"});
        row("two writes", Fault::WritesHeaderAlone, {"writes each message at once"});
        row("another magic", Fault::SendsOtherMagic, {"sends the magic"});
        row("a message on the other connection", Fault::SendsOnCommands,
            {"sends nothing on the connection for commands"});
        row("an integer too short", Fault::SendsShortEvent, {"sends events in their form"});
        row("tracks that are no list", Fault::SendsBadTracks, {"sends events in their form"});
        row("an unknown type", Fault::SendsUnknownType, {"sends messages of the tables only"});
        // What comes behind it is not seen any more.
        row("a payload too large", Fault::SendsTooLarge,
            {"goes on after 1000, play ...", "tells the length and the start of playback",
             "sends no payload that is too large"});
        row("thousands of events", Fault::Floods, {"does not flood"});
        row("no length", Fault::TellsNoLength, {"tells the length and the start of playback"});
        row("no position", Fault::TellsNoPositionAfterSeek, {"tells the position after a seek"});
        row("the old position", Fault::SeeksNowhere, {"tells the position after a seek"});
        row("the portal once", Fault::TellsPortalOnce, {"tells each program its portal"});
        row("hanging up at an unknown command", Fault::ClosesAtUnknown,
            {"passes over unknown commands"});
        row("whole reads needed", Fault::NeedsWholeReads, {"takes a command in pieces"});
        row("three commands of a read at most", Fault::TakesThreeFromRead,
            {"takes several commands at once"});
        row("hanging up at a large command", Fault::ClosesAtLarge, {"takes large commands"});
        row("an end at a command", Fault::EndsAtMute, {"goes on after 1102, mute", noConnection});
        row("an end at half a command", Fault::EndsAtHalfCommand,
            {"lives through an end within a command", noConnection});
        row("an end at a closed listener", Fault::EndsAtClosedListener,
            {"lives through an end with an answer on its way", noConnection});
    }

    void findsFault()
    {
        QFETCH(int, fault);
        QFETCH(QStringList, failures);
        Run &run = m_runs[Fault(fault)];
        QCOMPARE(run.finish(), failures.isEmpty() ? 0 : 1);
        QCOMPARE(run.failures().join('\n'), failures.join('\n'));
    }

    /** Nothing is right there; what counts is that it ends, and cleans what it prints. */
    void endsAnyway_data()
    {
        QTest::addColumn<int>("fault");
        QTest::newRow("rubbish without end") << int(Fault::SendsRubbish);
        QTest::newRow("nothing is accepted") << int(Fault::Hangs);
    }

    void endsAnyway()
    {
        QFETCH(int, fault);
        Run &run = m_runs[Fault(fault)];
        QCOMPARE(run.finish(), 1);
        QVERIFY2(run.failures().size() > 1, qPrintable(run.output));
        QVERIFY(!run.output.contains('\x1b'));
    }

    void writesJunit()
    {
        Run &run = m_runs[Fault::AnswersNothing];
        QCOMPARE(run.finish(), 1);
        QFile file(path(QString::number(int(Fault::AnswersNothing))) + ".xml");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&file);
        int cases = 0;
        QStringList failures;
        while (!xml.atEnd()) {
            xml.readNext();
            cases += xml.isStartElement() && xml.name() == QString("testcase") ? 1 : 0;
            if (xml.isStartElement() && xml.name() == QString("failure"))
                failures += xml.readElementText();
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(cases, int(allChecks().size()));
        QCOMPARE(failures.size(), 1);
        QVERIFY(failures[0].contains("docs/receiver-protocol.md#every-request\n**Answer every"));
    }

    /** What a receiver sent may hold what XML cannot, and characters beyond 16 bits. */
    void junitTexts()
    {
        const QString sent = QString("a\x01\U0001F4FA") + QChar(0xd800);
        ReportLine failed{"f", "s", {}, 1};
        failed.result.faults = QStringList{sent};
        ReportLine skipped{"k", "s", {}, 1};
        skipped.result.skipped = sent;
        QVERIFY(writeJunit(path("texts.xml"), {failed, skipped}, sent));
        QFile file(path("texts.xml"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&file);
        QStringList messages;
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isStartElement() && xml.attributes().hasAttribute("message"))
                messages += xml.attributes().value("message").toString();
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        const QString told = QString::fromUtf8("a\uFFFD\U0001F4FA\uFFFD");
        QCOMPARE(messages, (QStringList{told, told, told}));
    }

    void refuses_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("nothing") << QStringList();
        QTest::newRow("no receiver") << QStringList(path("missing"));
        QTest::newRow("an unknown option") << QStringList({"--fast", path("0")});
        QTest::newRow("no number") << QStringList({"--time-limit", "soon", path("0")});
    }

    void refuses()
    {
        QFETCH(QStringList, arguments);
        Run run;
        run.start(arguments);
        QCOMPARE(run.finish(), 2);
        QVERIFY2(run.output.startsWith("vesprel-receiver-check: "), qPrintable(run.output));
    }

    /** The paragraph that a failure shows; the address is what whoever reads it looks for. */
    void everyCheckHasItsParagraph()
    {
        for (const Check &check : allChecks())
            QVERIFY2(sectionText(check.section).size() > 80, qPrintable(check.name));
        QCOMPARE(sectionAddress("Events: receiver to Vesprel"),
                 QString("docs/receiver-protocol.md#events-receiver-to-vesprel"));
    }

    /** With all that may be asked of it. */
    void desktopReceiverPasses()
    {
        QProcess receiver;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("VESPREL_ROOT", m_folder.path());
        receiver.setProcessEnvironment(environment);
        receiver.start(RECEIVER, {"--player=simulated", "--portal", "http://127.0.0.1:1/",
                                  "--ready", path("ready")});
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(path("ready")), 20000);
        Run run;
        run.start({"--all", "--url", "http://127.0.0.1:1/", path("home/.sock.vesprel")});
        const int status = run.finish();
        receiver.terminate();
        receiver.waitForFinished();
        QVERIFY2(status == 0 && !run.output.contains("# SKIP"), qPrintable(run.output));
    }
};

QTEST_GUILESS_MAIN(TestReceiverCheck)
#include "test_receiver_check.moc"
