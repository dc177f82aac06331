// SPDX-License-Identifier: Apache-2.0
#include "shell/keys/key_decision.h"

#include <QTest>

namespace {

/** A page that answers as a row says and counts how often it was asked. */
class FakePage : public BackQuestions
{
public:
    bool launcherFrameShown() const override
    {
        asked += "frame ";
        return frame;
    }

    PortalParts portalParts() const override
    {
        asked += "parts ";
        return parts;
    }

    bool frame = false;
    PortalParts parts;
    mutable QString asked;
};

const char portal[] = "http://tv/c/";
const char launcher[] = "file:///vesprel_launcher_apps/magcore-core-ministra/index.html";

using Mode = PageMode;
using Decision = BackDecision;

} // namespace

Q_DECLARE_METATYPE(PageMode)
Q_DECLARE_METATYPE(BackDecision)

/** What a back key does, and what the page is asked before: once, and only if it counts. */
class TestKeyDecision : public QObject
{
    Q_OBJECT

private slots:
    void back_data()
    {
        QTest::addColumn<PageMode>("mode");
        QTest::addColumn<QString>("url");
        QTest::addColumn<bool>("appMode");
        QTest::addColumn<QString>("shown"); // what the page shows
        QTest::addColumn<QString>("asked");
        QTest::addColumn<BackDecision>("decision");
        const auto row = [](const char *name, Mode mode, const char *url, bool appMode,
                            const char *shown, const char *asked, Decision decision) {
            QTest::newRow(name) << mode << QString(url) << appMode << QString(shown)
                                << QString(asked) << decision;
        };
        const char other[] = "http://tv/other";
        row("application", Mode::Application, portal, false, "menu", "",
            Decision::LeaveApplication);
        row("settings", Mode::Settings, portal, false, "menu", "", Decision::Pass);
        row("portal", Mode::Portal, portal, false, "", "parts ", Decision::Pass);
        row("menu", Mode::Portal, portal, false, "menu", "parts ", Decision::QuitByMainMenu);
        row("menu, app mode", Mode::Portal, portal, true, "menu", "parts ", Decision::Pass);
        row("menu and page", Mode::Portal, portal, false, "menu page", "parts ", Decision::Pass);
        row("menu, elsewhere", Mode::Portal, other, true, "menu", "parts ", Decision::Pass);
        row("menu and loader", Mode::Portal, portal, false, "menu page loader", "parts ",
            Decision::Pass);
        row("loader", Mode::Portal, other, false, "loader", "parts ", Decision::QuitBySpecialMenu);
        row("cut off", Mode::Portal, portal, true, "cut", "parts ", Decision::QuitBySpecialMenu);
        row("elsewhere", Mode::Portal, other, false, "", "parts ", Decision::LeaveForeignPage);
        row("launcher", Mode::Portal, launcher, false, "", "frame ", Decision::PostBackspace);
        row("launcher frame", Mode::Portal, launcher, false, "frame", "frame ",
            Decision::QuitByLauncher);
        row("launcher, app mode", Mode::Portal, launcher, true, "frame", "",
            Decision::PostBackspace);
    }

    void back()
    {
        QFETCH(PageMode, mode);
        QFETCH(QString, url);
        QFETCH(bool, appMode);
        QFETCH(QString, shown);
        FakePage page;
        page.frame = shown.contains("frame");
        page.parts = {shown.contains("menu"), shown.contains("page"), shown.contains("cut"),
                      shown.contains("loader")};
        QTEST(decideBack({mode, true, appMode, QUrl(url), QUrl(portal)}, page), "decision");
        QTEST(page.asked, "asked");
    }

    void backspaceAndNoPortal()
    {
        const FakePage page;
        // The launcher gets Backspace as it came.
        QCOMPARE(decideBack({Mode::Portal, false, false, QUrl(launcher), QUrl(portal)}, page),
                 Decision::Pass);
        QCOMPARE(decideBack({Mode::Portal, true, false, QUrl(portal), QUrl()}, page),
                 Decision::QuitInvalidPage);
    }
};

QTEST_APPLESS_MAIN(TestKeyDecision)
#include "test_key_decision.moc"
