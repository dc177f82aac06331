// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/plugin/typing.h"

#include <QCoreApplication>
#include <QHash>
#include <QKeyEvent>
#include <QPointer>
#include <QTextBoundaryFinder>
#include <QWidget>

namespace {

struct Key
{
    int key = 0;
    QString text;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};

constexpr char32_t nullKey = 0xe000;

/** The modifier that a key holds down, none for other keys. */
Qt::KeyboardModifier modifierOf(char32_t code)
{
    switch (code) {
    case 0xe008:
    case 0xe050: return Qt::ShiftModifier;
    case 0xe009:
    case 0xe051: return Qt::ControlModifier;
    case 0xe00a:
    case 0xe052: return Qt::AltModifier;
    case 0xe03d:
    case 0xe053: return Qt::MetaModifier;
    default: return Qt::NoModifier;
    }
}

int keyOfModifier(Qt::KeyboardModifier modifier)
{
    switch (modifier) {
    case Qt::ShiftModifier: return Qt::Key_Shift;
    case Qt::ControlModifier: return Qt::Key_Control;
    case Qt::AltModifier: return Qt::Key_Alt;
    default: return Qt::Key_Meta;
    }
}

Key specialKey(char32_t code)
{
    static const QHash<uint, Key> keys = {
        {0xe001, {Qt::Key_Cancel, {}, {}}},
        {0xe002, {Qt::Key_Help, {}, {}}},
        {0xe003, {Qt::Key_Backspace, "\b", {}}},
        {0xe004, {Qt::Key_Tab, "\t", {}}},
        {0xe005, {Qt::Key_Clear, {}, {}}},
        {0xe006, {Qt::Key_Return, "\r", {}}},
        {0xe007, {Qt::Key_Enter, "\r", Qt::KeypadModifier}},
        {0xe00b, {Qt::Key_Pause, {}, {}}},
        {0xe00c, {Qt::Key_Escape, "\x1b", {}}},
        {0xe00d, {Qt::Key_Space, " ", {}}},
        {0xe00e, {Qt::Key_PageUp, {}, {}}},
        {0xe00f, {Qt::Key_PageDown, {}, {}}},
        {0xe010, {Qt::Key_End, {}, {}}},
        {0xe011, {Qt::Key_Home, {}, {}}},
        {0xe012, {Qt::Key_Left, {}, {}}},
        {0xe013, {Qt::Key_Up, {}, {}}},
        {0xe014, {Qt::Key_Right, {}, {}}},
        {0xe015, {Qt::Key_Down, {}, {}}},
        {0xe016, {Qt::Key_Insert, {}, {}}},
        {0xe017, {Qt::Key_Delete, "\x7f", {}}},
        {0xe018, {Qt::Key_Semicolon, ";", {}}},
        {0xe019, {Qt::Key_Equal, "=", Qt::KeypadModifier}},
        {0xe024, {Qt::Key_Asterisk, "*", Qt::KeypadModifier}},
        {0xe025, {Qt::Key_Plus, "+", Qt::KeypadModifier}},
        {0xe026, {Qt::Key_Comma, ",", Qt::KeypadModifier}},
        {0xe027, {Qt::Key_Minus, "-", Qt::KeypadModifier}},
        {0xe028, {Qt::Key_Period, ".", Qt::KeypadModifier}},
        {0xe029, {Qt::Key_Slash, "/", Qt::KeypadModifier}},
        {0xe040, {Qt::Key_Zenkaku_Hankaku, {}, {}}},
        {0xe054, {Qt::Key_PageUp, {}, Qt::KeypadModifier}},
        {0xe055, {Qt::Key_PageDown, {}, Qt::KeypadModifier}},
        {0xe056, {Qt::Key_End, {}, Qt::KeypadModifier}},
        {0xe057, {Qt::Key_Home, {}, Qt::KeypadModifier}},
        {0xe058, {Qt::Key_Left, {}, Qt::KeypadModifier}},
        {0xe059, {Qt::Key_Up, {}, Qt::KeypadModifier}},
        {0xe05a, {Qt::Key_Right, {}, Qt::KeypadModifier}},
        {0xe05b, {Qt::Key_Down, {}, Qt::KeypadModifier}},
        {0xe05c, {Qt::Key_Insert, {}, Qt::KeypadModifier}},
        {0xe05d, {Qt::Key_Delete, "\x7f", Qt::KeypadModifier}},
    };
    if (code >= 0xe01a && code <= 0xe023) {
        const int digit = int(code - 0xe01a);
        return {Qt::Key_0 + digit, QString::number(digit), Qt::KeypadModifier};
    }
    if (code >= 0xe031 && code <= 0xe03c)
        return {Qt::Key_F1 + int(code - 0xe031), {}, {}};
    return keys.value(uint(code));
}

/** The key that writes a text of one visible character. */
Key characterKey(const QString &character)
{
    if (character == "\n")
        return {Qt::Key_Return, "\r", {}};
    if (character == "\t")
        return {Qt::Key_Tab, "\t", {}};
    const QChar first = character.at(0);
    if (character.size() > 1 || first.unicode() > 0xff)
        return {Qt::Key_unknown, character, {}};
    static const QString shifted = "~!@#$%^&*()_+{}|:\"<>?";
    const bool shift = first.isUpper() || shifted.contains(first);
    return {first.toUpper().unicode(), character, shift ? Qt::ShiftModifier : Qt::NoModifier};
}

class Typist
{
public:
    explicit Typist(QWidget &view)
        : m_view(&view)
    {
    }

