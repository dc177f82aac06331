// SPDX-License-Identifier: Apache-2.0
#include "desktop/script/script_report.h"
#include "desktop/script/script_runner.h"

#include <QSignalSpy>
#include <QTest>
#include <QXmlStreamReader>

#include <utility>

namespace {

using Kind = ScriptStep::Kind;

/** A box that keeps what it is asked to do, and answers when the test says so. */
class FakeBox : public BoxControl
{
public:
    void pressKey(const QString &name, const Done &done) override { ask("key " + name, done); }
    void evaluate(const QString &text, const Done &done) override { ask("eval " + text, done); }
    void reload(const std::function<void()> &trigger, const Done &done) override
    {
        trigger();
        ask("reload", done);
    }
    BoxAnswer savePicture(const QString &file) override
    {
        asked += "picture " + file;
        return picture;
    }
    void giveUp() override { m_done = nullptr; }
    QString obstacle() const override { return "the page sleeps"; }

    /** Answers the call that waits. */
    void answer(const BoxAnswer &answer)
    {
        if (const Done done = std::exchange(m_done, nullptr))
            done(answer);
    }

    QStringList asked;
    BoxAnswer picture;

private:
    void ask(const QString &what, const Done &done)
    {
        asked += what;
        m_done = done;
    }

    Done m_done;
};

/** A script that runs on a fake box. */
struct Run
{
    explicit Run(const char *text)
        : script(parseScript(text))
        , runner(script, box)
        , finished(&runner, &ScriptRunner::finished)
    {
        QObject::connect(&runner, &ScriptRunner::message, &runner, [this](const QString &line) {
            printed += line;
            runner.notePrinted(line);
        });
        QObject::connect(&runner, &ScriptRunner::commandReached, &runner,
                         [this](const ConsoleCommand &command) { commands += command.event; });
        runner.start();
    }

    QString failure() const
    {
        return runner.result().steps.isEmpty() ? QString() : runner.result().steps.last().failure;
    }

    FakeBox box;
    ParsedScript script;
    ScriptRunner runner;
    QSignalSpy finished;
    QStringList printed;
    QVector<Event> commands;
};

} // namespace

