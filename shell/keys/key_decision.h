// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "shell/pages/page_kind.h"

#include <QUrl>

/*
 * What the key filter decides, without a window: the state comes in, the decision goes out.
 */

/** What is known when a key comes. */
struct KeyState
{
    bool listTakesKey = false; ///< a drop-down list that OK opened is still there
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

/** Where a key goes, given its code and what is known. */
KeyRoute routeKey(int key, const KeyState &state);

/** Whether channel keys are the portal's, given what it last told of itself. */
bool takesChannelKeys(const QString &place, bool tvMenuVisible, int timeshiftState);

/** Which of the portal's parts that decide on the back key are shown. */
struct PortalParts
{
    bool mainMenu = false;
    bool mainMenuSibling = false; ///< a sub-page is open beside the main menu
    bool cutOff = false;
    bool loader = false;
};

/** What the decision on a back key asks the page: each question at most once, and only if the
 * answer counts. */
class BackQuestions
{
public:
    virtual ~BackQuestions() = default;

    /** Whether one of the launcher's visible frames is the one that starts applications. */
    virtual bool launcherFrameShown() const = 0;

    /** Which of the portal's parts are shown. */
    virtual PortalParts portalParts() const = 0;
};

/** What is known of a back key without asking the page. */
struct BackSituation
{
    PageMode pageMode = PageMode::Portal;
    bool escape = false; ///< the key is Escape, not Backspace
    bool mainAppMode = false;
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

/** Decides on a back key. */
BackDecision decideBack(const BackSituation &situation, const BackQuestions &page);
