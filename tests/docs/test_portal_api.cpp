// SPDX-License-Identifier: Apache-2.0
#include "api/vesprelv2.h"
#include "objects/placeholders.h"
#include "objects/player.h"
#include "objects/player_manager.h"
#include "objects/pvr_manager.h"
#include "objects/web_window.h"
#include "objects/window_manager.h"
#include "shell/pages/injected_script.h"
#include "shell/pages/page_statement.h"

#include <QFile>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QTest>
#include <QWebFrame>
#include <QWebPage>

#include <functional>

namespace {

/** A row of a table in the document: the section it stands in, the table's kind and its cells. */
struct Row
{
    QString section; ///< The second-level heading, for objects their JavaScript name.
    QString table;   ///< What the table's first column is headed.
    QStringList cells;

    /** A cell without its code marks. */
    QString cell(int column) const { return QString(cells.value(column)).remove('`'); }
};

QStringList linesOf(const char *path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", path);
    return QString::fromUtf8(file.readAll()).split('\n');
}

QList<Row> readDocument()
{
    QList<Row> rows;
    QString section;
    QString table;
    for (const QString &line : linesOf(DOCS_DIR "/portal-api.md")) {
        if (line.startsWith("## "))
            section = line.mid(3);
        if (!line.startsWith("| ")) {
            if (!line.startsWith("|-"))
                table.clear();
            continue;
        }
        const QStringList cells = line.mid(2).chopped(2).split(" | ");
        if (table.isEmpty())
            table = cells.first();
        else
            rows.append({section, table, cells});
    }
    return rows;
}

QStringList stubsOfTheCatalogue()
{
    QStringList stubs;
    for (const QString &line : linesOf(TEST_DATA_DIR "/catalogue.txt")) {
        const QStringList cells = line.split('|');
        if (cells.value(1) == "stub")
            stubs.append(cells.value(3));
    }
    return stubs;
}

QStringList membersOf(const QMetaObject &meta)
{
    QStringList members;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.access() != QMetaMethod::Public)
            continue;
        const char *table =
            method.methodType() == QMetaMethod::Signal ? "Internal signal" : "Method";
        members.append(QString("%1: %2 -> %3")
                           .arg(table, QString(method.methodSignature()), method.typeName()));
    }
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        members.append(QString("Property: %1 -> %2").arg(property.name(), property.typeName()));
    }
    return members;
}

/** The rows on which document and program disagree, a line each; empty when they agree. */
QString disagreement(const QStringList &documented, QStringList existing)
{
    QString text;
    for (const QString &row : documented) {
        if (!existing.removeOne(row))
            text += "\ndocumented, but not there or a second time: " + row;
    }
    for (const QString &row : existing)
        text += "\nnot documented: " + row;
    return text;
}

const QList<QPair<QString, const QMetaObject *>> &publishedObjects()
{
    static const QList<QPair<QString, const QMetaObject *>> objects = {
        {"gSTB", &VesprelV2::staticMetaObject},
        {"stbPlayerManager", &stbPlayerManager::staticMetaObject},
        {"stbPlayerManager.autoFrameRate", &stbPlayerManager::frameRateConfig::staticMetaObject},
        {"stbPlayerManager.RTSP", &stbPlayerManager::RTSPConfig::staticMetaObject},
        {"stbPlayer", &stbPlayer::staticMetaObject},
        {"pvrManager", &PvrManager::staticMetaObject},
        {"timeShift", &stbTimeShift::staticMetaObject},
        {"stbStorage", &stbStorage::staticMetaObject},
        {"stbWindowMgr", &stbWindowMgr::staticMetaObject},
        {"stbWebWindow", &stbWebWindow::staticMetaObject},
    };
    return objects;
}

} // namespace

/** The reference for portal developers tells of every member that a page can reach, and no other.
 */
class TestPortalApi : public QObject
{
    Q_OBJECT

private:
    QList<Row> m_rows;

    QStringList select(const QString &table, const std::function<QString(const Row &)> &text) const
    {
        QStringList selected;
        for (const Row &row : m_rows) {
            if (row.table == table)
                selected.append(text(row));
        }
        return selected;
    }

private slots:
    void initTestCase() { m_rows = readDocument(); }