    void type(const QString &cluster)
    {
        const char32_t code = cluster.size() == 1 ? cluster.at(0).unicode() : 0;
        if (code == nullKey)
            releaseModifiers();
        else if (const Qt::KeyboardModifier modifier = modifierOf(code))
            toggle(modifier);
        else
            press(code >= 0xe000 && code <= 0xe05d ? specialKey(code) : characterKey(cluster));
    }

    void releaseModifiers()
    {
        for (const Qt::KeyboardModifier modifier :
             {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
            if (m_held & modifier)
                toggle(modifier);
        }
    }

private:
    void send(QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString &text)
    {
        if (!m_view)
            return;
        QKeyEvent event(type, key, modifiers, text);
        QCoreApplication::sendEvent(m_view, &event);
    }

    void toggle(Qt::KeyboardModifier modifier)
    {
        const bool down = !(m_held & modifier);
        m_held.setFlag(modifier, down);
        send(down ? QEvent::KeyPress : QEvent::KeyRelease, keyOfModifier(modifier),
             down ? m_held & ~Qt::KeyboardModifiers(modifier) : m_held | modifier, {});
    }

    void press(const Key &key)
    {
        const bool addsShift = (key.modifiers & Qt::ShiftModifier) && !(m_held & Qt::ShiftModifier);
        if (addsShift)
            toggle(Qt::ShiftModifier);
        const Qt::KeyboardModifiers modifiers = m_held | key.modifiers;
        QString text = key.text;
        if (m_held & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
            text.clear();
        else if ((m_held & Qt::ShiftModifier) && text.size() == 1)
            text = text.toUpper();
        send(QEvent::KeyPress, key.key, modifiers, text);
        send(QEvent::KeyRelease, key.key, modifiers, text);
        if (addsShift)
            toggle(Qt::ShiftModifier);
    }

    QPointer<QWidget> m_view;
    Qt::KeyboardModifiers m_held;
};

} // namespace

void typeText(QWidget &view, const QString &text)
{
    Typist typist(view);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    int begin = 0;
    for (int end = finder.toNextBoundary(); end >= 0; end = finder.toNextBoundary()) {
        typist.type(text.mid(begin, end - begin));
        begin = end;
    }
    typist.releaseModifiers();
}
