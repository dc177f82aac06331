// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <Qt>

/** What a key of the remote control does. */
enum class KeyAction {
    Post,       ///< posts another key to the page
    Channel,    ///< posts another key while the portal's TV place takes channel keys
    Favourites, ///< leaves the favourites view, or posts another key in the launcher
    RunApp,     ///< asks the receiver for an application
    Standby,    ///< asks the receiver for stand-by
    Quit,       ///< asks for quitting the browser, and reaches the page as well
    Ok,         ///< acts on the focused element of a favourites page
    Back,       ///< leaves an application, a menu or the browser, depending on the page
};

/** Modifiers of a posted key. */
enum class PostedModifiers { Same, None, Control, Shift, Alt };

/** One row of the key table. */
struct KeyRow
{
    int key = 0; ///< Qt key code of the remote's key
    KeyAction action = KeyAction::Post;
    int postedKey = 0;                                 ///< for keys that post another
    PostedModifiers modifiers = PostedModifiers::Same; ///< of the posted key
    const char *record = "";      ///< what the log says of it; empty where the action says more
    const char *application = ""; ///< for RunApp, the receiver's name of it
};

/** The row of a key; null for keys that reach the page as they are. Any thread. */
const KeyRow *findKeyRow(int key);

/** The modifiers to post, given those of the incoming key. */
Qt::KeyboardModifiers postedModifiers(PostedModifiers modifiers, Qt::KeyboardModifiers incoming);
