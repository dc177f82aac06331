// SPDX-License-Identifier: Apache-2.0
#include "test_keyboard_page.h"

#include <QGuiApplication>
#include <QMap>
#include <QRegularExpression>
#include <QScreen>
#include <QSet>

#include <memory>

namespace {

struct TextRow
{
    const char *name;
    const char *given;
    const char *expected;
};

} // namespace

class TestKeyboardPage : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Keyboard> m_keyboard;

private slots:
    void init() { m_keyboard = std::make_unique<Keyboard>(); }

    void cleanup()
    {
        QCOMPARE(m_keyboard->errors(), QStringList());
        m_keyboard.reset();
    }

    void typing_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("typed");

        const TextRow rows[] = {
            {"shift for one letter", "shift v e s p r e l", "Vesprel"},
            {"shift that stays", "shift shift t v shift 1", "TV1"},
            {"blank", "a space b", "a b"},
            {"delete", "a b backspace c", "ac"},
            {"caret by one", "a c left b right d", "abcd"},
            {"caret to both ends", "b start a end c", "abc"},
            {"another layout", "layout shift п р", "Пр"},
            {"symbols and back", "page u005c u0022 page a", "\\\"a"},
            {"several characters", "page http page h", "http://h"},
            {"layout from symbols", "page layout ы", "ы"},
            {"Turkish capitals", "layout layout layout layout shift shift i ı", "İI"},
            {"German capital sharp s", "layout layout layout shift ß ß", "ẞß"}};
        for (const auto &row : rows)
            QTest::newRow(row.name) << row.given << row.expected;
    }

    /** Everything is done with the arrow keys and OK. */
    void typing()
    {
        QFETCH(QString, keys);
        QVERIFY(m_keyboard->load());
        QVERIFY(m_keyboard->pressKeys(keys));
        QTEST(m_keyboard->webWindow.typed, "typed");
    }

    void enterIsSentAndLeavesClosingToThePortal()
    {
        QVERIFY(m_keyboard->load());
        QVERIFY(m_keyboard->pressKeys("a enter"));
        QCOMPARE(m_keyboard->webWindow.ids, QStringList({"a", "enter"}));
        QCOMPARE(m_keyboard->webWindow.enters, 1);
        QCOMPARE(m_keyboard->stb.hides, 0);
    }

    void closing()
    {
        QVERIFY(m_keyboard->load());
        m_keyboard->press(Qt::Key_Backspace);
        QCOMPARE(m_keyboard->stb.hides, 1);
        m_keyboard->press(Qt::Key_Escape);
        QCOMPARE(m_keyboard->stb.hides, 2);
        QVERIFY(m_keyboard->pressKeys("close"));
        QCOMPARE(m_keyboard->stb.hides, 3);
        QCOMPARE(m_keyboard->webWindow.ids, QStringList());
        // The window's own close would close a favourites page below the keyboard as well.
        QCOMPARE(m_keyboard->webWindow.closes, 0);
    }

    void shiftIsVisible()
    {
        QVERIFY(m_keyboard->load());
        QCOMPARE(m_keyboard->label("a"), QString("a"));
        QVERIFY(m_keyboard->pressKeys("shift"));
        QCOMPARE(m_keyboard->label("a"), QString("A"));
        QVERIFY(m_keyboard->key("shift").classes().contains("once"));
        QVERIFY(m_keyboard->pressKeys("shift"));
        QVERIFY(m_keyboard->key("shift").classes().contains("lock"));
        QVERIFY(m_keyboard->pressKeys("shift"));
        QCOMPARE(m_keyboard->label("a"), QString("a"));
    }

    void walking_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<QString>("to");

        const TextRow rows[] = {
            {"round the right end", "page R", "q"},
            {"round the left end", "close L", "end"},
            {"round the top", "1 U", "close"},
            {"onto the wide key straight below", "b D", "space"},
            {"across a wide key and back", "m DU", "m"},
            {"down from a wide key", "space LU", "c"},
            {"a sideways step sets a new way", "1 URRU", "m"},
        };
        for (const TextRow &row : rows)
            QTest::newRow(row.name) << row.given << row.expected;
    }

    /** A way is the key to start from and then steps left, right, up and down. */
    void walking()
    {
        QFETCH(QString, way);
        const QString from = way.section(' ', 0, 0);
        const QString steps = way.section(' ', 1);
        QVERIFY(m_keyboard->load());
        QVERIFY(m_keyboard->walkTo(from));
        // A wide key may have been reached off its centre; a step to and fro centres the way.
        m_keyboard->press(Qt::Key_Left);
        m_keyboard->press(Qt::Key_Right);
        const QMap<QChar, Qt::Key> arrows = {
            {'L', Qt::Key_Left}, {'R', Qt::Key_Right}, {'U', Qt::Key_Up}, {'D', Qt::Key_Down}};
        for (const QChar step : steps)
            m_keyboard->press(arrows[step]);
        QTEST(m_keyboard->focused(), "to");
    }

    /** A PC's own keyboard and mouse; the portal's side fails on a single quote. */
    void pcInput()
    {
        QVERIFY(m_keyboard->load());
        m_keyboard->typeOnPc("aB 1'\"%");
        m_keyboard->click("t");
        QCOMPARE(m_keyboard->webWindow.typed, QString("aB 1\"%t"));
        QCOMPARE(m_keyboard->focused(), QString("t"));
        QCOMPARE(m_keyboard->stb.hides, 0);
    }

    void layouts_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("offered");

        const char all[] = "en ru uk de tr";
        const TextRow rows[] = {
            {"the box's own", boxLayouts, all},
            {"empty", "", all},
            {"not JSON", "{layouts", all},
            {"null", "null", all},
            {"no order", R"({"layouts":["de"]})", all},
            {"texts for arrays", R"({"layouts":"de","order":"de"})", all},
            {"no layouts at all", R"({"layouts":[],"order":[]})", all},
            {"subset", R"({"layouts":["de","tr","en"],"order":["tr","en","de"]})", "tr en de"},
            {"order names more", R"({"layouts":["de"],"order":["en","de"]})", "de"},
            {"order names fewer", R"({"layouts":["en","uk"],"order":["uk"]})", "uk en"},
            {"unknown", R"({"layouts":["xx","ru",7],"order":[7,"ru","xx"]})", "ru"},
            {"named twice", R"({"layouts":["de","de"],"order":["de","de"]})", "de"},
        };
        for (const TextRow &row : rows)
            QTest::newRow(row.name) << row.given << row.expected;
    }

    void layouts()
    {
        QFETCH(QString, answer);
        QFETCH(QString, offered);
        const QMap<QString, QString> titles = {{"en", "English"},
                                               {"ru", "Русский"},
                                               {"uk", "Українська"},
                                               {"de", "Deutsch"},
                                               {"tr", "Türkçe"}};
        m_keyboard->stb.layouts = answer;
        QVERIFY(m_keyboard->load());
        const QStringList names = offered.split(' ');
        for (int i = 0; i < names.size(); ++i) {
            QCOMPARE(m_keyboard->label("space"), titles[names[i]]);
            const QString next = names[(i + 1) % names.size()];
            QVERIFY(m_keyboard->label("layout").endsWith(next.toUpper()));
            QVERIFY(m_keyboard->pressKeys("layout"));
        }
        QCOMPARE(m_keyboard->label("space"), titles[names.first()]);
    }

    void everyKey_data()
    {
        QTest::addColumn<QString>("layout");
        for (const char *layout : {"en", "ru", "uk", "de", "tr"})
            QTest::newRow(layout) << layout;
    }

    /** Names go into a script text unescaped on the portal's side, and so does a single quote. */
    void everyKey()
    {
        QFETCH(QString, layout);
        QVERIFY(m_keyboard->load());
        for (const char *page : {"letters", "symbols"}) {
            QSet<QString> names;
            const QVariantList rows = m_keyboard->rows(layout, page);
            QCOMPARE(rows.size(), 5);
            for (const QVariant &row : rows) {
                int columns = 0;
                for (const QVariant &value : row.toList()) {
                    const QVariantMap key = value.toMap();
                    const QString name = key["id"].toString();
                    QVERIFY2(!names.contains(name), qPrintable(name));
                    QVERIFY2(!name.contains(QRegularExpression(R"(['\\%])")), qPrintable(name));
                    QVERIFY2(!key["send"].toString().contains('\''), qPrintable(name));
                    names << name;
                    columns += key["w"].toInt();
                }
                QCOMPARE(columns, 14);
            }
        }
    }

    void placement_data()
    {
        QTest::addColumn<QRect>("field"); // on a screen of 1280x720
        QTest::addColumn<QString>("side");

        QTest::newRow("top") << QRect(400, 60, 480, 44) << "below";
        QTest::newRow("middle") << QRect(400, 338, 480, 44) << "below";
        QTest::newRow("below the middle") << QRect(400, 420, 480, 44) << "above";
        QTest::newRow("bottom") << QRect(400, 660, 480, 44) << "above";
        QTest::newRow("bottom, full width") << QRect(0, 676, 1280, 44) << "above";
        QTest::newRow("middle, full width") << QRect(0, 330, 1280, 60) << "below";
        QTest::newRow("thick in the middle") << QRect(0, 300, 1280, 120) << "below";
        QTest::newRow("tiny in the corner") << QRect(1278, 718, 2, 2) << "above";
        QTest::newRow("left half, full height") << QRect(0, 0, 400, 720) << "right";
        QTest::newRow("right half, full height") << QRect(900, 0, 380, 720) << "left";
        QTest::newRow("hanging over the edge") << QRect(-200, -20, 480, 200) << "below";
        QTest::newRow("no field") << QRect(0, 0, 0, 0) << "bottom centre";
        QTest::newRow("off the screen") << QRect(100, 5000, 300, 40) << "bottom centre";
        QTest::newRow("the whole screen") << QRect(0, 0, 1280, 720) << "bottom centre";
    }

    void placement()
    {
        QFETCH(QRect, field);
        QFETCH(QString, side);
        QVERIFY(m_keyboard->load());
        for (const double scale : {1.0, 1.5}) {
            const QRect screen({0, 0}, QSize(1280, 720) * scale);
            const QRect box(field.topLeft() * scale, field.size() * scale);
            const QRect keyboard = m_keyboard->place(screen.size(), box);
            QVERIFY(screen.contains(keyboard));
            QVERIFY(keyboard.height() > screen.height() / 5); // still legible
            if (side == "bottom centre") {
                QVERIFY(qAbs(keyboard.center().x() - screen.center().x()) <= 1);
                QVERIFY(screen.bottom() - keyboard.bottom() < screen.height() / 20);
                continue;
            }
            QVERIFY(!keyboard.intersects(box));
            const QString found = keyboard.top() > box.bottom()   ? "below"
                                  : keyboard.bottom() < box.top() ? "above"
                                  : keyboard.left() > box.right() ? "right"
                                                                  : "left";
            QCOMPARE(found, side);
        }
    }

    void askedPlace_data()
    {
        QTest::addColumn<QString>("info");
        QTest::addColumn<bool>("above");

        const int low = QGuiApplication::primaryScreen()->geometry().height() - 100;
        const QString info =
            R"({"result":{"x":10, "y":%1, "w":300, "h":40, "positionHint": "none"} })";
        QTest::newRow("field low on the screen") << info.arg(low) << true;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("not JSON") << "none" << false;
        QTest::newRow("no result") << "{}" << false;
        QTest::newRow("not numbers") << R"({"result":{"x":"a","y":500,"w":1,"h":1}})" << false;
    }

    /** The page asks the box about the field and has its view moved accordingly. */
    void askedPlace()
    {
        QFETCH(QString, info);
        QFETCH(bool, above);
        m_keyboard->windowMgr.info = info;
        QVERIFY(m_keyboard->load());
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        const QRect keyboard = m_keyboard->webWindow.geometry;
        QVERIFY(!keyboard.isEmpty());
        QVERIFY(screen.contains(keyboard));
        QCOMPARE(keyboard.center().y() < screen.center().y(), above);
    }

    /** Without the box's objects the page shows itself and stays quiet. */
    void plainBrowser()
    {
        m_keyboard = std::make_unique<Keyboard>(false);
        QVERIFY(m_keyboard->load());
        QVERIFY(m_keyboard->pressKeys("shift a layout enter close"));
        m_keyboard->press(Qt::Key_Escape);
        m_keyboard->click("space");
        QCOMPARE(m_keyboard->focused(), QString("space"));
    }
};

QTEST_MAIN(TestKeyboardPage)
#include "test_keyboard_page.moc"
