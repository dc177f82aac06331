// SPDX-License-Identifier: Apache-2.0
#include "shell/dialogs/dialog_keys.h"

#include "shell/keys/key_table.h"

#include <Qt>

DialogKey dialogKeyOf(int key)
{
    switch (key) {
    case Qt::Key_Up: return DialogKey::Up;
    case Qt::Key_Down: return DialogKey::Down;
    case Qt::Key_Left:
    case Qt::Key_Backtab: return DialogKey::Left;
    case Qt::Key_Right:
    case Qt::Key_Tab: return DialogKey::Right;
    case Qt::Key_PageUp: return DialogKey::PageUp;
    case Qt::Key_PageDown: return DialogKey::PageDown;
    case Qt::Key_Select: return DialogKey::Ok;
    case Qt::Key_Back:
    case Qt::Key_F5: return DialogKey::Back;
    case Qt::Key_Delete: return DialogKey::Erase;
    default: break;
    }
    const KeyRow *row = findKeyRow(key);
    if (!row)
        return DialogKey::Text;
    switch (row->action) {
    case KeyAction::Ok: return DialogKey::Ok;
    case KeyAction::Back: return DialogKey::Back;
    case KeyAction::RunApp:
    case KeyAction::Standby:
    case KeyAction::Quit: return DialogKey::Box;
    case KeyAction::Post:
    case KeyAction::Channel:
    case KeyAction::Favourites: break;
    }
    return DialogKey::Text;
}
