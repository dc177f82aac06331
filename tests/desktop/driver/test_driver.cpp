// SPDX-License-Identifier: Apache-2.0
/*
 * What a client asks of a box and its page, command by command.
 */
#include "tests/desktop/driver/driver_test.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QtTest>

namespace {

const char page[] = R"(<!DOCTYPE html><title>Box</title>
<style>body { margin: 0 } .gone { display: none } #upper { text-transform: uppercase }</style>
<div id=upper>some <b>bold</b>  text<br>below <span class=gone>hidden</span></div>
<a id=link href="#there"> A link </a>
<input id=field value=old><input id=box type=checkbox checked><input id=off disabled>
<select id=list><option id=one>1<option id=two>2</select>
<button id=button onclick="this.textContent = 'pressed'">press</button>
<button id=cover style="position: absolute; left: 0; top: 200px; width: 90px">covered</button>
<div style="position: absolute; left: 0; top: 200px; width: 90px; height: 50px"></div>
<fieldset disabled style="position: absolute; top: 300px"><legend><input id=open></legend><input id=shut></fieldset>
<svg width=9 height=9><rect id=shape width=9 height=9></svg>
<iframe id=frame srcdoc="<p id=inner>inside</p>"></iframe><div id=empty></div>
<script>
var keys = [];
document.addEventListener('keydown', function (e) {
    keys.push((e.ctrlKey ? 'Ctrl+' : '') + (e.altKey ? 'Alt+' : '') + e.keyCode);
});
</script>)";

const char elementKey[] = "element-6066-11e4-a52e-4f735466cecf";

} // namespace

class TestDriver : public DriverTest
{
    Q_OBJECT

private slots:
    void initTestCase() { startOn(page); }
    void commands_data();
    void commands();
    void staleElements();
    void frameThatRemovesItself();
    void actionsAreTheRemote();
    void pointerClicksWhereItIs();
    void typedTextIsNotTranslated();
    void dialogsHoldTheNextCommand();
    void favouritesAreAWindow();
    void portalCanBeClosed();
    void cookiesOfThePage();
    void receiverAndLog();
};

