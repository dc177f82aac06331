// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/endpoints.h"

#include "desktop/driver/session.h"
#include "desktop/driver/webdriver_error.h"

#include <QStringList>
#include <QUrl>

namespace {

using S = Session;

// clang-format off
constexpr Endpoint endpoints[] = {
    {"POST",   "/session",                                          nullptr},
    {"GET",    "/status",                                           nullptr},
    {"DELETE", "/session/{session id}",                             nullptr},
    {"GET",    "/session/{session id}/timeouts",                    &S::getTimeouts},
    {"POST",   "/session/{session id}/timeouts",                    &S::setTimeouts},
    {"POST",   "/session/{session id}/url",                         &S::navigate},
    {"GET",    "/session/{session id}/url",                         &S::url},
    {"POST",   "/session/{session id}/back",                        &S::back},
    {"POST",   "/session/{session id}/forward",                     &S::forward},
    {"POST",   "/session/{session id}/refresh",                     &S::refresh},
    {"GET",    "/session/{session id}/title",                       &S::title},
    {"GET",    "/session/{session id}/window",                      &S::windowHandle},
    {"DELETE", "/session/{session id}/window",                      &S::closeWindow},
    {"POST",   "/session/{session id}/window",                      &S::switchToWindow},
    {"GET",    "/session/{session id}/window/handles",              &S::windowHandles},
    {"POST",   "/session/{session id}/window/new",                  &S::newWindow},
    {"POST",   "/session/{session id}/frame",                       &S::switchToFrame},
    {"POST",   "/session/{session id}/frame/parent",                &S::switchToParentFrame},
    {"GET",    "/session/{session id}/window/rect",                 &S::windowRect},
    {"POST",   "/session/{session id}/window/rect",                 &S::setWindowRect},
    {"POST",   "/session/{session id}/window/maximize",             &S::changeWindowState},
    {"POST",   "/session/{session id}/window/minimize",             &S::changeWindowState},
    {"POST",   "/session/{session id}/window/fullscreen",           &S::changeWindowState},
    {"GET",    "/session/{session id}/element/active",              &S::activeElement},
    {"GET",    "/session/{session id}/element/{element id}/shadow", &S::elementState},
    {"POST",   "/session/{session id}/element",                     &S::findElement},
    {"POST",   "/session/{session id}/elements",                    &S::findElements},
    {"POST",   "/session/{session id}/element/{element id}/element",  &S::findElement},
    {"POST",   "/session/{session id}/element/{element id}/elements", &S::findElements},
    {"POST",   "/session/{session id}/shadow/{shadow id}/element",  &S::findInShadowRoot},
    {"POST",   "/session/{session id}/shadow/{shadow id}/elements", &S::findInShadowRoot},
    {"GET",    "/session/{session id}/element/{element id}/selected", &S::elementState},
    {"GET",    "/session/{session id}/element/{element id}/displayed", &S::elementState},
    {"GET",    "/session/{session id}/element/{element id}/attribute/{name}", &S::elementState},
    {"GET",    "/session/{session id}/element/{element id}/property/{name}", &S::elementState},
    {"GET",    "/session/{session id}/element/{element id}/css/{name}", &S::elementState},
    {"GET",    "/session/{session id}/element/{element id}/text",   &S::elementState},
    {"GET",    "/session/{session id}/element/{element id}/name",   &S::elementState},
    {"GET",    "/session/{session id}/element/{element id}/rect",   &S::elementState},
    {"GET",    "/session/{session id}/element/{element id}/enabled", &S::elementState},
    {"GET",    "/session/{session id}/element/{element id}/computedrole", &S::elementState},
    {"GET",    "/session/{session id}/element/{element id}/computedlabel", &S::elementState},
    {"POST",   "/session/{session id}/element/{element id}/click",  &S::click},
    {"POST",   "/session/{session id}/element/{element id}/clear",  &S::clear},
    {"POST",   "/session/{session id}/element/{element id}/value",  &S::sendKeys},
    {"GET",    "/session/{session id}/source",                      &S::source},
    {"POST",   "/session/{session id}/execute/sync",                &S::executeSync},
    {"POST",   "/session/{session id}/execute/async",               &S::executeAsync},
    {"GET",    "/session/{session id}/cookie",                      &S::allCookies},
    {"GET",    "/session/{session id}/cookie/{name}",               &S::namedCookie},
    {"POST",   "/session/{session id}/cookie",                      &S::addCookie},
    {"DELETE", "/session/{session id}/cookie/{name}",               &S::deleteCookie},
    {"DELETE", "/session/{session id}/cookie",                      &S::deleteAllCookies},
    {"POST",   "/session/{session id}/actions",                     &S::performActions},
    {"DELETE", "/session/{session id}/actions",                     &S::releaseActions},
    {"POST",   "/session/{session id}/alert/dismiss",               &S::dismissAlert},
    {"POST",   "/session/{session id}/alert/accept",                &S::acceptAlert},
    {"GET",    "/session/{session id}/alert/text",                  &S::alertText},
    {"POST",   "/session/{session id}/alert/text",                  &S::sendAlertText},
    {"GET",    "/session/{session id}/screenshot",                  &S::screenshot},
    {"GET",    "/session/{session id}/element/{element id}/screenshot", &S::elementScreenshot},
    {"POST",   "/session/{session id}/print",                       &S::print},
    {"POST",   "/session/{session id}/vesprel/key",                 &S::pressRemoteKey},
    {"POST",   "/session/{session id}/vesprel/receiver",            &S::tellReceiver},
    {"GET",    "/session/{session id}/vesprel/commands",            &S::takeCommands},
    {"GET",    "/session/{session id}/vesprel/log",                 &S::takeLog},
    {"GET",    "/session/{session id}/vesprel/messages",            &S::takePageMessages},
    {"GET",    "/session/{session id}/vesprel/screen",              &S::screenPicture},
    {"POST",   "/session/{session id}/vesprel/playing",             &S::waitUntilPlaying},
};
// clang-format on

/** Whether the path is of this form; its variables and last word then go into the call. */
bool matches(const QStringList &form, const QStringList &path, CommandCall &call)
{
    if (form.size() != path.size())
        return false;
    call = {};
    for (int index = 0; index < form.size(); ++index) {
        const QString &part = form[index];
        const QString value = QUrl::fromPercentEncoding(path[index].toUtf8());
        if (part.startsWith('{')) {
            if (value.isEmpty())
                return false;
            call.variables[part.mid(1, part.size() - 2)] = value;
        } else if (part != value) {
            return false;
        } else {
            call.name = part;
        }
    }
    return true;
}

} // namespace

EndpointMatch matchEndpoint(const QString &method, const QString &path)
{
    const QStringList parts = path.section('?', 0, 0).split('/');
    bool known = false;
    for (const Endpoint &endpoint : endpoints) {
        CommandCall call;
        if (!matches(QString(endpoint.path).split('/'), parts, call))
            continue;
        known = true;
        if (method == QLatin1String(endpoint.method))
            return {&endpoint, call};
    }
    if (known)
        fail("unknown method", "The command does not take " + method + '.');
    fail("unknown command", "There is no command " + path.left(200) + '.');
}
