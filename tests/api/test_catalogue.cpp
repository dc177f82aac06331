// SPDX-License-Identifier: Apache-2.0
#include "api/vesprelv2.h"
#include "platform/box_paths.h"
#include "tests/support/log_capture.h"

#include <QFile>
#include <QLoggingCategory>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QTemporaryDir>
#include <QTest>
#include <QWebFrame>
#include <QWebView>

namespace {

/** A row of data/catalogue.txt: the interface as portals know it, in its order. */
struct CatalogueRow
{
    int index;
    QString kind; ///< signal, slot, or stub: a slot that only writes its record
    QString returnType;
    QString signature;
    QString record; ///< of a stub: its record without values, then what values follow
    QString answer; ///< of a stub: its fixed answer as JSON, "-" for none

    QString name() const { return signature.section('(', 0, 0); }

    QStringList argumentTypes() const
    {
        const QString list = signature.section('(', 1).chopped(1);
        return list.isEmpty() ? QStringList() : list.split(',');
    }
};

QList<CatalogueRow> readCatalogue()
{
    QList<CatalogueRow> rows;
    QFile file(TEST_DATA_DIR "/catalogue.txt");
    if (!file.open(QIODevice::ReadOnly))
        return rows;
    file.readLine();
    while (!file.atEnd()) {
        const QStringList cells = QString::fromUtf8(file.readLine()).chopped(1).split('|');
        rows.append({cells[0].toInt(), cells[1], cells[2], cells[3], cells[4], cells[5]});
    }
    return rows;
}

/** An argument of each type, as a script writes it and as a record shows it. */
QString sampleArgument(const QString &type)
{
    if (type == "QString")
        return "\"a \\\"b\\\"\"";
    return type == "bool" ? "true" : "7";
}

QStringList sampleArguments(const CatalogueRow &row)
{
    QStringList samples;
    for (const QString &type : row.argumentTypes())
        samples.append(sampleArgument(type));
    return samples;
}

} // namespace

/** The shape of gSTB against the catalogue, and every stub through real calls of a page. */
class TestCatalogue : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_root;
    std::unique_ptr<VesprelV2> m_gSTB;
    std::unique_ptr<QWebView> m_view;

    QVariant evaluate(const QString &script)
    {
        return m_view->page()->mainFrame()->evaluateJavaScript(script);
    }

private slots:
    void initTestCase()
    {
        BoxPaths::setRoot(m_root.path());
        m_gSTB = std::make_unique<VesprelV2>();
        m_view = std::make_unique<QWebView>();
        m_view->page()->mainFrame()->addToJavaScriptWindowObject("gSTB", m_gSTB.get());
    }

    void cleanupTestCase() { m_view.reset(); }

    void shape()
    {
        const QMetaObject &meta = VesprelV2::staticMetaObject;
        QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
        const QList<CatalogueRow> rows = readCatalogue();
        QCOMPARE(rows.size(), 255);
        QCOMPARE(meta.methodCount() - meta.methodOffset(), rows.size());
        for (const CatalogueRow &row : rows) {
            const QMetaMethod method = meta.method(meta.methodOffset() + row.index);
            const QString found =
                QString("%1 %2 %3 %4")
                    .arg(row.index)
                    .arg(method.typeName(),
                         method.methodType() == QMetaMethod::Signal ? "signal" : "slot",
                         QString(method.methodSignature()));
            QCOMPARE(found, QString("%1 %2 %3 %4")
                                .arg(row.index)
                                .arg(row.returnType, row.kind == "signal" ? "signal" : "slot",
                                     row.signature));
            QCOMPARE(method.access(), QMetaMethod::Public);
        }
    }

    void properties()
    {
        const QMetaObject &meta = VesprelV2::staticMetaObject;
        QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 2);
        for (const auto &[index, name] : {std::pair(0, "busy"), std::pair(1, "IsEmulator")}) {
            const QMetaProperty property = meta.property(meta.propertyOffset() + index);
            QCOMPARE(property.name(), name);
            QCOMPARE(property.typeName(), "bool");
            QVERIFY(!property.isWritable());
        }
        LogCapture log;
        QCOMPARE(evaluate("gSTB.busy = true; gSTB.busy"), QVariant(false));
        QCOMPARE(evaluate("gSTB.IsEmulator"), QVariant(true));
        QCOMPARE(log.take(), QStringList({"isBusy ()", "IsEmulator (): true"}));
    }

    void stubs_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("record");
        for (const CatalogueRow &row : readCatalogue()) {
            if (row.kind != "stub")
                continue;
            const QStringList arguments = sampleArguments(row);
            const QString call = QString("gSTB.%1(%2)").arg(row.name(), arguments.join(", "));
            const QString answer = row.answer == "charset" ? arguments.first() : row.answer;
            QString record = row.record;
            record.replace("+args", arguments.join(' ')).replace("+answer", answer);
            QTest::newRow(qPrintable(row.signature)) << call << answer << record;
        }
    }

    /** Each stub gives its fixed answer, writes its one record, and asks nobody for anything. */
    void stubs()
    {
        QFETCH(QString, call);
        QFETCH(QString, answer);
        QFETCH(QString, record);
        LogCapture log;
        const QVariant result = evaluate(call + "; JSON.stringify([" + call + "])");
        QCOMPARE(result.toString(), answer == "-" ? "[null]" : "[" + answer + "]");
        QCOMPARE(log.take(), QStringList({record, record}));
    }

    /** A page cannot destroy the object, and too few arguments never reach it. */
    void hostileCalls()
    {
        evaluate("gSTB.deleteLater()");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(evaluate("gSTB.GetTeletextPID()"), QVariant(8192.0));
        QCOMPARE(evaluate("try { gSTB.SetSpeed(); 'called' } catch (e) { 'refused' }"),
                 QVariant("refused"));
        QCOMPARE(evaluate("gSTB.GetSmbServers(undefined)"), QVariant(""));
    }

    /** With its category switched off a record is not even put together. */
    void silencedRecords()
    {
        LogCapture log;
        QLoggingCategory::setFilterRules("default.debug=false");
        m_gSTB->SetSpeed(1);
        QLoggingCategory::setFilterRules("");
        QCOMPARE(log.take(), QStringList());
    }
};

QTEST_MAIN(TestCatalogue)
#include "test_catalogue.moc"
