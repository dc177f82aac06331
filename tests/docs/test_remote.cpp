// SPDX-License-Identifier: Apache-2.0
#include "shell/keys/key_table.h"
#include "tests/support/files.h"

#include <QSet>
#include <QTest>

namespace {

/** What the page or the box gets of a key, in a few words. */
QString effectOf(const KeyRow &row)
{
    switch (row.action) {
    case KeyAction::Post:
        switch (row.modifiers) {
        case PostedModifiers::Control: return "ctrl";
        case PostedModifiers::Alt: return "alt";
        case PostedModifiers::Shift: return "shift+tab";
        default: return "backspace";
        }
    case KeyAction::Channel: return "channel";
    case KeyAction::Favourites: return "favourites";
    case KeyAction::RunApp: return row.application;
    case KeyAction::Standby: return "standby";
    case KeyAction::Quit: return "quit";
    case KeyAction::Ok: return "ok";
    case KeyAction::Back: return "back";
    }
    return QString();
}

QString textOf(const char *file)
{
    return QString::fromUtf8(contentOf(QString(SOURCE_DIR "/") + file)).simplified();
}

/** A row of the remote as people read it, and the keys that it stands for. */
struct Shown
{
    QList<int> keys;
    QString effect;
    QString document; ///< in docs/remote.md: key, remote key, beginning of what happens
    QString help;     ///< in run.sh; empty where it is left out
};

const QList<Shown> &shownRows()
{
    using Keys = QList<int>;
    static const QList<Shown> rows = {
        {Keys{Qt::Key_Return, Qt::Key_Enter}, "ok", "| Enter | OK | reaches the page; in a fav",
         "arrows, Enter move, OK"},
        {Keys{Qt::Key_Escape, Qt::Key_Backspace}, "back", "| Esc, Backspace | Back | leaves an app",
         "Esc, Backspace back"},
        {Keys{Qt::Key_F5}, "backspace", "| F5 | Back | the page gets Backspace", "F5 Backspace"},
        {Keys{Qt::Key_F1, Qt::Key_F2, Qt::Key_F3, Qt::Key_F4}, "ctrl",
         "| F1 F2 F3 F4 | red, green, yellow, blue | the page gets Ctrl+F1 ... Ctrl+F4",
         "F1 F2 F3 F4 red, green, yellow, blue"},
        {Keys{Qt::Key_PageUp, Qt::Key_PageDown}, "channel",
         "| PageUp, PageDown | channel up, down | in the portal's TV place",
         "PageUp, PageDown next and previous channel"},
        {Keys{Qt::Key_F11}, "favourites", "| F11 | favourites | closes the fav", "F11 favourites"},
        {Keys{Qt::Key_F12}, "apps", "| F12 | applications | asks the receiver for its applications",
         "F12 the box's applications"},
        {Keys{Qt::Key_Home, Qt::Key_U}, "quit", "| Home, U | exit | hides the browser",
         "Home, U leave the portal"},
        {Keys{Qt::Key_B, Qt::Key_F, Qt::Key_G, Qt::Key_L, Qt::Key_R, Qt::Key_S, Qt::Key_W,
              Qt::Key_Y, Qt::Key_QuoteLeft},
         "alt", "| B F G L R S W Y \\` | media keys | the page gets them with Alt", ""},
        {Keys{Qt::Key_PowerOff}, "standby", "| `XF86PowerOff` | power | asks the receiver for sta",
         ""},
        {Keys{Qt::Key_Settings}, "setup", "| settings | asks the receiver for its setup", ""},
        {Keys{Qt::Key_ChannelDown}, "shift+tab", "| channel down | the page gets Shift+Tab", ""},
    };
    return rows;
}

} // namespace

/** What people read of the remote's keys, held against the key table. */
class TestRemote : public QObject
{
    Q_OBJECT

private slots:
    void documents()
    {
        const QString document = textOf("docs/remote.md");
        const QString help = textOf("desktop/run/help.sh");
        QSet<int> shown;
        for (const Shown &row : shownRows()) {
            QVERIFY2(document.contains(row.document), qPrintable(row.document));
            QVERIFY2(help.contains(row.help), qPrintable(row.help));
            for (const int key : row.keys) {
                shown += key;
                const KeyRow *found = findKeyRow(key);
                QVERIFY2(found, qPrintable(row.document));
                QCOMPARE(effectOf(*found), row.effect);
            }
        }
        for (const auto &[first, last] : {std::pair(0x20, 0xff), {0x1000000, 0x1000200}}) {
            for (int key = first; key <= last; ++key)
                QVERIFY2(shown.contains(key) == bool(findKeyRow(key)),
                         qPrintable(QString("key %1 is in no document").arg(key, 0, 16)));
        }
    }

    void demo_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("effect");
        const auto row = [](const char *text, int key, const char *effect) {
            QTest::newRow(text) << key << QString(effect);
        };
        row("['Back', 'Esc, Backspace',", Qt::Key_Escape, "back");
        row("['Info, blue', 'Y, F4',", Qt::Key_F4, "ctrl");
        row("['Info, blue', 'Y,", Qt::Key_Y, "alt");
        row("['Play/pause, stop', 'R,", Qt::Key_R, "alt");
        row("['Play/pause, stop', 'R, S',", Qt::Key_S, "alt");
        row("['Rewind, forward', 'B,", Qt::Key_B, "alt");
        row("['Rewind, forward', 'B, F',", Qt::Key_F, "alt");
        row("'Page Up, Page Down',", Qt::Key_PageUp, "channel");
        row("mute', '+, \\u2212, `',", Qt::Key_QuoteLeft, "alt");
        row("['Red', 'F1',", Qt::Key_F1, "ctrl");
        row("['Green', 'F2',", Qt::Key_F2, "ctrl");
        row("['Yellow, audio', 'F3,", Qt::Key_F3, "ctrl");
        row("['Yellow, audio', 'F3, L',", Qt::Key_L, "alt");
        row("['Favourites', 'F11',", Qt::Key_F11, "favourites");
        row("['Help', 'G',", Qt::Key_G, "alt");
        row("['Exit', 'Home, U',", Qt::Key_Home, "quit");
        row("['Applications', 'F12',", Qt::Key_F12, "apps");
    }

    /** The demo portal's list of keys tells what the program makes of them. */
    void demo()
    {
        QFETCH(int, key);
        QFETCH(QString, effect);
        QCOMPARE(effectOf(*findKeyRow(key)), effect);
        QVERIFY(textOf("desktop/portal/js/pages/keys.js").contains(QTest::currentDataTag()));
    }
};

QTEST_APPLESS_MAIN(TestRemote)
#include "test_remote.moc"
