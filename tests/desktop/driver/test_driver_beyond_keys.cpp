// SPDX-License-Identifier: Apache-2.0
/*
 * What a client does to a box beyond its remote: files, paper, touches, the window's size.
 */
#include "desktop/driver/print_settings.h"
#include "desktop/driver/webdriver_error.h"
#include "tests/desktop/driver/driver_test.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const char page[] = R"(<!DOCTYPE html><title>Box</title>
<style>body { margin: 0 } .sheet { page-break-before: always } div { height: 60px }</style>
<div id=touched></div><div id=untouched></div>
<input id=one type=file><input id=many type=file multiple style="display: none">
<p class=sheet>two<p class=sheet>three
<script>
var events = [];
function note(e) {
    var at = e.changedTouches ? e.changedTouches[0] : e;
    events.push(e.type + (at.clientX === undefined ? ' ' + e.target.id : ' ' + at.clientX));
}
['input', 'change', 'mousedown', 'click'].forEach(function (type) {
    document.addEventListener(type, note);
});
['touchstart', 'touchmove', 'touchend'].forEach(function (type) {
    document.getElementById('touched').addEventListener(type, function (e) {
        note(e);
        e.preventDefault();
    });
});
</script>)";

} // namespace

class TestDriverBeyondKeys : public DriverTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { openPage(); }
    void files_data();
    void files();
    void pageRanges_data();
    void pageRanges();
    void printedPages();
    void touches_data();
    void touches();
    void windowChangesItsSize();
    void cookiesOfAnAddress();

private:
    QByteArray events() { return compact(m_client.script("return events.splice(0)").value); }

    QTemporaryDir m_files;
};

void TestDriverBeyondKeys::initTestCase()
{
    startOn(page);
    for (const char *name : {"/a.txt", "/b c.txt"}) {
        QFile file(m_files.path() + name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(name) > 0);
    }
}

void TestDriverBeyondKeys::files_data()
{
    QTest::addColumn<QString>("field");
    // Of one command after the other; @ is the folder, "clear" is the page's.
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QByteArray>("answer"); // The names that the page then reads, or the error.
    const QString one = "#one";
    const QString many = "#many";
    QTest::newRow("one") << one << QStringList{"@/a.txt"} << QByteArray(R"(["a.txt"])");
    QTest::newRow("replaced") << one << QStringList{"@/a.txt", "@/b c.txt"}
                              << QByteArray(R"(["b c.txt"])");
    QTest::newRow("too many") << one << QStringList{"@/a.txt\n@/b c.txt"}
                              << QByteArray("invalid argument");
    QTest::newRow("hidden, several")
        << many << QStringList{"@/a.txt\n@/b c.txt"} << QByteArray(R"(["a.txt","b c.txt"])");
    QTest::newRow("added") << many << QStringList{"@/a.txt", "@/b c.txt"}
                           << QByteArray(R"(["a.txt","b c.txt"])");
    QTest::newRow("added to a cleared one")
        << many << QStringList{"@/a.txt", "clear", "@/b c.txt"} << QByteArray(R"(["b c.txt"])");
    QTest::newRow("missing") << many << QStringList{"@/a.txt\n@/c.txt"}
                             << QByteArray("invalid argument");
    QTest::newRow("folder") << one << QStringList{"@"} << QByteArray("invalid argument");
    QTest::newRow("nothing") << one << QStringList{""} << QByteArray("invalid argument");
}

void TestDriverBeyondKeys::files()
{
    QFETCH(QString, field);
    QFETCH(QStringList, texts);
    QFETCH(QByteArray, answer);
    const QString path = "element/" + m_client.element(field);
    DriverClient::Answer got;
    for (QString text : texts) {
        const QJsonObject body{{"text", text.replace('@', m_files.path())}};
        got = text == "clear"
                  ? m_client.script("document.querySelector('" + field + "').value = ''")
                  : m_client.post(path + "/value", QJsonDocument(body).toJson());
    }
    if (got.status != 200) {
        QCOMPARE(got.error().toUtf8(), answer);
        return;
    }
    QCOMPARE(compact(m_client
                         .script("return [].map.call(document.querySelector('" + field +
                                 "').files, function (file) { return file.name })")
                         .value),
             answer);
    const QByteArray once =
        ",\"input " + field.mid(1).toUtf8() + "\",\"change " + field.mid(1).toUtf8() + '"';
    QCOMPARE(events(), '[' + once.repeated(texts.size() - texts.count("clear")).mid(1) + ']');
    QCOMPARE(m_client.script("return document.querySelectorAll('input').length").value.toInt(), 2);
}

void TestDriverBeyondKeys::pageRanges_data()
{
    QTest::addColumn<QByteArray>("ranges");
    QTest::addColumn<QByteArray>("pages"); // Of five, or the error.
    const auto row = [](const char *ranges, const char *pages) {
        QTest::newRow(ranges) << QByteArray(ranges) << QByteArray(pages);
    };
    row(R"([3])", "3");
    row(R"(["2-3", 5, "2"])", "2 3 5");
    row(R"([" - 2 "])", "1 2");
    row(R"(["4-"])", "4 5");
    row(R"(["-"])", "1 2 3 4 5");
    row(R"(["4-99999999999", 0])", "0 4 5");
    row(R"(["6-"])", "invalid argument");
    row(R"(["3-2"])", "invalid argument");
    row(R"([""])", "invalid argument");
    row(R"(["1-2-3"])", "invalid argument");
    row(R"(["x"])", "invalid argument");
    row(R"(["+1"])", "invalid argument");
    row(R"([1.5])", "invalid argument");
    row(R"([-1])", "invalid argument");
    row(R"([null])", "invalid argument");
}

