// SPDX-License-Identifier: Apache-2.0
/**
 * What drives the on-screen keyboard page in its test: the page in a real view, stand-ins for the
 * objects that the program publishes to it, and the viewer's hands.
 */
#pragma once

#include <QRect>
#include <QSignalSpy>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QUrl>
#include <QVariant>
#include <QWebElement>
#include <QWebFrame>
#include <QWebPage>
#include <QWebView>

/** What a box answers when the page asks for its layouts. */
inline const char boxLayouts[] = R"({"layouts":["en", "ru", "uk", "de", "tr"],)"
                                 R"("order":["en", "ru", "uk", "de", "tr"] })";

/** Stands in for the gSTB object. */
class FakeStb : public QObject
{
    Q_OBJECT

public:
    QString layouts = boxLayouts;
    int hides = 0;

public slots:
    void HideVirtualKeyboard() { ++hides; }
    QString LoadUserData(const QString &file) { return file == "keyboard.json" ? layouts : ""; }
};

/** Stands in for the window manager object. */
class FakeWindowMgr : public QObject
{
    Q_OBJECT

public:
    QString info = R"({"result":{"x":0, "y":0, "w":0, "h":0, "positionHint": "none"} })";

public slots:
    QString GetFocusedInputInfo() { return info; }
};

/** Stands in for the web window object; types as the portal's helper does, caret included. */
class FakeWebWindow : public QObject
{
    Q_OBJECT

public:
    QRect geometry;
    QString typed;
    QStringList ids;
    int caret = 0;
    int enters = 0;
    int closes = 0;

public slots:
    void SetGeometry(int x, int y, int w, int h) { geometry = QRect(x, y, w, h); }
    void SendVirtualKeypress(const QString &text, const QString &id)
    {
        ids << id;
        if (text == "Enter")
            ++enters;
        else if (text == "BackSpace" && caret > 0)
            typed.remove(--caret, 1);
        else if (text == "Left")
            --caret;
        else if (text == "Right")
            ++caret;
        else if (text == "Up")
            caret = 0;
        else if (text == "Down")
            caret = int(typed.size());
        else if (text != "BackSpace")
            insert(text == "Space" ? QString(" ") : text);
    }
    void close() { ++closes; }

private:
    void insert(const QString &text)
    {
        typed.insert(caret, text);
        caret += int(text.size());
    }
};

/** A page that keeps its script errors. */
class CheckedPage : public QWebPage
{
    Q_OBJECT

public:
    QStringList errors;

protected:
    void javaScriptConsoleMessage(const QString &message, int line, const QString &file) override
    {
        errors << QString("%1:%2: %3").arg(file).arg(line).arg(message);
    }
};

/** The keyboard page in a view without focus, as the program shows it, and the viewer's hands. */
class Keyboard
{
public:
    /** Without a box the page is alone, as in a plain browser. */
    explicit Keyboard(bool withBox = true)
    {
        m_view.setPage(&m_page);
        m_view.setFocusPolicy(Qt::NoFocus);
        m_view.resize(1280, 720);
        if (withBox) {
            QObject::connect(frame(), &QWebFrame::javaScriptWindowObjectCleared, &m_view, [this] {
                frame()->addToJavaScriptWindowObject("gSTB", &stb);
                frame()->addToJavaScriptWindowObject("stbWindowMgr", &windowMgr);
                frame()->addToJavaScriptWindowObject("stbWebWindow", &webWindow);
            });
        }
    }

    bool load()
    {
        m_view.show();
        QSignalSpy loaded(&m_view, &QWebView::loadFinished);
        m_view.load(QUrl("file:///" WEB_DIR "/keyboard/index.html"));
        return loaded.wait() && loaded.first().first().toBool();
    }

    QVariant evaluate(const QString &script) { return frame()->evaluateJavaScript(script); }

    QStringList errors() const { return m_page.errors; }

    void press(Qt::Key key) { QTest::keyClick(&m_view, key); }

    void typeOnPc(const QString &text) { QTest::keyClicks(&m_view, text); }

    void click(const QString &id)
    {
        evaluate("document.body.getBoundingClientRect()"); // has fresh keys laid out
        QTest::mouseClick(&m_view, Qt::LeftButton, {}, key(id).geometry().center());
    }

    QWebElement key(const QString &id)
    {
        return frame()->findFirstElement(QString("[data-key=\"%1\"]").arg(id));
    }

    QWebElement focusedKey() { return frame()->findFirstElement(".focused"); }

    QString focused() { return focusedKey().attribute("data-key"); }

    QString label(const QString &id) { return key(id).toPlainText().trimmed(); }

    /** All keys of a layout's page, row by row. */
    QVariantList rows(const QString &layout, const QString &page)
    {
        const QString script = "Keys.rows({layout: '%1', nextLayout: '%1', page: '%2',"
                               " shift: 'off'})";
        return evaluate(script.arg(layout, page)).toList();
    }

    /** Where the page would put itself for a screen and a field. */
    QRect place(const QSize &screen, const QRect &field)
    {
        const QString script = "(function (s, f) { return Placement.place(s, f,"
                               " Placement.size(s)); }({w: %1, h: %2},"
                               " {x: %3, y: %4, w: %5, h: %6}))";
        const QVariantMap at = evaluate(script.arg(screen.width())
                                            .arg(screen.height())
                                            .arg(field.x())
                                            .arg(field.y())
                                            .arg(field.width())
                                            .arg(field.height()))
                                   .toMap();
        return {at["x"].toInt(), at["y"].toInt(), at["w"].toInt(), at["h"].toInt()};
    }

    /** Walks to a key with the arrow keys; false when the way does not end. */
    bool walkTo(const QString &id)
    {
        const QString row = key(id).attribute("data-row");
        for (int steps = 0; focusedKey().attribute("data-row") != row; ++steps) {
            if (steps > 4)
                return false;
            press(Qt::Key_Down);
        }
        for (int steps = 0; focused() != id; ++steps) {
            if (steps > 14)
                return false;
            press(Qt::Key_Right);
        }
        return true;
    }

    /** Walks to each key of a list separated by blanks and presses OK on it. */
    bool pressKeys(const QString &ids)
    {
        const QStringList list = ids.split(' ');
        for (const QString &id : list) {
            if (!walkTo(id))
                return false;
            press(Qt::Key_Return);
        }
        return true;
    }

    FakeStb stb;
    FakeWindowMgr windowMgr;
    FakeWebWindow webWindow;

private:
    QWebFrame *frame() { return m_page.mainFrame(); }

    CheckedPage m_page;
    QWebView m_view;
};
