// SPDX-License-Identifier: Apache-2.0
#include "desktop/display/display.h"

#include "desktop/display/display_mark_format.h"
#include "desktop/display/key_symbols.h"
#include "desktop/display/xcb_reply.h"

#include <QBuffer>
#include <QImage>

#include <algorithm>
#include <mutex>

#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace {

/** Keys that hold or lock a modifier; what they give must stay as it is. */
QSet<quint8> modifierKeys(xcb_connection_t *connection)
{
    QSet<quint8> result;
    const auto reply = owned(
        xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr));
    if (!reply)
        return result;
    const xcb_keycode_t *codes = xcb_get_modifier_mapping_keycodes(reply.get());
    for (int index = 0; index < xcb_get_modifier_mapping_keycodes_length(reply.get()); ++index)
        result.insert(codes[index]);
    return result;
}

/** Connects from any thread: libXau keeps the name of the authority file in one static buffer. */
xcb_connection_t *connectTo(const QString &name)
{
    static std::mutex one;
    const std::lock_guard<std::mutex> lock(one);
    return xcb_connect(name.toLatin1().constData(), nullptr);
}

bool givesNothing(const xcb_keysym_t *levels, int count)
{
    return std::all_of(levels, levels + count, [](xcb_keysym_t symbol) { return symbol == 0; });
}

} // namespace

std::unique_ptr<Display> Display::open(const QString &name, Keyboard keyboard)
{
    xcb_connection_t *connection = connectTo(name);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        return nullptr;
    }
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const quint32 size = quint32(screen->width_in_pixels) << 16 | screen->height_in_pixels;
    std::unique_ptr<Display> display(new Display(connection, screen->root, size));
    display->arrangeKeyboard(keyboard);
    if (keyboard == Keyboard::Arranged)
        display->movePointer(0, 0);
    return display;
}

Display::Display(xcb_connection_t *connection, quint32 root, quint32 size)
    : m_connection(connection)
    , m_root(root)
    , m_width(int(size >> 16))
    , m_height(int(size & 0xffff))
{
}

Display::~Display()
{
    for (const quint8 code : std::as_const(m_borrowed))
        setKey(code, 0);
    xcb_flush(m_connection);
    xcb_disconnect(m_connection);
}

void Display::arrangeKeyboard(Keyboard keyboard)
{
    m_isKept = keyboard == Keyboard::Kept;
    const xcb_setup_t *setup = xcb_get_setup(m_connection);
    const quint8 first = setup->min_keycode;
    const int count = setup->max_keycode - setup->min_keycode + 1;
    const auto mapping = owned(xcb_get_keyboard_mapping_reply(
        m_connection, xcb_get_keyboard_mapping(m_connection, first, quint8(count)), nullptr));
    if (!mapping)
        return;
    const QSet<quint8> modifiers = modifierKeys(m_connection);
    const QSet<quint32> kept = keptSymbols();
    const xcb_keysym_t *symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    for (int index = 0; index < count; ++index) {
        const auto code = quint8(first + index);
        const xcb_keysym_t *levels = symbols + std::ptrdiff_t(index) * mapping->keysyms_per_keycode;
        const bool isKnown = m_isKept ? levels[0] != 0 : kept.contains(levels[0]);
        const bool isWanted = isKnown && !m_plain.contains(levels[0]);
        const bool isFree =
            m_isKept ? givesNothing(levels, mapping->keysyms_per_keycode) : !isWanted;
        if (isFree && !modifiers.contains(code)) {
            m_free += code;
            continue;
        }
        if (isWanted)
            m_plain[levels[0]] = code;
        if (mapping->keysyms_per_keycode > 1 && !m_shifted.contains(levels[1]))
            m_shifted[levels[1]] = code;
    }
    if (m_isKept)
        return;
    // Most characters have their key before a program reads the keyboard.
    const auto symbolsInUse = usualSymbols();
    for (const quint32 symbol : symbolsInUse) {
        if (!m_plain.contains(symbol))
            keyFor(symbol, false);
    }
    xcb_flush(m_connection);
}