void TestDriver::commands_data()
{
    QTest::addColumn<QByteArray>("request"); // {css} in it is the element's id.
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("answer"); // The value, or the error.
    const auto get = [](const char *path, const char *answer) {
        QTest::newRow(path) << "GET " + QByteArray(path) << QByteArray() << QByteArray(answer);
    };
    const auto post = [](const char *path, const QByteArray &body, const char *answer) {
        QTest::newRow(qPrintable(QString(path) + ' ' + body))
            << "POST " + QByteArray(path) << body << QByteArray(answer);
    };
    get("title", R"("Box")");
    get("nonsense", "unknown command");
    QTest::newRow("PUT") << QByteArray("PUT url") << QByteArray("{}")
                         << QByteArray("unknown method");
    post("url", "", "invalid argument");
    post("url", "[]", "invalid argument");
    post("url", "{}", "invalid argument");
    post("url", R"({"url":"relative"})", "invalid argument");
    post("url", R"({"url":"http://127.0.0.1:1/"})", "unknown error");
    post("timeouts", R"({"implicit":"1"})", "invalid argument");
    get("timeouts", R"({"implicit":0,"pageLoad":300000,"script":30000})");
    get("window", R"("portal")");
    get("window/handles", R"(["portal"])");
    get("window/rect", R"({"height":720,"width":1280,"x":0,"y":0})");
    post("window/rect", R"({"width":-1})", "invalid argument");
    post("window/rect", R"({"x":2147483648})", "invalid argument");
    post("print", "{}", R"("JVBERi)");
    post("print", R"({"orientation":"upright"})", "invalid argument");
    post("print", R"({"scale":2.1})", "invalid argument");
    post("print", R"({"background":1})", "invalid argument");
    post("print", R"({"shrinkToFit":null})", "invalid argument");
    post("print", R"({"page":{"width":0.01}})", "invalid argument");
    post("print", R"({"margin":[]})", "invalid argument");
    post("print", R"({"pageRanges":{}})", "invalid argument");
    post("shadow/x/element", R"({"using":"id","value":"x"})", "invalid argument");
    post("shadow/x/elements", R"({"using":"xpath","value":"x"})", "no such shadow root");
    post("frame", R"({"id":0})", "null");
    post("frame", R"({"id":7})", "no such frame");
    post("frame", R"({"id":"x"})", "invalid argument");

    post("element", R"({"using":"id","value":"x"})", "invalid argument");
    post("element", R"({"using":"xpath","value":"//["})", "invalid selector");
    post("element", R"({"using":"css selector","value":"nothing"})", "no such element");
    post("elements", R"({"using":"css selector","value":"nothing"})", "[]");
    post("element", R"({"using":"link text","value":"A link"})", R"({"element)");
    post("element", R"({"using":"partial link text","value":"lin"})", R"({"element)");
    post("element", R"({"using":"tag name","value":"select"})", R"({"element)");
    post("element", R"({"using":"xpath","value":"//option[2]"})", R"({"element)");
    post("element/{#list}/element", R"({"using":"css selector","value":"b"})", "no such element");
    get("element/other/text", "no such element");
    get("element/{#upper}/text", R"("SOME BOLD TEXT\nBELOW")");
    get("element/{#link}/attribute/href", R"("#there")");
    get("element/{#box}/attribute/checked", R"("true")");
    get("element/{#field}/attribute/nothing", "null");
    get("element/{#field}/property/value", R"("old")");
    get("element/{#upper}/css/display", R"("block")");
    get("element/{#field}/name", R"("input")");
    get("element/{#cover}/rect", R"("width":90,"x":0,"y":202})");
    get("element/{#off}/enabled", "false");
    get("element/{#box}/selected", "true");
    get("element/{.gone}/displayed", "false");
    get("element/{#button}/computedrole", R"("button")");
    get("element/{#button}/computedlabel", R"("press")");
    get("element/{body}/shadow", "no such shadow root");
    post("element/{#cover}/click", "{}", "element click intercepted");
    post("element/{.gone}/click", "{}", "element not interactable");
    post("element/{#empty}/click", "{}", "element not interactable");
    post("element/{#shape}/click", "{}", "null");
    post("element/{#off}/clear", "{}", "invalid element state");
    post("element/{#shut}/clear", "{}", "invalid element state");
    post("element/{#open}/clear", "{}", "null");
    post("element/{#open}/value", R"({"text":"x"})", "null");
    post("element/{#field}/value", R"({"text":1})", "invalid argument");
    post("element/{#off}/value", R"({"text":"x"})", "element not interactable");

    const auto run = [post](const char *script, const char *answer) {
        post("execute/sync",
             compact(QJsonObject{{"script", script}, {"args", QJsonArray{"a%2Fb%1"}}}), answer);
    };
    post("execute/sync", R"({"script":"return 1"})", "invalid argument");
    run("return [arguments[0], null, 1.5, {a: [2]}, NaN]",
        R"(["a%2Fb%1",null,1.5,{"a":[2]},null])");
    run("return document.getElementsByTagName('iframe')[0].contentWindow",
        R"({"frame-075b-4da1-b6ba-e579c2d3230a":)");
    run("return window", R"({"window-fcc6-11e5-b4f8-330a88ab9d7f":"portal"})");
    run("return document.getElementById('cover').getBoundingClientRect()", R"("width":90)");
    run("var a = {}; a.a = a; return a", "javascript error");
    run("return }", "javascript error");
    run("throw new Error('x')", "javascript error");
    run("Array.prototype.toJSON = function () { return 'no' }; return [1]", "[1]");
    run("return Promise.resolve(3)", "3");
    run("return Promise.reject(3)", "javascript error");
    post(
        "execute/async",
        R"js({"script":"var done = arguments[0]; setTimeout(function () { done(5) }, 1)","args":[]})js",
        "5");
    post("execute/async", R"js({"script":"arguments[0](Promise.resolve(6))","args":[]})js", "6");
    get("alert/text", "no such alert");
    post("alert/accept", "{}", "no such alert");
    get("cookie/none", "no such cookie");
    post("cookie", R"({"cookie":{"name":"a"}})", "invalid argument");
    post("cookie", R"({"cookie":{"name":"a","value":"b","domain":"other.test"}})",
         "invalid cookie domain");
    post("actions",
         R"({"actions":[{"type":"key","id":"k","actions":[{"type":"keyDown","value":"ab"}]}]})",
         "invalid argument");
    post(
        "actions",
        R"({"actions":[{"type":"pointer","id":"p","actions":[{"type":"pointerMove","x":9999,"y":0}]}]})",
        "move target out of bounds");
    get("screenshot", R"("iVBOR)");
    get("element/{#button}/screenshot", R"("iVBOR)");
    get("vesprel/screen", R"("iVBOR)");
    post("vesprel/key", R"({"key":"spaceship"})", "invalid argument");
    post("vesprel/receiver", R"({"line":"usb mount"})", R"("sent: usb mounted")");
}

void TestDriver::commands()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, answer);
    m_client.post("frame", R"({"id":null})");
    openPage();
    QString path = request.mid(request.indexOf(' ') + 1);
    const int open = path.indexOf('{');
    if (open >= 0) {
        const int close = path.indexOf('}');
        const QString id = m_client.element(path.mid(open + 1, close - open - 1));
        QVERIFY(!id.isEmpty());
        path.replace(open, close - open + 1, id);
    }
    const QByteArray method = request.left(request.indexOf(' '));
    const DriverClient::Answer got = method == "GET" ? m_client.get(path)
                                     : method == "POST"
                                         ? m_client.post(path, body)
                                         : m_client.send(method, "/session/x/url", body);
    if (got.status == 200)
        QVERIFY2(compact(got.value).contains(answer), compact(got.value).left(2000));
    else
        QCOMPARE(got.error().toUtf8(), answer);
}

void TestDriver::staleElements()
{
    openPage();
    const QString field = m_client.element("#field");
    m_client.script("document.getElementById('field').remove()");
    QCOMPARE(m_client.get("element/" + field + "/text").error(),
             QString("stale element reference"));
    const QString link = m_client.element("#link");
    m_client.post("frame", R"({"id":0})");
    QCOMPARE(m_client.get("element/" + link + "/text").error(), QString("no such element"));
    QVERIFY(!m_client.element("#inner").isEmpty());
    m_client.post("frame/parent");
    m_client.post("refresh");
    QCOMPARE(m_client.get("element/" + link + "/text").error(), QString("stale element reference"));
}

void TestDriver::frameThatRemovesItself()
{
    openPage();
    m_client.post("frame", R"({"id":0})");
    QCOMPARE(m_client.script("parent.document.getElementById('frame').remove(); return 5").value,
             QJsonValue(5));
    QCOMPARE(m_client.get("source").error(), QString("no such window"));
    for (const char *command : {"title", "window/rect", "screenshot"})
        QCOMPARE(m_client.get(command).status, 200);
    QCOMPARE(m_client.post("window/rect", R"({"width":1000})").status, 200);
    QCOMPARE(m_client.post("window/fullscreen").status, 200);
    QCOMPARE(m_client.post("frame/parent").status, 200);
    QCOMPARE(m_client.get("title").value.toString(), QString("Box"));
    QVERIFY(!m_client.element("#field").isEmpty());
}

void TestDriver::actionsAreTheRemote()
{
    openPage();
    // F1 is the remote's red key, which portals know as Ctrl+F1; R comes with Alt.
    const DriverClient::Answer answer =
        m_client.post("actions", R"({"actions":[{"type":"key","id":"k",
        "actions":[{"type":"keyDown","value":"\ue031"},{"type":"keyUp","value":"\ue031"},
                   {"type":"keyDown","value":"r"},{"type":"keyUp","value":"r"},
                   {"type":"keyDown","value":"A"},{"type":"keyUp","value":"A"}]}]})");
    QCOMPARE(answer.status, 200);
    QCOMPARE(compact(m_client.script("return keys").value),
             QByteArray(R"(["Ctrl+112","Alt+82","65"])"));
    m_client.script("keys = []");
    QCOMPARE(m_client.post("vesprel/key", R"({"key":"blue","times":2})").status, 200);
    QCOMPARE(compact(m_client.script("return keys").value),
             QByteArray(R"(["Ctrl+115","Ctrl+115"])"));
}

