// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/capabilities.h"
#include "desktop/driver/http_front.h"
#include "desktop/driver/profile.h"
#include "desktop/driver/webdriver_error.h"
#include "tests/desktop/driver/driver_test.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QtTest>

#include <csignal>

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
    void capabilities_data();
    void capabilities();
    void requestsOfPagesAreRefused_data();
    void requestsOfPagesAreRefused();
    void bodiesOfAnyMethod();
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
    void profiles_data();
    void profiles();
    void badProfiles();
    void endlessScript();
    void programIsConfined();
    void crashedProgram();
    void nothingIsLeft();
    void nothingIsLeftOfAKilledDriver();
};

void TestDriver::capabilities_data()
{
    QTest::addColumn<QByteArray>("question");
    QTest::addColumn<QByteArray>("answer"); // A part of what is matched, or the error.
    const auto row = [](const char *name, const char *question, const char *answer) {
        QTest::newRow(name) << QByteArray(question) << QByteArray(answer);
    };
    row("nothing", R"({})", R"("browserName":"vesprel")");
    row("own name", R"({"alwaysMatch":{"browserName":"vesprel"}})", R"("platformName":"linux")");
    row("other name", R"({"alwaysMatch":{"browserName":"other"}})", "session not created");
    row("second choice", R"({"firstMatch":[{"browserName":"other"},{"pageLoadStrategy":"eager"}]})",
        R"("pageLoadStrategy":"eager")");
    row("asked twice", R"({"alwaysMatch":{"timeouts":{}},"firstMatch":[{"timeouts":{}}]})",
        "invalid argument");
    row("null is nothing", R"({"alwaysMatch":{"browserName":null,"pageLoadStrategy":null}})",
        R"("pageLoadStrategy":"normal")");
    row("no alternative", R"({"firstMatch":[]})", "invalid argument");
    row("unknown", R"({"alwaysMatch":{"foo":1}})", "invalid argument");
    row("foreign", R"({"alwaysMatch":{"other:foo":1}})", R"("browserName":"vesprel")");
    row("wrong type", R"({"alwaysMatch":{"acceptInsecureCerts":"yes"}})", "invalid argument");
    row("bad later alternative", R"({"firstMatch":[{},{"pageLoadStrategy":"slow"}]})",
        "invalid argument");
    row("version", R"({"alwaysMatch":{"browserVersion":">=1.0"}})", R"("browserVersion":"1.)");
    row("later version", R"({"alwaysMatch":{"browserVersion":">=1.9999"}})", "session not created");
    row("timeouts", R"({"alwaysMatch":{"timeouts":{"script":null,"implicit":5}}})",
        R"("timeouts":{"implicit":5,"pageLoad":300000,"script":null})");
    row("bad timeout", R"({"alwaysMatch":{"timeouts":{"script":-1}}})", "invalid argument");
    row("prompts", R"({"alwaysMatch":{"unhandledPromptBehavior":{"alert":"accept"}}})",
        R"("unhandledPromptBehavior":{"alert":"accept"})");
    row("bad prompts", R"({"alwaysMatch":{"unhandledPromptBehavior":"think"}})",
        "invalid argument");
    row("proxy without type", R"({"alwaysMatch":{"proxy":{}}})", "invalid argument");
    row("proxy port", R"({"alwaysMatch":{"proxy":{"proxyType":"manual","httpProxy":"a:65536"}}})",
        "invalid argument");
    row("proxy", R"({"alwaysMatch":{"proxy":{"proxyType":"system"}}})", "session not created");
    row("screen", R"({"alwaysMatch":{"vesprel:options":{"screen":"big"}}})", "invalid argument");
    row("profile", R"({"alwaysMatch":{"vesprel:options":{"profile":20}}})", "invalid argument");
    row("option", R"({"alwaysMatch":{"vesprel:options":{"model":"a"}}})", "invalid argument");
}

void TestDriver::capabilities()
{
    QFETCH(QByteArray, question);
    QFETCH(QByteArray, answer);
    QByteArray result;
    try {
        result =
            compact(chooseCapabilities(
                        QJsonDocument::fromJson("{\"capabilities\":" + question + "}").object())
                        .matched);
    } catch (const WebDriverError &error) {
        result = error.code.toUtf8();
    }
    QVERIFY2(result.contains(answer), result);
}