void Display::setKey(quint8 code, quint32 symbol)
{
    // Twice: a single letter would be taken for the key of both its cases.
    const xcb_keysym_t symbols[] = {symbol, symbol};
    xcb_change_keyboard_mapping(m_connection, 1, code, 2, symbols);
}

quint8 Display::keyFor(quint32 symbol, bool shift)
{
    if (shift && m_shifted.contains(symbol))
        return m_shifted[symbol];
    const auto plain = m_plain.constFind(symbol);
    if (plain != m_plain.constEnd()) {
        const int place = m_free.indexOf(*plain);
        if (place >= 0)
            m_free.append(m_free.takeAt(place));
        return *plain;
    }
    if (m_free.isEmpty())
        return 0;
    const quint8 code = m_free.takeFirst();
    m_free.append(code);
    m_plain.remove(m_plain.key(code, 0));
    m_plain[symbol] = code;
    if (m_isKept)
        m_borrowed.insert(code);
    setKey(code, symbol);
    return code;
}

void Display::fake(quint8 type, quint8 detail, int x, int y)
{
    xcb_test_fake_input(m_connection, type, detail, XCB_CURRENT_TIME, m_root, qint16(x), qint16(y),
                        0);
    xcb_flush(m_connection);
}

void Display::pressKey(quint8 code, bool down)
{
    fake(down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code);
}

void Display::pressButton(quint8 button, bool down)
{
    fake(down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, button);
}

void Display::movePointer(int x, int y) { fake(XCB_MOTION_NOTIFY, 0, x, y); }

void Display::mark(quint32 window, quint32 number)
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = XCB_ATOM_STRING;
    event.data.data32[0] = displayMarkMagic;
    event.data.data32[1] = number;
    xcb_send_event(m_connection, 0, window, 0, reinterpret_cast<const char *>(&event));
    xcb_flush(m_connection);
}

quint32 Display::focusedWindow()
{
    const auto focus =
        owned(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    if (!focus)
        return 0;
    if (focus->focus != XCB_INPUT_FOCUS_POINTER_ROOT && focus->focus != m_root)
        return focus->focus;
    // Without a window manager keys go to the window below the pointer.
    const auto pointer = owned(
        xcb_query_pointer_reply(m_connection, xcb_query_pointer(m_connection, m_root), nullptr));
    return pointer ? pointer->child : 0;
}

Display::Focus Display::focus()
{
    constexpr quint32 longest = 256; // In units of four bytes.
    quint32 window = focusedWindow();
    while (window != 0 && window != m_root) {
        const auto property = owned(
            xcb_get_property_reply(m_connection,
                                   xcb_get_property(m_connection, 0, window, XCB_ATOM_WM_CLASS,
                                                    XCB_ATOM_STRING, 0, longest),
                                   nullptr));
        const int size = property ? xcb_get_property_value_length(property.get()) : 0;
        if (size > 0) {
            // Two texts with a NUL behind each, the second being the class.
            const auto *text = static_cast<const char *>(xcb_get_property_value(property.get()));
            return {window, QString::fromLatin1(QByteArray(text, size).split('\0').value(1))};
        }
        const auto tree = owned(
            xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr));
        window = tree ? tree->parent : 0;
    }
    return {};
}

QByteArray Display::picture()
{
    const auto reply =
        owned(xcb_get_image_reply(m_connection,
                                  xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_root, 0,
                                                0, quint16(m_width), quint16(m_height), ~0U),
                                  nullptr));
    if (!reply || xcb_get_image_data_length(reply.get()) < m_width * m_height * 4)
        return {};
    const QImage image(xcb_get_image_data(reply.get()), m_width, m_height, QImage::Format_RGB32);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG", 80);
    return bytes;
}
