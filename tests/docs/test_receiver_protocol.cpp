// SPDX-License-Identifier: Apache-2.0
#include "enigma2/messages.h"

#include <QFile>
#include <QTest>

namespace {

QString sectionOf(const QString &document, const QString &heading)
{
    const int start = document.indexOf("## " + heading);
    return document.mid(start, document.indexOf("\n## ", start + 1) - start);
}

/** The rows of a section's table as one line a message, each cell between bars. */
QStringList documented(const QString &section)
{
    QStringList rows;
    const QStringList lines = section.split('\n');
    for (const QString &line : lines) {
        if (line.startsWith("| 1"))
            rows += line;
    }
    return rows;
}

/** How the document says what a payload of this form is; more may follow. */
const char *formText(PayloadForm form)
{
    switch (form) {
    case PayloadForm::Nothing: return "-";
    case PayloadForm::Integer: return "int";
    case PayloadForm::OnOff: return "int: 1 or 0";
    case PayloadForm::TwoIntegers: return "two ints";
    case PayloadForm::Area: return "four ints: x, y, width, height";
    case PayloadForm::Latin1:
    case PayloadForm::Utf8: return "text";
    case PayloadForm::Json: return "JSON: ";
    }
    return "";
}

QString printed(const char *words)
{
    return '`' + QString(words).replace("%1", "...").replace("%2", "...") + '`';
}

/**
 * What a row of the document must be, with the second cell, which is prose for some, taken from
 * the document, as well as the end of the payload's cell.
 */
QString expectedRow(int number, PayloadForm form, const QStringList &lastCells,
                    const QString &documentedRow, const QString &meaning = {})
{
    const QStringList cells = documentedRow.mid(2, qMax(0, documentedRow.size() - 4)).split(" | ");
    QString payload = formText(form);
    const QString shown = cells.value(2);
    if (shown.startsWith(payload) && (form == PayloadForm::Nothing) == (shown == "-"))
        payload = shown;
    return QString("| %1 | %2 | %3 | %4 |")
        .arg(QString::number(number), meaning.isEmpty() ? cells.value(1) : meaning, payload,
             lastCells.join(" | "));
}

} // namespace

/** docs/receiver-protocol.md against the table of messages, both ways. */
class TestReceiverProtocol : public QObject
{
    Q_OBJECT

private:
    QString m_document;

private slots:
    void initTestCase()
    {
        QFile file(DOCS_DIR "/receiver-protocol.md");
        QVERIFY(file.open(QIODevice::ReadOnly));
        m_document = QString::fromUtf8(file.readAll());
    }

    void commands()
    {
        const QStringList rows = documented(sectionOf(m_document, "Commands: "));
        QStringList expected;
        for (const CommandRow &row : commandRows)
            expected += expectedRow(int(row.command), row.form, {printed(row.words)},
                                    rows.value(expected.size()));
        QCOMPARE(rows, expected);
    }

    void events()
    {
        const QStringList rows = documented(sectionOf(m_document, "Events: "));
        QStringList expected;
        for (const EventRow &row : eventRows) {
            const QString console =
                QString("%1 %2").arg(row.consoleWords, row.consoleArguments).trimmed();
            expected +=
                expectedRow(int(row.event), row.form, {printed(row.words), '`' + console + '`'},
                            rows.value(expected.size()));
        }
        QCOMPARE(rows, expected);
    }

    void answers()
    {
        const QStringList rows = documented(sectionOf(m_document, "Answers: "));
        QStringList expected;
        for (const AnswerRow &row : answerRows)
            expected += expectedRow(int(row.event), row.form, {printed(row.words)},
                                    rows.value(expected.size()), QString::number(int(row.request)));
        QCOMPARE(rows, expected);
    }

    /** Two messages of one direction with the same number would leave one of them unheard. */
    void numbersAreUnique()
    {
        for (const CommandRow &row : commandRows)
            QCOMPARE(findCommand(int(row.command)), &row);
        for (const EventRow &row : eventRows)
            QCOMPARE(findEvent(int(row.event)), &row);
        for (const AnswerRow &row : answerRows) {
            QCOMPARE(findAnswer(int(row.event)), &row);
            QVERIFY(!findEvent(int(row.event)));
        }
    }
};

QTEST_APPLESS_MAIN(TestReceiverProtocol)
#include "test_receiver_protocol.moc"