    void members_data()
    {
        QTest::addColumn<QStringList>("existing");
        for (const auto &[name, meta] : publishedObjects())
            QTest::newRow(qPrintable(name)) << membersOf(*meta);
    }

    void members()
    {
        QFETCH(QStringList, existing);
        QStringList documented;
        for (const Row &row : m_rows) {
            const bool isMember =
                row.table == "Method" || row.table == "Property" || row.table == "Internal signal";
            if (isMember && row.section == QTest::currentDataTag())
                documented.append(row.table + ": " + row.cell(0) + " -> " + row.cell(1));
        }
        const QString text = disagreement(documented, existing);
        QVERIFY2(text.isEmpty(), qPrintable(text));
    }

    /** No member may hide under a heading that is no object, nor behind an unknown kind. */
    void headingsAndKinds()
    {
        QStringList objects = {"stbDownloadManager"};
        for (const auto &[name, meta] : publishedObjects())
            objects.append(name);
        const QStringList tables = {"Method", "Function", "Property", "Internal signal"};
        const QStringList kinds = {"live", "kept", "fixed", "stub"};
        for (const Row &row : m_rows) {
            if (!tables.contains(row.table))
                continue;
            QVERIFY2(objects.contains(row.section), qPrintable(row.section + ": " + row.cell(0)));
            if (row.table == "Method" || row.table == "Function")
                QVERIFY2(kinds.contains(row.cell(2)), qPrintable(row.cells.join(" | ")));
            QVERIFY2(!row.cells.last().isEmpty(), qPrintable(row.cell(0)));
        }
    }

    void stubs()
    {
        QStringList documented;
        for (const Row &row : m_rows) {
            if (row.section == "gSTB" && row.table == "Method" && row.cell(2) == "stub")
                documented.append(row.cell(0));
        }
        const QString text = disagreement(documented, stubsOfTheCatalogue());
        QVERIFY2(text.isEmpty(), qPrintable(text));
    }

    /** What the box's script makes, each function called as a portal calls it. */
    void scriptFunctions()
    {
        const QStringList documented = select("Function", [](const Row &row) {
            return row.section + '.' + row.cell(0).section('(', 0, 0) + " -> " + row.cell(1);
        });
        QWebPage page;
        QWebFrame *frame = page.mainFrame();
        frame->evaluateJavaScript("var gSTB = {}, stbPlayer = {}, stbPlayerManager = {};"
                                  "['Debug', 'PlayConfig', 'Stop', 'Pause', 'Continue',"
                                  " 'SetViewport'].forEach(function (name) {"
                                  "  gSTB[name] = function () {}; });");
        frame->evaluateJavaScript(injectedScript("shim.js").value_or(QString()));
        const QVariant made = frame->evaluateJavaScript(
            "var made = [];"
            "['stbPlayer', 'stbDownloadManager'].forEach(function (object) {"
            "  Object.keys(window[object]).forEach(function (name) {"
            "    var answer = window[object][name]({}, {});"
            "    made.push(object + '.' + name + ' -> ' + JSON.stringify(answer)); }); });"
            "made");
        const QString text = disagreement(documented, made.toStringList());
        QVERIFY2(text.isEmpty(), qPrintable(text));
    }

    void statements()
    {
        QStringList raised = {
            PageStatement::playStarted,        PageStatement::playEnded,
            PageStatement::audioTracksChanged, PageStatement::subtitleTracksChanged,
            PageStatement::usbMounted,         PageStatement::usbUnmounted,
            PageStatement::firstPlay,          PageStatement::portalLoaded};
        for (const auto code : {PageStatement::Recording::Finished, PageStatement::Recording::Error,
                                PageStatement::Recording::Started})
            raised.append(PageStatement::recording(code));
        const QStringList documented = select("Code", [](const Row &row) { return row.cell(1); });
        const QString text = disagreement(documented, raised);
        QVERIFY2(text.isEmpty(), qPrintable(text));
        for (const Row &row : m_rows) {
            if (row.table == "Code")
                QVERIFY2(row.cell(1).contains(row.cell(0)), qPrintable(row.cell(0)));
        }
    }
};

QTEST_MAIN(TestPortalApi)
#include "test_portal_api.moc"
