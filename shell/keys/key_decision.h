// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "shell/pages/page_mode.h"

#include <QUrl>

/*
 * What the key filter decides, without a window: the state comes in, the decision goes out.
 */

/** What the window knows when a key comes. */
struct KeyState
{
    bool comboboxJustClosed = false;
    bool spontaneous = true;
    bool powerOff = false;
    bool keyboardShown = false;
};

/** Where a key goes before the key table is asked. */
enum class KeyRoute {
    SwallowedAfterCombobox, ///< it only closed the drop-down list
    PassedOn,               ///< posted by the program itself, never translated twice
    SwallowedWhileOff,
    ToKeyboard, ///< the on-screen keyboard takes all keys
    Translated,
};

/** Where a key goes, given its code and what the window knows. */
KeyRoute routeKey(int key, const KeyState &state);

/** The key as the on-screen keyboard's page wants it. */
int keyForKeyboard(int key);

/** Whether channel keys are the portal's, given what it last told of itself. */
bool takesChannelKeys(const QString &place, bool tvMenuVisible, int timeshiftState);

/** Whether a page is the launcher, which manages applications in frames of its own. */
bool isLauncher(const QString &url);

/** Which of the portal's parts that decide on the back key are shown. */
struct PortalParts
{
    bool mainMenu = false;
    bool mainMenuSibling = false; ///< a sub-page is open beside the main menu
    bool cutOff = false;
    bool loader = false;
};

/** Everything that decides on a back key; parts and frames only where the page was asked. */
struct BackSituation
{
    PageMode pageMode = PageMode::Portal;
    bool escape = false; ///< the key is Escape, not Backspace
    bool launcher = false;
    bool mainAppMode = false;
    bool launcherFrameShown = false;
    PortalParts parts;
    QUrl url;
    QUrl portalUrl;
};

/** What a back key does. Leaving asks the receiver, quitting hides the browser. */
enum class BackDecision {
    LeaveApplication,
    QuitByLauncher,
    LeaveForeignPage,
    QuitInvalidPage, ///< no portal has reported itself loaded yet
    QuitByMainMenu,
    QuitBySpecialMenu,
    PostBackspace, ///< the launcher knows Backspace, not Escape
    Pass,
};

/** Whether the decision needs to know if the launcher's frames start an application. */
bool needsLauncherFrames(const BackSituation &situation);

/** Whether the decision needs to know which parts of the portal are shown. */
bool needsPortalParts(const BackSituation &situation);

/** Decides on a back key; what the page was not asked for counts as not shown. */
BackDecision decideBack(const BackSituation &situation);