void TestDriver::requestsOfPagesAreRefused_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("origin");
    QTest::addColumn<bool>("allowed");
    QTest::newRow("client") << "127.0.0.1:4444" << QString() << true;
    QTest::newRow("name") << "localhost:4444" << QString() << true;
    QTest::newRow("IPv6") << "[::1]:4444" << QString() << true;
    QTest::newRow("rebound name") << "portal.example:4444" << QString() << false;
    QTest::newRow("similar name") << "localhost.example" << QString() << false;
    QTest::newRow("no host") << QString() << QString() << false;
    QTest::newRow("given host") << "box.test:4444" << QString() << true;
    QTest::newRow("page") << "127.0.0.1:4444"
                          << "http://127.0.0.1:8080" << false;
    QTest::newRow("given page") << "127.0.0.1:4444"
                                << "http://lab.test" << true;
}

void TestDriver::requestsOfPagesAreRefused()
{
    QFETCH(QString, host);
    QFETCH(QString, origin);
    DriverOptions options;
    options.allowedHosts = QStringList{"box.test"};
    options.allowedOrigins = QStringList{"http://lab.test"};
    QTEST(isAllowed(host, origin, options), "allowed");
}

/** Clients send a body with any method, in a piece of its own, or none and say nothing of it. */
void TestDriver::bodiesOfAnyMethod()
{
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", quint16(m_client.port()));
    QVERIFY(socket.waitForConnected());
    const auto answer = [&socket](const QByteArray &request, const QByteArray &body) {
        const QByteArray length = "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
        socket.write(request + " HTTP/1.1\r\nHost: localhost\r\n" +
                     (body.isEmpty() ? QByteArray() : length) + "\r\n");
        socket.flush();
        QTest::qWait(50);
        socket.write(body);
        // The answer may have come before the body went.
        QByteArray text = socket.readAll();
        while (!text.contains("}}") && socket.waitForReadyRead(20000))
            text += socket.readAll();
        return text.left(text.indexOf("\r\n")) + text.mid(text.indexOf("\r\n\r\n") + 4).left(19);
    };
    const QByteArray status = "HTTP/1.1 200 OK{\"value\":{\"build\":{";
    const QByteArray unknown = "HTTP/1.1 404 Not Found{\"value\":{\"error\":\"";
    QCOMPARE(answer("GET /status", "{}"), status);
    QCOMPARE(answer("DELETE /session/none/cookie", "{}"), unknown);
    QCOMPARE(answer("POST /session/none/back", ""), unknown);
    QCOMPARE(answer("DELETE /session/none/cookie", ""), unknown);
    QCOMPARE(answer("GET /status", ""), status);
}

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
             compact(QJsonObject{{"script", script}, {"args", QJsonArray{"given"}}}), answer);
    };
    post("execute/sync", R"({"script":"return 1"})", "invalid argument");
    run("return [arguments[0], null, 1.5, {a: [2]}, NaN]", R"(["given",null,1.5,{"a":[2]},null])");
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
    QCOMPARE(m_client.post("alert/text", R"({"text":"somebody"})").status, 200);
    QCOMPARE(m_client.post("alert/accept").status, 200);
    QCOMPARE(m_client.script("return answer").value.toString(), QString("somebody"));

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

void TestDriver::endlessScript()
{
    openPage();
    m_client.post("timeouts", R"({"script":200})");
    QCOMPARE(m_client.script("for (;;);").error(), QString("script timeout"));
    QCOMPARE(m_client.end().status, 200);
    QTRY_VERIFY(m_client.children().isEmpty());
    QCOMPARE(m_client.get("title").error(), QString("invalid session id"));
    QCOMPARE(m_client.begin().status, 200);
}

void TestDriver::profiles_data()
{
    QTest::addColumn<QByteArray>("options");
    QTest::addColumn<QByteArray>("answer"); // What the page finds, or a part of the error.
    const auto row = [](const char *name, const char *options, const char *answer) {
        QTest::newRow(name) << QByteArray(options) << QByteArray(answer);
    };
    row("none", R"({})", R"("VB-DESK Vesprel VB-DESK 1.0.0 100 1280x720 MAG200")");
    row("model", R"({"profile":"vb40"})", R"("VB40 Vesprel VB40 1.2.0 120 1920x1080 VB40")");
    row("more of it", R"({"profile":"vb40","screen":"800x600","environment":{"Q_MODEL":"X"}})",
        R"("X Vesprel VB40 1.2.0 120 800x600 VB40")");
    row("unknown", R"({"profile":"vb41"})", "only desk, vb20, vb40.");
    row("path", R"({"profile":"../profiles/vb40"})", "There is no profile");
}

