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
#include "tests/support/files.h"
#include "tests/support/gstb_page.h"

#include <QFile>
#include <QMap>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QRegularExpression>
#include <QTest>
#include <QWebFrame>
#include <QWebPage>

#include <algorithm>
#include <functional>
#include <memory>

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

/** An argument of each type that a signature names. */
QStringList sampleArguments(const QString &signature)
{
    QStringList samples;
    const QString types = signature.section('(', 1).chopped(1);
    for (const QString &type : types.split(',', Qt::SkipEmptyParts))
        samples.append(type == "QString" ? "\"a\"" : type == "bool" ? "true" : "7");
    return samples;
}

/** The objects beside gSTB, in the same page. */
struct Objects
{
    explicit Objects(GstbPage &page)
        : players(nullptr, &page.gSTB)
    {
        page.publish("stbPlayerManager", players);
        page.publish("timeShift", timeShift);
        page.publish("stbStorage", storage);
        page.publish("stbWindowMgr", windows);
        page.publish("stbWebWindow", webWindow);
    }

    stbPlayerManager players;
    stbTimeShift timeShift;
    stbStorage storage;
    stbWindowMgr windows;
    stbWebWindow webWindow;
};

} // namespace

/**
 * The reference for portal developers tells of every member that a page can reach, and no other;
 * what it says of answers, defaults, actions, arguments and events is tried.
 */
class TestPortalApi : public QObject
{
    Q_OBJECT

private:
    QList<Row> m_rows;
    std::unique_ptr<GstbPage> m_page;
    std::unique_ptr<Objects> m_objects;

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
    void initTestCase()
    {
        m_rows = readDocument();
        m_page = std::make_unique<GstbPage>([](const QString &root) {
            const QString script = root + "/home/default/action.sh";
            writeFile(script, "#!/bin/sh\ntouch " + root.toUtf8() + "/ran\n");
            QFile::setPermissions(script, QFile::Permissions(0x7700));
        });
        m_objects = std::make_unique<Objects>(*m_page);
    }

    void cleanupTestCase()
    {
        m_objects.reset();
        m_page.reset();
    }

    void members_data()
    {
        QTest::addColumn<QStringList>("existing");
        for (const auto &[name, meta] : publishedObjects())
            QTest::newRow(qPrintable(name)) << membersOf(*meta);
    }

