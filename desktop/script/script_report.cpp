// SPDX-License-Identifier: Apache-2.0
#include "desktop/script/script_report.h"

#include "desktop/xml_text.h"

#include <QFileInfo>
#include <QHash>
#include <QXmlStreamWriter>

#include <utility>

namespace {

using Kind = ScriptStep::Kind;

struct Case
{
    QString name;
    qint64 ms = 0;
    int reached = 0; ///< How many of its steps have a result.
    const StepResult *failed = nullptr;
};

bool canFail(Kind kind)
{
    return kind != Kind::Command && kind != Kind::WaitTime && kind != Kind::Stay;
}

QString secondsText(qint64 ms) { return QString::number(double(ms) / 1000.0, 'f', 3); }

/** The test cases of a script that names them. */
QVector<Case> namedCases(const QString &name, const ParsedScript &script)
{
    QVector<Case> cases;
    for (const QString &testCase : script.testCases)
        cases += Case{testCase.isEmpty() ? name : testCase, 0, 0, nullptr};
    return cases;
}

QVector<Case> readCases(const QString &name, const ParsedScript &script, const ScriptResult &result)
{
    const bool isNamed = script.testCases.size() > 1;
    QVector<Case> cases = isNamed ? namedCases(name, script) : QVector<Case>();
    QVector<int> steps(cases.size(), 0);
    qint64 between = 0; // What the steps took that are no case of their own.
    for (int index = 0; index < script.steps.size(); ++index) {
        const ScriptStep &step = script.steps[index];
        const StepResult *reached = index < result.steps.size() ? &result.steps.at(index) : nullptr;
        const bool isCase = canFail(step.kind) || (reached && !reached->failure.isEmpty());
        if (!isNamed && isCase) {
            cases += Case{QString("%1: %2").arg(step.line).arg(step.source), 0, 0, nullptr};
            steps += 0;
        }
        between += reached ? reached->ms : 0;
        if (!isNamed && !isCase)
            continue;
        Case &current = isNamed ? cases[step.testCase] : cases.last();
        ++steps[isNamed ? step.testCase : cases.size() - 1];
        current.ms += std::exchange(between, 0);
        current.reached += reached ? 1 : 0;
        if (reached && !reached->failure.isEmpty())
            current.failed = reached;
    }
    // Nothing may stand before the first "test".
    if (isNamed && steps.first() == 0)
        cases.removeFirst();
    return cases;
}

QString placeOf(const QString &name, const ScriptStep &step)
{
    return name + ':' + QString::number(step.line);
}

void writeCase(QXmlStreamWriter &xml, const Case &testCase, const QString &name,
               const ParsedScript &script)
{
    xml.writeStartElement("testcase");
    xml.writeAttribute("classname", xmlText(QFileInfo(name).completeBaseName()));
    xml.writeAttribute("name", xmlText(testCase.name));
    xml.writeAttribute("time", secondsText(testCase.ms));
    if (const StepResult *failed = testCase.failed) {
        const ScriptStep &step = script.steps.at(failed->step);
        xml.writeStartElement("failure");
        xml.writeAttribute("type", xmlText(step.source.section(' ', 0, 0)));
        xml.writeAttribute("message", xmlText(failed->failure));
        xml.writeCharacters(xmlText(QString("%1: %2\n%3\n%4")
                                        .arg(placeOf(name, step), step.source, failed->failure,
                                             failed->output.join('\n'))));
        xml.writeEndElement();
    } else if (testCase.reached == 0) {
        xml.writeEmptyElement("skipped");
    }
    xml.writeEndElement();
}

} // namespace

QByteArray junitReport(const QString &name, const ParsedScript &script, const ScriptResult &result,
                       const QDateTime &start)
{
    const QVector<Case> cases = readCases(name, script, result);
    qint64 ms = 0;
    int failures = 0;
    int skipped = 0;
    for (const Case &testCase : cases) {
        ms += testCase.ms;
        failures += testCase.failed ? 1 : 0;
        skipped += !testCase.failed && testCase.reached == 0 ? 1 : 0;
    }
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement("testsuites");
    xml.writeStartElement("testsuite");
    xml.writeAttribute("name", xmlText(QFileInfo(name).completeBaseName()));
    xml.writeAttribute("tests", QString::number(cases.size()));
    xml.writeAttribute("failures", QString::number(failures));
    xml.writeAttribute("errors", "0");
    xml.writeAttribute("skipped", QString::number(skipped));
    xml.writeAttribute("time", secondsText(ms));
    xml.writeAttribute("timestamp", start.toString("yyyy-MM-ddTHH:mm:ss"));
    for (const Case &testCase : cases)
        writeCase(xml, testCase, name, script);
    xml.writeEndDocument();
    return bytes;
}

QString failureLine(const QString &name, const ParsedScript &script, const ScriptResult &result)
{
    if (!result.hasFailed())
        return {};
    const ScriptStep &step = script.steps.at(result.steps.last().step);
    return QString("%1: %2: %3").arg(placeOf(name, step), step.source, result.steps.last().failure);
}