void TestDriver::pointerClicksWhereItIs()
{
    openPage();
    const QString button = m_client.element("#button");
    QCOMPARE(m_client.post("element/" + button + "/click").status, 200);
    QCOMPARE(m_client.get("element/" + button + "/text").value.toString(), QString("pressed"));
    QCOMPARE(m_client.post("element/" + m_client.element("#two") + "/click").status, 200);
    QCOMPARE(m_client.script("return document.getElementById('list').value").value.toString(),
             QString("2"));
    const QByteArray box = m_client.element("#box").toUtf8();
    m_client.post(
        "actions",
        R"({"actions":[{"type":"pointer","id":"m","actions":[
        {"type":"pointerMove","x":0,"y":0,"origin":{")" +
            QByteArray(elementKey) + R"(":")" + box +
            R"("}},{"type":"pointerDown","button":0},{"type":"pointerUp","button":0}]}]})");
    QCOMPARE(m_client.get("element/" + box + "/selected").value, QJsonValue(false));
}

void TestDriver::typedTextIsNotTranslated()
{
    openPage();
    const QString field = m_client.element("#field");
    QCOMPARE(m_client.post("element/" + field + "/clear").status, 200);
    // Letters that the remote's translation takes, a capital, an accent, and two keys left.
    QCOMPARE(m_client.post("element/" + field + "/value", R"({"text":"burglary Wé\ue012\ue012X"})")
                 .status,
             200);
    QCOMPARE(m_client.get("element/" + field + "/property/value").value.toString(),
             QString::fromUtf8("burglary XWé"));
}