void TestDriverBeyondKeys::pageRanges()
{
    QFETCH(QByteArray, ranges);
    QFETCH(QByteArray, pages);
    QByteArray result;
    try {
        const QSet<int> found = readPageRanges(QJsonDocument::fromJson(ranges).array(), 5);
        QList<int> numbers = found.values();
        std::sort(numbers.begin(), numbers.end());
        for (const int number : std::as_const(numbers))
            result += QByteArray::number(number) + ' ';
    } catch (const WebDriverError &error) {
        result = error.code.toUtf8();
    }
    QCOMPARE(result.trimmed(), pages);
}

void TestDriverBeyondKeys::printedPages()
{
    const DriverClient::Answer answer =
        m_client.post("print", R"({"pageRanges":[1,"3"],"page":{"width":10,"height":15}})");
    QCOMPARE(answer.status, 200);
    const QByteArray pdf = QByteArray::fromBase64(answer.value.toString().toLatin1());
    QVERIFY(pdf.startsWith("%PDF-"));
    QCOMPARE(pageCountOf(pdf), 3); // What was there at first; then it is said anew.
    // As a reader finds it: the table at the end, in it the object that lists the pages.
    const int table = pdf.mid(pdf.lastIndexOf("startxref") + 9).simplified().split(' ')[0].toInt();
    const QList<QByteArray> lines = pdf.mid(table, 200).split('\n');
    QCOMPARE(lines[0], QByteArray("xref"));
    QVERIFY(lines[2].endsWith(" 00000 n "));
    const QByteArray object = pdf.mid(lines[2].left(10).toInt(), 200);
    QVERIFY2(object.startsWith(lines[1].split(' ')[0] + " 0 obj"), object);
    QVERIFY2(object.contains("/Count 2"), object);
    QCOMPARE(m_client.post("print", R"({"margin":{"top":30}})").error(),
             QString("invalid argument"));
}

void TestDriverBeyondKeys::touches_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<int>("y");
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QByteArray>("events");
    QTest::newRow("taken") << QByteArray("touch") << 20 << QByteArray("0")
                           << QByteArray(R"(["touchstart 30","touchmove 40","touchend 40"])");
    QTest::newRow("left") << QByteArray("touch") << 80 << QByteArray("0")
                          << QByteArray(R"(["mousedown 30","click 40"])");
    QTest::newRow("pen") << QByteArray("pen") << 20 << QByteArray("0")
                         << QByteArray(R"(["mousedown 30","click 40"])");
    QTest::newRow("button that no display has")
        << QByteArray("mouse") << 20 << QByteArray("4294967296") << QByteArray("[]");
}

void TestDriverBeyondKeys::touches()
{
    QFETCH(QByteArray, kind);
    QFETCH(int, y);
    QFETCH(QByteArray, button);
    const QByteArray at = ",\"y\":" + QByteArray::number(y) + "}";
    const DriverClient::Answer answer = m_client.post(
        "actions", R"({"actions":[{"type":"pointer","id":")" + kind +
                       R"(","parameters":{"pointerType":")" + kind +
                       R"("},"actions":[{"type":"pointerMove","x":30)" + at +
                       R"(,{"type":"pointerDown","button":)" + button +
                       R"(},)"
                       R"({"type":"pointerMove","x":40)" +
                       at + R"(,{"type":"pointerUp","button":)" + button + R"(}]}]})");
    QVERIFY2(answer.status == 200, compact(answer.value));
    QTEST(events(), "events");
}

void TestDriverBeyondKeys::windowChangesItsSize()
{
    const auto size = [this] {
        return compact(
            m_client.script("return [innerWidth, innerHeight, screenX, document.hidden]").value);
    };
    QCOMPARE(m_client.post("window/rect", R"({"width":800,"height":600,"x":40})").status, 200);
    QCOMPARE(size(), QByteArray("[800,600,40,false]"));
    const QByteArray touched = m_client.element("#touched").toUtf8();
    QCOMPARE(m_client.post("element/" + touched + "/click").status, 200);
    QCOMPARE(events(), QByteArray(R"(["mousedown 400","click 400"])"));
    QCOMPARE(compact(m_client.post("window/rect", R"({"width":5000,"y":null})").value),
             QByteArray(R"({"height":600,"width":1280,"x":40,"y":0})"));
    QCOMPARE(m_client.post("window/minimize").status, 200);
    QVERIFY(size().endsWith("true]"));
    QCOMPARE(compact(m_client.post("window/maximize").value),
             QByteArray(R"({"height":720,"width":1280,"x":0,"y":0})"));
    QCOMPARE(size(), QByteArray("[1280,720,0,false]"));
}

void TestDriverBeyondKeys::cookiesOfAnAddress()
{
    const QByteArray strict =
        R"({"cookie":{"name":"a","value":"b","domain":"127.0.0.1","sameSite":"Strict"}})";
    QCOMPARE(m_client.post("cookie", strict).status, 200);
    const QJsonObject stored = m_client.get("cookie/a").value.toObject();
    QCOMPARE(stored.value("domain").toString(), QString("127.0.0.1"));
    QCOMPARE(stored.value("sameSite").toString(), QString("Strict"));
    QCOMPARE(m_client.remove("cookie").status, 200);
    m_client.script("document.cookie = 'a=c'");
    const QJsonObject fresh = m_client.get("cookie/a").value.toObject();
    QCOMPARE(fresh.value("value").toString(), QString("c"));
    QCOMPARE(fresh.value("sameSite").toString(), QString("None"));
}

QTEST_GUILESS_MAIN(TestDriverBeyondKeys)
#include "test_driver_beyond_keys.moc"
