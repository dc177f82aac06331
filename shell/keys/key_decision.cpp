// SPDX-License-Identifier: Apache-2.0
#include "shell/keys/key_decision.h"

#include <Qt>

KeyRoute routeKey(int key, const KeyState &state)
{
    const bool closesCombobox =
        key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter;
    if (state.listTakesKey && closesCombobox)
        return KeyRoute::SwallowedAfterCombobox;
    if (!state.spontaneous)
        return KeyRoute::PassedOn;
    if (state.powerOff && key != Qt::Key_PowerOff)
        return KeyRoute::SwallowedWhileOff;
    return state.keyboardShown ? KeyRoute::ToKeyboard : KeyRoute::Translated;
}

bool takesChannelKeys(const QString &place, bool tvMenuVisible, int timeshiftState)
{
    return place == "tv" && !tvMenuVisible && timeshiftState == 0;
}

namespace {

BackDecision decideInLauncher(const BackSituation &situation, const BackQuestions &page)
{
    if (!situation.mainAppMode && page.launcherFrameShown())
        return BackDecision::QuitByLauncher;
    return situation.escape ? BackDecision::PostBackspace : BackDecision::Pass;
}

BackDecision decideInPortal(const BackSituation &situation, const BackQuestions &page)
{
    const PortalParts parts = page.portalParts();
    if (parts.mainMenu) {
        const bool nothingElse = !situation.mainAppMode && !parts.mainMenuSibling;
        return nothingElse ? BackDecision::QuitByMainMenu : BackDecision::Pass;
    }
    if (parts.cutOff || parts.loader)
        return BackDecision::QuitBySpecialMenu;
    if (situation.url == situation.portalUrl)
        return BackDecision::Pass;
    return situation.portalUrl.isEmpty() ? BackDecision::QuitInvalidPage
                                         : BackDecision::LeaveForeignPage;
}

} // namespace

BackDecision decideBack(const BackSituation &situation, const BackQuestions &page)
{
    switch (situation.pageMode) {
    case PageMode::Application: return BackDecision::LeaveApplication;
    case PageMode::Settings: return BackDecision::Pass;
    case PageMode::Portal: break;
    }
    return isLauncher(situation.url.toString()) ? decideInLauncher(situation, page)
                                                : decideInPortal(situation, page);
}
