// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>
#include <QVector>

#include <memory>

struct xcb_connection_t;

/**
 * The display of a box: presses its keys, moves its pointer and takes its picture. A lost display
 * makes every function do nothing. One thread at a time.
 */
class Display
{
public:
    enum class Keyboard {
        Arranged, ///< Every usual key exists without Shift. Before any program starts there.
        Kept,     ///< A person's own: only keys that give nothing are borrowed for what it lacks.
    };

    /**
     * Connects and prepares the keyboard; none if that fails. From any thread. An arranged
     * display's pointer goes to the corner.
     */
    static std::unique_ptr<Display> open(const QString &name, Keyboard keyboard);

    ~Display();
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    /** The key that gives an X key symbol, shift telling whether Shift is held already. */
    quint8 keyFor(quint32 symbol, bool shift);

    void pressKey(quint8 code, bool down);
    void pressButton(quint8 button, bool down);
    void movePointer(int x, int y);

    /** Sends the mark of this number to a window, behind all input so far. */
    void mark(quint32 window, quint32 number);

    /** A window and its class, as window managers know it; 0 and empty: none. */
    struct Focus
    {
        quint32 window = 0;
        QString windowClass;
    };

    /** The window that keys go to now. */
    Focus focus();

    /** The whole screen as PNG; empty if it cannot be taken. */
    QByteArray picture();

private:
    Display(xcb_connection_t *connection, quint32 root, quint32 size);

    void arrangeKeyboard(Keyboard keyboard);
    quint32 focusedWindow();
    void setKey(quint8 code, quint32 symbol);
    void fake(quint8 type, quint8 detail, int x = 0, int y = 0);

    xcb_connection_t *m_connection;
    quint32 m_root;
    int m_width;
    int m_height;
    QHash<quint32, quint8> m_plain;   ///< Keys by what they give without Shift.
    QHash<quint32, quint8> m_shifted; ///< Keys by what they give with Shift.
    QVector<quint8> m_free;           ///< Keys for further symbols, the longest unused first.
    QSet<quint8> m_borrowed;          ///< Keys to be given back: they gave nothing before.
    bool m_isKept = false;
};