void TestDriver::dialogsHoldTheNextCommand()
{
    openPage();
    QCOMPARE(m_client.script("window.answer = confirm('sure?')").status, 200);
    QCOMPARE(m_client.get("alert/text").value.toString(), QString("sure?"));
    QCOMPARE(m_client.post("alert/text", R"({"text":"x"})").error(),
             QString("element not interactable"));
    QCOMPARE(m_client.post("alert/accept").status, 200);
    QCOMPARE(m_client.script("return answer").value, QJsonValue(true));

    m_client.script("window.answer = prompt('name?', 'nobody')");
    QCOMPARE(m_client.post("alert/text", R"({"text":"😀 somebody"})").status, 200);
    QCOMPARE(m_client.post("alert/accept").status, 200);
    QCOMPARE(m_client.script("return answer").value.toString(), QString::fromUtf8("😀 somebody"));

    m_client.script("alert('first\\nline'); alert('second')");
    const DriverClient::Answer answer = m_client.get("title");
    QCOMPARE(answer.error(), QString("unexpected alert open"));
    QCOMPARE(answer.value.toObject().value("data").toObject().value("text").toString(),
             QString("first\nline"));
    QCOMPARE(m_client.get("alert/text").value.toString(), QString("second"));
    QCOMPARE(m_client.post("alert/dismiss").status, 200);
    QCOMPARE(m_client.get("title").value.toString(), QString("Box"));
}