void TestDriver::profiles()
{
    QFETCH(QByteArray, options);
    QFETCH(QByteArray, answer);
    m_client.end();
    QJsonObject object = QJsonDocument::fromJson(options).object();
    object["player"] = "simulated";
    QByteArray result = compact(m_client.begin({{"vesprel:options", object}}).value);
    if (!result.contains("session not created")) {
        openPage();
        result = compact(
            m_client
                .script(
                    "return [gSTB.GetDeviceModel(), gSTB.Version(), gSTB.GetDeviceImageVersion(),"
                    "innerWidth + 'x' + innerHeight,"
                    "/\\) ([^)]*) stbapp/.exec(navigator.userAgent)[1]].join(' ')")
                .value);
    }
    QVERIFY2(result.contains(answer), result);
    m_client.end();
    QCOMPARE(m_client.begin().status, 200);
}

void TestDriver::badProfiles()
{
    QString failure;
    QCOMPARE(parseProfile("# a box\n\nA=\"b\" c = d \nB=\n", failure),
             (Profile{{"A", "\"b\" c = d "}, {"B", ""}}));
    QCOMPARE(failure, QString());
    for (const char *text : {"A=b\nexport B=c\n", "A=b\n =c\n", "A=b\nB\n"}) {
        QCOMPARE(parseProfile(text, failure), Profile());
        QCOMPARE(failure, QString("line 2 is no NAME=VALUE"));
    }
}

void TestDriver::programIsConfined()
{
    if (QProcess::execute("bwrap", {"--ro-bind", "/", "/", "--dev", "/dev", "true"}) != 0)
        QSKIP("bwrap is not installed, or may not work here.");
    const QList<qint64> programs =
        m_client.children("vesprel") + m_client.children("vesprel-receive");
    QCOMPARE(programs.size(), 2);
    for (const qint64 id : programs) {
        QFile file(QString("/proc/%1/mounts").arg(id));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArray written;
        const QList<QByteArray> lines = file.readAll().split('\n');
        for (const QByteArray &line : lines) {
            const QList<QByteArray> fields = line.split(' ');
            if (fields.value(1) == "/")
                QVERIFY2(fields.value(3).startsWith("ro"), line);
            if (fields.value(3).startsWith("rw") && fields.value(1).contains("/vesprel-driver."))
                written += fields.value(1);
        }
        QCOMPARE(written.count("/vesprel-driver."), 1);
    }
}

void TestDriver::crashedProgram()
{
    const QList<qint64> programs = m_client.children("vesprel");
    QCOMPARE(programs.size(), 1);
    // A signal that sanitizers leave alone.
    QCOMPARE(::kill(pid_t(programs.first()), SIGABRT), 0);
    const DriverClient::Answer answer = m_client.get("title");
    QCOMPARE(answer.error(), QString("unknown error"));
    const QString message = answer.value.toObject().value("message").toString();
    QVERIFY2(message.contains("signal 6") && message.contains("finishLoading"),
             qPrintable(message));
    QCOMPARE(m_client.get("title").error(), QString("invalid session id"));
}

void TestDriver::nothingIsLeft()
{
    QCOMPARE(m_client.begin().status, 200);
    QVERIFY(m_client.children().size() >= 4);
    QCOMPARE(m_client.end().status, 200);
    QTRY_VERIFY(m_client.children().isEmpty());
    QCOMPARE(m_client.files(), QStringList());
}

void TestDriver::nothingIsLeftOfAKilledDriver()
{
    QCOMPARE(m_client.begin().status, 200);
    const QList<qint64> children = m_client.children();
    m_client.process().kill();
    QVERIFY(m_client.process().waitForFinished());
    for (const qint64 child : children)
        QTRY_VERIFY_WITH_TIMEOUT(!DriverClient::isRunning(child), 30000);
    QTRY_COMPARE_WITH_TIMEOUT(m_client.files(), QStringList(), 30000);
}

QTEST_GUILESS_MAIN(TestDriver)
#include "test_driver.moc"
