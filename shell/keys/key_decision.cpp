// SPDX-License-Identifier: Apache-2.0
#include "shell/keys/key_decision.h"

#include <Qt>

KeyRoute routeKey(int key, const KeyState &state)
{
    const bool closesCombobox =
        key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter;
    if (state.comboboxJustClosed && closesCombobox)
        return KeyRoute::SwallowedAfterCombobox;
    if (!state.spontaneous)
        return KeyRoute::PassedOn;
    if (state.powerOff && key != Qt::Key_PowerOff)
        return KeyRoute::SwallowedWhileOff;
    return state.keyboardShown ? KeyRoute::ToKeyboard : KeyRoute::Translated;
}

int keyForKeyboard(int key) { return key == Qt::Key_F5 ? int(Qt::Key_Backspace) : key; }

bool takesChannelKeys(const QString &place, bool tvMenuVisible, int timeshiftState)
{
    return place == "tv" && !tvMenuVisible && timeshiftState == 0;
}

bool isLauncher(const QString &url)
{
    return url.contains("vesprel_launcher_apps/magcore-core-ministra");
}

bool needsLauncherFrames(const BackSituation &situation)
{
    return situation.pageMode == PageMode::Portal && situation.launcher && !situation.mainAppMode;
}

bool needsPortalParts(const BackSituation &situation)
{
    return situation.pageMode == PageMode::Portal && !situation.launcher;
}

namespace {

BackDecision fallThrough(const BackSituation &situation)
{
    return situation.escape && situation.launcher ? BackDecision::PostBackspace
                                                  : BackDecision::Pass;
}

BackDecision decideInPortal(const BackSituation &situation)
{
    const PortalParts &parts = situation.parts;
    if (parts.mainMenu) {
        const bool nothingElse = !situation.mainAppMode && !parts.mainMenuSibling;
        return nothingElse ? BackDecision::QuitByMainMenu : fallThrough(situation);
    }
    if (parts.cutOff || parts.loader)
        return BackDecision::QuitBySpecialMenu;
    if (situation.url == situation.portalUrl)
        return fallThrough(situation);
    return situation.portalUrl.isEmpty() ? BackDecision::QuitInvalidPage
                                         : BackDecision::LeaveForeignPage;
}

} // namespace

BackDecision decideBack(const BackSituation &situation)
{
    if (situation.pageMode == PageMode::Application)
        return BackDecision::LeaveApplication;
    if (needsPortalParts(situation))
        return decideInPortal(situation);
    if (needsLauncherFrames(situation) && situation.launcherFrameShown)
        return BackDecision::QuitByLauncher;
    return situation.pageMode == PageMode::Portal ? fallThrough(situation) : BackDecision::Pass;
}
