// SPDX-License-Identifier: Apache-2.0
#include "shell/keys/key_table.h"

namespace {

constexpr char control[] = "In ministra portal, convert ctrl+";
constexpr char alt[] = "convert key to alt+";

using Action = KeyAction;
using Mod = PostedModifiers;

// clang-format off
constexpr KeyRow keyRows[] = {
    {Qt::Key_F1,        Action::Post,      Qt::Key_F1,        Mod::Control, control},
    {Qt::Key_F2,        Action::Post,      Qt::Key_F2,        Mod::Control, control},
    {Qt::Key_F3,        Action::Post,      Qt::Key_F3,        Mod::Control, control},
    {Qt::Key_F4,        Action::Post,      Qt::Key_F4,        Mod::Control, control},
    {Qt::Key_F5,        Action::Post,      Qt::Key_Backspace, Mod::Same,    "convert F5 to Backspace"},
    {Qt::Key_F11,       Action::Favourites, Qt::Key_F11,       Mod::Control, "In portal, convert ctrl+F11"},
    {Qt::Key_F12,       Action::RunApp,    0,                 Mod::None,    "", "apps"},
    {Qt::Key_Settings,  Action::RunApp,    0,                 Mod::None,    "", "setup"},
    {Qt::Key_PowerOff,  Action::Standby,   0,                 Mod::None,    "APP request standby"},
    {Qt::Key_Home,      Action::Quit,      0,                 Mod::None,    ""},
    {Qt::Key_U,         Action::Quit,      0,                 Mod::None,    ""},
    {Qt::Key_PageUp,    Action::Channel,   Qt::Key_Tab,       Mod::None,    "convert key to ch+"},
    {Qt::Key_PageDown,  Action::Channel,   Qt::Key_Tab,       Mod::Shift,   "convert key to ch-"},
    {Qt::Key_ChannelDown, Action::Post,    Qt::Key_Tab,       Mod::Shift,   alt},
    {Qt::Key_Return,    Action::Ok,        0,                 Mod::None,    "Key_Enter"},
    {Qt::Key_Enter,     Action::Ok,        0,                 Mod::None,    "Key_Enter"},
    {Qt::Key_Escape,    Action::Back,      0,                 Mod::None,    ""},
    {Qt::Key_Backspace, Action::Back,      0,                 Mod::None,    ""},
    {Qt::Key_B,         Action::Post,      Qt::Key_B,         Mod::Alt,     alt},
    {Qt::Key_F,         Action::Post,      Qt::Key_F,         Mod::Alt,     alt},
    {Qt::Key_G,         Action::Post,      Qt::Key_G,         Mod::Alt,     alt},
    {Qt::Key_L,         Action::Post,      Qt::Key_L,         Mod::Alt,     alt},
    {Qt::Key_R,         Action::Post,      Qt::Key_R,         Mod::Alt,     alt},
    {Qt::Key_S,         Action::Post,      Qt::Key_S,         Mod::Alt,     alt},
    {Qt::Key_W,         Action::Post,      Qt::Key_W,         Mod::Alt,     alt},
    {Qt::Key_Y,         Action::Post,      Qt::Key_Y,         Mod::Alt,     alt},
    {Qt::Key_QuoteLeft, Action::Post,      Qt::Key_QuoteLeft, Mod::Alt,     alt},
};
// clang-format on

} // namespace

const KeyRow *findKeyRow(int key)
{
    for (const KeyRow &row : keyRows) {
        if (row.key == key)
            return &row;
    }
    return nullptr;
}

Qt::KeyboardModifiers postedModifiers(PostedModifiers modifiers, Qt::KeyboardModifiers incoming)
{
    switch (modifiers) {
    case PostedModifiers::Same: return incoming;
    case PostedModifiers::Control: return Qt::ControlModifier;
    case PostedModifiers::Shift: return Qt::ShiftModifier;
    case PostedModifiers::Alt: return Qt::AltModifier;
    case PostedModifiers::None: break;
    }
    return Qt::NoModifier;
}