/** Scripts: what their lines say, how they run, and what is reported of them. */
class TestScript : public QObject
{
    Q_OBJECT

private slots:
    void lines_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("ms");
        QTest::addColumn<int>("times");
        const auto row = [](const char *line, Kind kind, const char *text, int ms, int times = 1) {
            QTest::newRow(line) << line << int(kind) << text << ms << times;
        };
        row(" usb mount \r", Kind::Command, "", 30000);
        row("wait 1.5", Kind::WaitTime, "1.5", 1500);
        row("wait for play /a", Kind::WaitForText, "play /a", 30000);
        row("expect play  start within 0.5", Kind::Expect, "play  start", 500);
        row("expect within 3", Kind::Expect, "", -1);
        row("expect eval a.b within 2", Kind::ExpectEval, "a.b", 2000);
        row("eval f('x within 2')", Kind::Eval, "f('x within 2')", 30000);
        row("key channel up", Kind::Key, "channel up", 30000);
        row("key down 3 within 1", Kind::Key, "down", 1000, 3);
        row("key 3", Kind::Key, "3", 30000);
        row("key 3 2", Kind::Key, "3", 30000, 2);
        row("screenshot a within b.png", Kind::Screenshot, "a within b.png", 30000);
        row("reload within 9", Kind::Reload, "", 9000);
        row("stay", Kind::Stay, "", 30000);
    }

    void lines()
    {
        QFETCH(QString, line);
        QFETCH(int, ms);
        const ParsedScript script = parseScript(line);
        QCOMPARE(script.failure.isEmpty(), ms >= 0);
        if (ms < 0)
            return;
        QCOMPARE(script.steps.size(), 1);
        QTEST(int(script.steps[0].kind), "kind");
        QTEST(script.steps[0].text, "text");
        QCOMPARE(script.steps[0].ms, ms);
        QTEST(script.steps[0].times, "times");
    }

    void badLines_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("failure");
        const auto row = [](const char *text, const char *failure) {
            QTest::newRow(text) << text << failure;
        };
        row("usb mount\n# x\nusb mounted", "3: Unknown command: usb mounted (try help)");
        row("rec error", "1: Usage: rec error N");
        for (const char *line : {"wait x", "wait -1", "wait nan", "wait 1e9"})
            QTest::newRow(line) << line << "1: Usage: wait SECONDS, or wait for TEXT";
        row("wait", "1: Usage: wait SECONDS");
        row("wait for", "1: Usage: wait for TEXT [within SECONDS]");
        row("expect play within soon", "1: \"soon\" is no number of seconds");
        row("reload now", "1: Usage: reload [within SECONDS]");
        row("key down 0", "1: A key is pressed 1 to 1000 times");
        row("limit x", "1: Usage: limit SECONDS");
        row("test", "1: Usage: test NAME");
        QVERIFY(parseScript("key hello").failure.startsWith("1: The remote has no key \"hello\""));
        QVERIFY(parseScript("expect /(/").failure.startsWith("1: /(/ is no regular expression"));
    }

    void badLines()
    {
        QFETCH(QString, text);
        const ParsedScript script = parseScript(text);
        QTEST(script.failure, "failure");
        QVERIFY(script.steps.isEmpty());
    }

    void limitHoldsForWhatIsBelow()
    {
        const ParsedScript script = parseScript("wait for a\nlimit 2\nwait for b\nlimit 3\nkey ok");
        QCOMPARE(script.steps[0].ms, 30000);
        QCOMPARE(script.steps[1].ms, 2000);
        QCOMPARE(script.steps[2].ms, 3000);
    }

    void waits()
    {
        Run run("usb mount\nwait 0.02\npower on\nwait for sent: x\nusb unmount");
        QCOMPARE(run.commands, QVector<Event>{Event::UsbMounted});
        QTRY_COMPARE(run.commands.size(), 2);
        run.runner.notePrinted("play sent: x");
        QVERIFY(!run.finished.wait(20));
        run.runner.notePrinted("play\nsent: xyz");
        QTRY_COMPARE(run.finished.count(), 1);
        QCOMPARE(run.commands.last(), Event::UsbUnmounted);
    }

    /** What was printed since the last action, in any order, each line once. */
    void expects()
    {
        Run run("key ok\nexpect sent: play\nexpect /^play/ within 1\nexpect play within 0.05");
        run.runner.notePrinted("play before the key was seen");
        run.box.answer({});
        run.runner.notePrinted("sent: play start");
        QTRY_COMPARE(run.finished.count(), 1);
        QCOMPARE(run.failure(), "not printed within 0.05 s");
        QCOMPARE(run.runner.result().steps.size(), 4);

        Run again("expect play within 5\nusb mount\nexpect play within 0.05");
        again.runner.notePrinted("play\nplay");
        QTRY_COMPARE(again.finished.count(), 1);
        QVERIFY2(!again.failure().isEmpty(), "A line printed before the command met it.");
    }

    void values()
    {
        Run run("eval a\nexpect value: 7\neval b\nexpect value: 7 within 0.05");
        run.box.answer({{}, "7", true});
        QTRY_COMPARE(run.box.asked, (QStringList{"eval a", "eval b"}));
        QCOMPARE(run.printed, QStringList{"value: 7"});
        run.box.answer({{}, "x\n8", true});
        QCOMPARE(run.printed.last(), "value: x\\x0a8");
        QTRY_COMPARE(run.failure(), "not printed within 0.05 s");
    }

    void expressionsAreAskedUntilTheyAreTrue()
    {
        Run run("expect eval a\nexpect eval b within 0.3");
        run.box.answer({"ReferenceError", {}, false});
        QTRY_COMPARE(run.box.asked.size(), 2);
        run.box.answer({{}, "1", true});
        QCOMPARE(run.box.asked.last(), "eval b");
        run.box.answer({{}, "0", false});
        QTRY_COMPARE(run.failure(), "did not become true within 0.3 s: it is 0");
    }

    void failures_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("failure");
        QTest::newRow("exception") << QByteArray("eval a") << "TypeError"
                                   << "TypeError";
        QTest::newRow("no answer") << QByteArray("eval a within 0.05") << ""
                                   << "not done within 0.05 s: the page sleeps";
        QTest::newRow("key") << QByteArray("key down 2") << "gone"
                             << "gone";
        QTest::newRow("reload") << QByteArray("reload") << "did not load"
                                << "did not load";
        QTest::newRow("picture") << QByteArray("screenshot x") << ""
                                 << "no display";
    }

    void failures()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, answer);
        Run run(("limit 5\nusb mount\nwait 0\n" + text + "\nusb unmount").constData());
        run.box.picture.failure = "no display";
        QTRY_VERIFY(!run.box.asked.isEmpty());
        if (!answer.isEmpty())
            run.box.answer({answer, {}, false});
        QTRY_COMPARE(run.finished.count(), 1);
        QTEST(run.failure(), "failure");
        QVERIFY(!run.commands.contains(Event::UsbUnmounted));
        // An answer that comes too late changes nothing.
        run.box.answer({});
        QCOMPARE(run.finished.count(), 1);
    }

    void keysArePressedOneAfterTheOther()
    {
        Run run("key down 2\nquit\nkey ok");
        QCOMPARE(run.box.asked, QStringList{"key down"});
        run.box.answer({});
        run.box.answer({});
        QCOMPARE(run.box.asked, (QStringList{"key down", "key down"}));
        QCOMPARE(run.finished.count(), 1);
        QVERIFY(!run.runner.result().hasFailed());
    }

    void aborts()
    {
        Run run("wait 60\nusb mount");
        run.runner.abort("the program has ended");
        run.runner.abort("again");
        QCOMPARE(run.finished.count(), 1);
        QCOMPARE(run.failure(), "the program has ended");
        QCOMPARE(failureLine("s%2F.txt", run.script, run.runner.result()),
                 "s%2F.txt:1: wait 60: the program has ended");
    }

    void report_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QStringList>("cases");
        QTest::newRow("each step")
            << QByteArray("usb mount\neval a\nexpect <&\">\nkey ok")
            << QStringList{"2: eval a passed", "3: expect <&\"> failed", "4: key ok skipped"};
        QTest::newRow("tests") << QByteArray("test a\neval a\ntest <b>\nexpect x\nkey ok\ntest c")
                               << QStringList{"a passed", "<b> failed", "c skipped"};
        QTest::newRow("before the tests") << QByteArray("eval a\ntest b\nexpect x")
                                          << QStringList{"dir/my.script passed", "b failed"};
    }

    void report()
    {
        QFETCH(QByteArray, text);
        Run run(text.constData());
        run.box.answer({});
        // What XML cannot hold, and a text that looks like its end.
        run.runner.notePrinted(QString("]]> \x01 %1 \xF0").arg(QChar(0xd800)));
        run.runner.abort(QString("odd %1").arg(QChar(0xffff)));
        QXmlStreamReader xml(
            junitReport("dir/my.script", run.script, run.runner.result(), QDateTime()));
        QStringList cases;
        QHash<QString, int> counts;
        while (!xml.atEnd()) {
            xml.readNext();
            if (!xml.isStartElement())
                continue;
            ++counts[xml.name().toString()];
            if (xml.name() == "testcase")
                cases += xml.attributes().value("name").toString() + " passed";
            else if (xml.name() == "failure" || xml.name() == "skipped")
                cases.last().replace(" passed", xml.name() == "failure" ? " failed" : " skipped");
            if (xml.name() == "testsuite")
                QCOMPARE(xml.attributes().value("failures").toString(), "1");
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QTEST(cases, "cases");
        QCOMPARE(counts["testsuite"], 1);
    }
};

QTEST_GUILESS_MAIN(TestScript)
#include "test_script.moc"