void TestDriver::favouritesAreAWindow()
{
    openPage();
    const QString opened = m_client.post("window/new").value.toObject().value("handle").toString();
    const QString second = m_client.post("window/new").value.toObject().value("handle").toString();
    QCOMPARE(m_client.get("window/handles").value,
             QJsonValue(QJsonArray{"portal", opened, second}));
    QCOMPARE(m_client.get("window").value.toString(), QString("portal"));
    QCOMPARE(m_client.get("title").value.toString(), QString("Box"));
    m_client.post("window", "{\"handle\":\"" + second.toUtf8() + "\"}");
    m_client.closeWindow();
    const QByteArray handle = R"({"handle":")" + opened.toUtf8() + R"("})";
    QCOMPARE(m_client.post("window", handle).status, 200);
    QCOMPARE(m_client.get("url").value.toString(), QString("about:blank"));
    QCOMPARE(m_client.post("window", R"({"handle":"none"})").error(), QString("no such window"));
    QCOMPARE(m_client.post("window", handle).status, 200);
    QCOMPARE(compact(m_client.closeWindow().value), QByteArray(R"(["portal"])"));
    QCOMPARE(m_client.get("title").error(), QString("no such window"));
    QCOMPARE(m_client.post("window", R"({"handle":"portal"})").status, 200);
    QCOMPARE(m_client.get("title").value.toString(), QString("Box"));
}

void TestDriver::portalCanBeClosed()
{
    openPage();
    const QString opened = m_client.post("window/new").value.toObject().value("handle").toString();
    QCOMPARE(m_client.closeWindow().value, QJsonValue(QJsonArray{opened}));
    QCOMPARE(m_client.get("title").error(), QString("no such window"));
    QCOMPARE(m_client.post("window", R"({"handle":"portal"})").error(), QString("no such window"));
    QCOMPARE(m_client.post("window", R"({"handle":")" + opened.toUtf8() + R"("})").status, 200);
    QCOMPARE(m_client.get("url").value.toString(), QString("about:blank"));
    QCOMPARE(m_client.closeWindow().value, QJsonValue(QJsonArray()));
    QCOMPARE(m_client.get("window/handles").error(), QString("invalid session id"));
    QCOMPARE(m_client.begin().status, 200);
}

void TestDriver::cookiesOfThePage()
{
    openPage();
    m_client.script("document.cookie = 'own=1'");
    QCOMPARE(
        m_client.post("cookie", R"({"cookie":{"name":"a","value":"b","httpOnly":true}})").status,
        200);
    QCOMPARE(
        compact(m_client.get("cookie/a").value),
        QByteArray(
            R"({"domain":"127.0.0.1","httpOnly":true,"name":"a","path":"/","sameSite":"None","secure":false,"value":"b"})"));
    QCOMPARE(m_client.get("cookie").value.toArray().size(), 2);
    QCOMPARE(m_client.script("return document.cookie").value.toString(), QString("own=1"));
}

void TestDriver::receiverAndLog()
{
    openPage();
    m_client.get("vesprel/commands");
    m_client.script("gSTB.Play('/media/x.ts'); console.log('hello'); setTimeout('nothing()', 0)");
    QCOMPARE(m_client.post("vesprel/playing", R"({"timeout":20000})").status, 200);
    QVERIFY(compact(m_client.get("vesprel/commands").value).contains("/media/x.ts"));
    m_client.post("vesprel/key", R"({"key":"settings"})");
    QByteArray commands;
    QTRY_VERIFY((commands += compact(m_client.get("vesprel/commands").value)).contains("setup"));
    QVERIFY(compact(m_client.get("vesprel/log").value).contains("Play"));
    QByteArray messages;
    QTRY_VERIFY((messages += compact(m_client.get("vesprel/messages").value)).contains("nothing"));
    QVERIFY2(messages.contains("hello"), messages);
}

QTEST_GUILESS_MAIN(TestDriver)
#include "test_driver.moc"
