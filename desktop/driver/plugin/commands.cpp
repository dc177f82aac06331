// SPDX-License-Identifier: Apache-2.0
/*
 * What the driver may ask about documents, scripts and loads.
 */
#include "desktop/driver/plugin/command_server.h"

#include <QJsonArray>
#include <QTimer>
#include <QWebFrame>
#include <QWebHistory>
#include <QWebView>

#include <algorithm>

namespace {

QJsonObject error(const char *code, const QString &message)
{
    return {{"error", code}, {"message", message}};
}

} // namespace

const QHash<QString, CommandServer::Method> &CommandServer::methods()
{
    using S = CommandServer;
    static const QHash<QString, Method> table = {
        {"windows", {Nothing, &S::windows}},
        {"openWindow", {OpenWindow, &S::openWindow}},
        {"closeWindow", {OpenWindow, &S::closeWindow}},
        {"selectWindow", {OpenWindow, &S::selectWindow}},
        {"arrange", {OpenWindow, &S::arrange}},
        {"call", {Loaded, &S::call}},
        {"script", {Loaded, &S::script}},
        {"abandonScript", {Nothing, &S::abandonScript}},
        {"state", {Nothing, &S::state}},
        {"load", {OpenWindow, &S::load}},
        {"traverse", {OpenWindow, &S::traverse}},
        {"reload", {OpenWindow, &S::reload}},
        {"childFrame", {Loaded, &S::childFrame}},
        {"enterFrame", {OpenFrame, &S::enterFrame}},
        {"place", {OpenFrame, &S::place}},
        {"type", {Loaded, &S::type}},
        {"pressSettings", {OpenWindow, &S::pressSettings}},
        {"dropFiles", {Loaded, &S::dropFiles}},
        {"scroll", {OpenFrame, &S::scroll}},
        {"touch", {OpenWindow, &S::touch}},
        {"waitForMark", {Nothing, &S::waitForMark}},
        {"picture", {OpenWindow, &S::picture}},
        {"print", {Loaded, &S::print}},
        {"cookies", {Loaded, &S::cookies}},
        {"changeCookies", {Loaded, &S::changeCookies}},
        {"prompt", {Nothing, &S::prompt}},
        {"closePrompt", {Nothing, &S::closePrompt}},
        {"writePrompt", {Nothing, &S::writePrompt}},
    };
    return table;
}

CommandServer::Answer CommandServer::call(const Request &request)
{
    return m_pages.call(request.frame, request.params.value("command").toString(),
                        request.params.value("arguments").toArray());
}

CommandServer::Answer CommandServer::script(const Request &request)
{
    const int ticket = ++m_tickets;
    m_scriptTicket = ticket;
    const QJsonObject result = m_pages.run(request.frame, request.params.value("body").toString(),
                                           request.params.value("arguments").toArray(), ticket,
                                           request.params.value("async").toBool());
    // The script may have opened a dialog, which gave the answer.
    if (!result.isEmpty() || !m_running.contains(request.id))
        return result;
    pollScript(request, 0);
    return std::nullopt;
}

void CommandServer::pollScript(const Request &request, int waitMs)
{
    const int ticket = m_tickets;
    QTimer::singleShot(waitMs, this, [this, request, ticket, waitMs] {
        if (m_scriptTicket != ticket)
            return;
        if (!m_prompts.open().isEmpty()) {
            reply(request.id, {{"value", QJsonValue()}, {"prompt", true}});
            return;
        }
        const QJsonObject result = scriptResult(request, ticket);
        if (result.isEmpty())
            pollScript(request, std::min(waitMs + 1, 10));
        else
            reply(request.id, result);
    });
}

QJsonObject CommandServer::scriptResult(const Request &request, int ticket)
{
    if (QWebFrame *frame = m_pages.frame(request.window, request.frameName))
        return m_pages.poll(frame, ticket);
    // The script removed its own frame, perhaps as its last deed.
    QWebFrame *mainFrame = m_pages.frame(request.window, {});
    const QJsonObject kept = mainFrame ? m_pages.takeKept(mainFrame, ticket) : QJsonObject();
    return kept.isEmpty() ? error("javascript error", "The frame was left by the script.") : kept;
}

CommandServer::Answer CommandServer::abandonScript(const Request &)
{
    m_scriptTicket = 0;
    return value({});
}

CommandServer::Answer CommandServer::state(const Request &request)
{
    QJsonObject result{{"prompt", m_prompts.open()}};
    if (QWebView *view = m_pages.view(request.window)) {
        result["loading"] = m_pages.isLoading(view, false);
        result["beforeCommit"] = m_pages.isLoading(view, true);
        result["succeeded"] = m_pages.lastLoadSucceeded(view);
        result["loads"] = m_pages.loadCount(view);
        result["window"] = m_pages.handleOf(view);
        result["url"] = view->url().toString();
    }
    return value(result);
}

CommandServer::Answer CommandServer::load(const Request &request)
{
    const int before = m_pages.loadCount(request.view);
    m_prompts.acceptAll(true);
    request.view->load(QUrl(request.params.value("url").toString(), QUrl::TolerantMode));
    m_prompts.acceptAll(false);
    return value(m_pages.loadCount(request.view) != before);
}

CommandServer::Answer CommandServer::traverse(const Request &request)
{
    QWebHistory *history = request.view->history();
    const int before = m_pages.loadCount(request.view);
    m_prompts.acceptAll(true);
    if (request.params.value("delta").toInt() < 0)
        history->back();
    else
        history->forward();
    m_prompts.acceptAll(false);
    return value(m_pages.loadCount(request.view) != before);
}

CommandServer::Answer CommandServer::reload(const Request &request)
{
    m_prompts.acceptAll(true);
    request.view->triggerPageAction(QWebPage::ReloadAndBypassCache);
    m_prompts.acceptAll(false);
    return value(true);
}

CommandServer::Answer CommandServer::childFrame(const Request &request)
{
    const int index = request.params.value("index").toInt();
    QWebFrame *child = request.frame->childFrames().value(index);
    if (!child)
        return error("no such frame", "There is no frame of that number.");
    return value(m_pages.nameOf(child));
}

CommandServer::Answer CommandServer::enterFrame(const Request &) { return value({}); }

CommandServer::Answer CommandServer::prompt(const Request &) { return value(m_prompts.open()); }

CommandServer::Answer CommandServer::closePrompt(const Request &request)
{
    const int id = request.id;
    const bool found = m_prompts.close(request.params.value("accept").toBool(),
                                       [this, id] { reply(id, value(QJsonValue())); });
    if (found)
        return std::nullopt;
    return error("no such alert", "No dialog is open.");
}

CommandServer::Answer CommandServer::writePrompt(const Request &request)
{
    const QString type = m_prompts.open().value("type").toString();
    if (type.isEmpty())
        return error("no such alert", "No dialog is open.");
    if (!m_prompts.setText(request.params.value("text").toString()))
        return error("element not interactable", "The dialog has no field.");
    return value({});
}
