// SPDX-License-Identifier: Apache-2.0
/*
 * Who may ask the driver, and for which boxes. None is started here.
 */
#include "desktop/driver/capabilities.h"
#include "desktop/driver/http_front.h"
#include "desktop/driver/profile.h"
#include "desktop/driver/webdriver_error.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

class TestDriverAdmission : public QObject
{
    Q_OBJECT

private slots:
    void capabilities_data();
    void capabilities();
    void requestsOfPagesAreRefused_data();
    void requestsOfPagesAreRefused();
    void badProfiles();
};

void TestDriverAdmission::capabilities_data()
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

void TestDriverAdmission::capabilities()
{
    QFETCH(QByteArray, question);
    QFETCH(QByteArray, answer);
    QByteArray result;
    try {
        const QByteArray request = "{\"capabilities\":" + question + "}";
        const SessionRequest chosen = chooseCapabilities(QJsonDocument::fromJson(request).object());
        result = QJsonDocument(chosen.matched).toJson(QJsonDocument::Compact);
    } catch (const WebDriverError &error) {
        result = error.code.toUtf8();
    }
    QVERIFY2(result.contains(answer), result);
}

void TestDriverAdmission::requestsOfPagesAreRefused_data()
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

void TestDriverAdmission::requestsOfPagesAreRefused()
{
    QFETCH(QString, host);
    QFETCH(QString, origin);
    DriverOptions options;
    options.allowedHosts = QStringList{"box.test"};
    options.allowedOrigins = QStringList{"http://lab.test"};
    QTEST(isAllowed(host, origin, options), "allowed");
}

void TestDriverAdmission::badProfiles()
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

QTEST_GUILESS_MAIN(TestDriverAdmission)
#include "test_driver_admission.moc"
