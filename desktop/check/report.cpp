// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/report.h"

#include "desktop/check/document.h"
#include "desktop/xml_text.h"

#include <QSaveFile>
#include <QXmlStreamWriter>

#include <algorithm>

namespace {

QString indented(const QString &text, const QString &indent)
{
    return indent + QString(text).replace('\n', '\n' + indent);
}

/** A text between quotes as YAML reads it. */
QString quoted(const QString &text) { return '\'' + QString(text).replace('\'', "''") + '\''; }

QString seconds(qint64 milliseconds)
{
    return QString::number(double(milliseconds) / 1000, 'f', 3);
}

} // namespace

TapReport::TapReport(std::FILE *stream)
    : m_stream(stream)
{
    print("TAP version 13");
}

void TapReport::add(const ReportLine &line)
{
    m_lines.push_back(line);
    const bool hasFailed = !line.result.faults.isEmpty();
    QString text =
        QString("%1 %2 - %3").arg(hasFailed ? "not ok" : "ok").arg(m_lines.size()).arg(line.name);
    if (!line.result.skipped.isEmpty()) {
        ++m_skipped;
        text += " # SKIP " + line.result.skipped;
    }
    print(text);
    if (!hasFailed)
        return;
    ++m_failed;
    print("  ---\n  seen:");
    for (const QString &fault : line.result.faults)
        print("    - " + quoted(fault));
    print("  document: " + quoted(sectionAddress(line.section)));
    print("  paragraph: |\n" + indented(sectionText(line.section), "    "));
    print("  ...");
}

void TapReport::bailOut(const QString &reason)
{
    m_cutShort = reason;
    print("Bail out! " + reason);
}

void TapReport::finish()
{
    if (m_cutShort.isEmpty())
        print(QString("1..%1").arg(m_lines.size()));
    const int passed = static_cast<int>(m_lines.size()) - m_failed - m_skipped;
    print(QString("# %1 passed, %2 failed, %3 skipped").arg(passed).arg(m_failed).arg(m_skipped));
}

void TapReport::print(const QString &text)
{
    std::fprintf(m_stream, "%s\n", text.toUtf8().constData());
    std::fflush(m_stream);
}

bool writeJunit(const QString &fileName, const std::vector<ReportLine> &lines,
                const QString &cutShort)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const auto count = [&lines](auto predicate) {
        return QString::number(std::count_if(lines.begin(), lines.end(), predicate));
    };
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement("testsuite");
    xml.writeAttribute("name", "vesprel-receiver-check");
    xml.writeAttribute("tests", QString::number(lines.size() + (cutShort.isEmpty() ? 0U : 1U)));
    xml.writeAttribute("errors", cutShort.isEmpty() ? "0" : "1");
    xml.writeAttribute("failures",
                       count([](const ReportLine &line) { return !line.result.faults.isEmpty(); }));
    xml.writeAttribute(
        "skipped", count([](const ReportLine &line) { return !line.result.skipped.isEmpty(); }));
    for (const ReportLine &line : lines) {
        xml.writeStartElement("testcase");
        xml.writeAttribute("classname", "receiver." + line.section);
        xml.writeAttribute("name", line.name);
        xml.writeAttribute("time", seconds(line.milliseconds));
        if (!line.result.skipped.isEmpty()) {
            xml.writeEmptyElement("skipped");
            xml.writeAttribute("message", xmlText(line.result.skipped));
        } else if (!line.result.faults.isEmpty()) {
            xml.writeStartElement("failure");
            xml.writeAttribute("message", xmlText(line.result.faults.first()));
            xml.writeCharacters(xmlText(line.result.faults.join('\n')) + "\n\n" +
                                sectionAddress(line.section) + '\n' + sectionText(line.section));
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
    if (!cutShort.isEmpty()) {
        xml.writeStartElement("testcase");
        xml.writeAttribute("classname", "receiver");
        xml.writeAttribute("name", "all checks are made");
        xml.writeEmptyElement("error");
        xml.writeAttribute("message", xmlText(cutShort));
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return file.commit();
}