    /** In the order of the interface too, where the reference does not sort them by theme. */
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
        if (QTest::currentDataTag() == QByteArray("gSTB"))
            return;
        const auto byTable = [](const QString &a, const QString &b) {
            return a.section(':', 0, 0) < b.section(':', 0, 0);
        };
        std::stable_sort(documented.begin(), documented.end(), byTable);
        std::stable_sort(existing.begin(), existing.end(), byTable);
        QCOMPARE(documented, existing);
    }

    /** Each method whose answer the page tells gives it; the others that do nothing give none. */
    void fixedAnswers()
    {
        int tried = 0;
        for (const Row &row : m_rows) {
            if (row.table != "Method" || (row.cell(2) != "stub" && row.cell(2) != "fixed"))
                continue;
            const QStringList arguments = sampleArguments(row.cell(0));
            static const QRegularExpression told("Answers `?(\\*charset\\*|\"[^`]*\"|\\w+)`?");
            QString answer = told.match(row.cells.last()).captured(1);
            if (answer == "*charset*")
                answer = arguments.first();
            const QString call =
                QString("%1['%2'](%3)").arg(row.section, row.cell(0), arguments.join(','));
            QCOMPARE(call + " -> " + m_page->answer(call),
                     call + " -> " + (answer.isEmpty() ? "null" : answer));
            QCOMPARE(call + m_page->requests.take(), call);
            ++tried;
        }
        QCOMPARE(tried, 170);
    }

    void fixedProperties()
    {
        for (const Row &row : m_rows) {
            if (row.table != "Property" || !row.cell(2).startsWith("always "))
                continue;
            const QString value = row.cell(2).mid(7);
            QCOMPARE(row.section + '.' + row.cell(0) + ' ' +
                         m_page->answer(row.section + '.' + row.cell(0)),
                     row.section + '.' + row.cell(0) + ' ' + (value == "empty" ? "[]" : value));
        }
    }

    void settingDefaults()
    {
        const auto value = [](const QString &cell) { return cell == "empty" ? QString() : cell; };
        int tried = 0;
        for (const Row &row : m_rows) {
            if (row.table != "Setting")
                continue;
            const QString name = row.cell(0);
            QCOMPARE(m_page->evaluate("JSON.parse(gSTB.GetEnv('{\"varList\":[\"" + name +
                                      "\"]}')).result['" + name + "']"),
                     QVariant(value(row.cell(1))));
            QCOMPARE(m_page->evaluate("gSTB.RDir('getenv " + name + "')"),
                     QVariant(value(row.cell(2))));
            ++tried;
        }
        QCOMPARE(tried, 6);
    }

    void boxParameters()
    {
        qputenv("Q_MODEL", "the model");
        qputenv("Q_HARDWARE_VERSION", "the hardware");
        writeFile(m_page->path("file"), "x");
        // What stands for words in the answers of the table.
        const QMap<QString, QString> meant = {
            {"as the identity methods answer",
             "{Model: gSTB.GetDeviceModel(), HardwareVersion: gSTB.GetDeviceVersionHardware()}"},
            {"`\"\"`; stores the setting", "{'setenv NAME VALUE': ''}"},
            {"the setting NAME", "{'getenv NAME': 'VALUE'}"},
        };
        QStringList tried;
        // Settings are stored before they are read.
        QList<Row> rows = m_rows;
        std::stable_sort(rows.begin(), rows.end(), [](const Row &a, const Row &b) {
            return a.cell(0).startsWith("setenv") > b.cell(0).startsWith("setenv");
        });
        for (const Row &row : qAsConst(rows)) {
            if (row.table != "Text")
                continue;
            static const QRegularExpression exact("^`([^`]*)`$");
            for (const QString &text : row.cell(0).split(", ")) {
                const QString answer = m_page->evaluate("gSTB.RDir('" + text + "')").toString();
                const QString told = exact.match(row.cells[1]).captured(1);
                if (!told.isEmpty())
                    QCOMPARE(text + ": " + answer, text + ": " + told);
                else if (meant.contains(row.cells[1]))
                    QCOMPARE(text + ": " + answer,
                             text + ": " +
                                 m_page->evaluate('(' + meant[row.cells[1]] + ")['" + text + "']")
                                     .toString());
                else
                    continue;
                tried.append(text);
            }
        }
        QCOMPARE(
            tried.join(' '),
            QString(
                "setenv NAME VALUE vmode gmode Model HardwareVersion getenv NAME get_crc_count"));
        QCOMPARE(m_page->answer("gSTB.RDir('RemoveFile \"ROOT/file\"')"), QString("\"Ok\""));
        QCOMPARE(m_page->answer("gSTB.RDir('RemoveFile ROOT/file')"), QString("\"Fail\""));
    }

    /** Each action has the effect that the table names. */
    void actions()
    {
        m_page->requests.take();
        int tried = 0;
        const QString ran = m_page->path("ran");
        for (const Row &row : m_rows) {
            if (row.table != "Action begins with")
                continue;
            for (const QString &action : row.cell(0).split(", ")) {
                QFile::remove(ran);
                m_page->evaluate("gSTB.ExecAction('" + action + " 1280')");
                const QString requests = m_page->requests.take();
                const QString effect = requests == "OnScreenMode(1280)" ? "sets the width"
                                       : requests == "OnReboot()" ? "asks the receiver to restart"
                                       : QFile::exists(ran)       ? "the box's action script runs"
                                                                  : "none";
                QVERIFY2(row.cell(1).startsWith(effect), qPrintable(action + ": " + effect));
                ++tried;
            }
        }
        QCOMPARE(tried, 7);
    }

    /** Arguments in the order in which the reference names them, each with a value of its own. */
    void argumentOrder_data()
    {
        QTest::addColumn<QString>("values");
        QTest::addColumn<QString>("request");
        const auto row = [](const char *signature, const char *values, const char *request) {
            QTest::newRow(signature) << QString(values) << QString(request);
        };
        row("SetViewport(int,int,int,int)", "xsize=3 ysize=4 x=1 y=2", "OnViewPort(1,2,3,4)");
        row("SetViewportEx(int,int,int,int,int,int,int,int,bool)",
            "xSize=3 ySize=4 xPos=1 yPos=2 clipXSize=5 clipYSize=6 clipXPos=7 clipYPos=8"
            " saveClip=true",
            "OnViewPort(1,2,3,4)");
        row("SetPIG(int,int,int,int)", "state=1 scale=5 x=6 y=7", "OnViewPort(0,0,0,0)");
        row("SetAudioLangs(QString,QString)", "priLang='ru' secLang='en'", "OnAudioLangs(ru,en)");
        row("SetSubtitleLangs(QString,QString)", "priLang='ru' secLang='en'", "OnSubLangs(ru,en)");
        row("Play(QString,QString)", "url='u' proxy='p'", "OnPlay(u)");
        row("PlaySolution(QString,QString)", "solution='s' URL='u' url='u'", "OnPlay(u)");
        row("SetPosTime(int)", "time=5", "OnSeekTime(5000)");
        row("SetPosTimeEx(int)", "time=5", "OnSeekTime(5)");
    }

    void argumentOrder()
    {
        QFETCH(QString, values);
        const QString signature = QTest::currentDataTag();
        QMap<QString, QString> valueOf;
        for (const QString &pair : values.split(' '))
            valueOf[pair.section('=', 0, 0)] = pair.section('=', 1);
        m_page->evaluate("gSTB.Play('first')");
        m_page->requests.take();
        for (const Row &row : m_rows) {
            if (row.section != "gSTB" || row.cell(0) != signature || row.table != "Method")
                continue;
            QStringList arguments;
            static const QRegularExpression named("(?<!\\*)\\*(\\w+)\\*(?!\\*)");
            for (auto match = named.globalMatch(row.cells.last()); match.hasNext();) {
                const QString value = valueOf.value(match.next().captured(1));
                if (!value.isEmpty())
                    arguments.append(value);
            }
            m_page->evaluate("gSTB['" + signature + "'](" + arguments.join(',') + ')');
        }
        QTEST(m_page->requests.take(), "request");
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
        const QMap<QString, QString> meanings = {
            {"\"1\"", "playback ended"},
            {"\"4\"", "playback started"},
            {"\"7\"", "the list of audio tracks changed"},
            {"\"9\"", "the list of subtitle tracks changed"},
            {"\"34\"", "a recording finished"},
            {"\"35\"", "a recording failed"},
            {"\"39\"", "a recording started"},
            {"\"storage.mount\"", "storage was plugged in"},
            {"\"storage.unmount\"", "storage was taken away"},
            {"enable_arrow_keys_setpos", "the first play request"},
            {"key.EXIT", "the first `gSTB.InitPlayer()`"},
        };
        for (const Row &row : m_rows) {
            if (row.table != "Code")
                continue;
            QVERIFY2(row.cell(1).contains(row.cell(0)), qPrintable(row.cell(0)));
            QVERIFY2(row.cells[2].startsWith(meanings.value(row.cell(0), "?")),
                     qPrintable(row.cells.join(" | ")));
        }
    }
};

QTEST_MAIN(TestPortalApi)
#include "test_portal_api.moc"
