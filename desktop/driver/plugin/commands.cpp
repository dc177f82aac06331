// SPDX-License-Identifier: Apache-2.0
/*
 * What the driver may ask about windows, documents, scripts and loads.
 */
#include "desktop/driver/plugin/command_server.h"

#include <QJsonArray>
#include <QPointer>
#include <QStackedWidget>
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

QStackedWidget *stackOf(QWebView *view)
{
    return qobject_cast<QStackedWidget *>(view->parentWidget());
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
        {"setGeometry", {OpenWindow, &S::setGeometry}},
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
        {"scroll", {OpenFrame, &S::scroll}},
        {"waitForMark", {Nothing, &S::waitForMark}},
        {"picture", {OpenWindow, &S::picture}},
        {"cookies", {Loaded, &S::cookies}},
        {"changeCookies", {Loaded, &S::changeCookies}},
        {"prompt", {Nothing, &S::prompt}},
        {"closePrompt", {Nothing, &S::closePrompt}},
        {"writePrompt", {Nothing, &S::writePrompt}},
    };
    return table;
}

CommandServer::Answer CommandServer::windows(const Request &)
{
    return value(QJsonObject{{"handles", QJsonArray::fromStringList(m_pages.handles())},
                             {"shown", m_pages.shown()}});
}

CommandServer::Answer CommandServer::openWindow(const Request &request)
{
    QStackedWidget *stack = stackOf(request.view);
    QWidget *before = stack->currentWidget();
    const int count = stack->count();
    // As the box opens its favourites, over those that are there, only that the window of the
    // client stays in front.
    stack->setCurrentIndex(count - 1);
    QMetaObject::invokeMethod(request.view->window(), "WinOpenWebFavorites",
                              Q_ARG(QString, "about:blank"), Q_ARG(int, 0));
    auto *opened = qobject_cast<QWebView *>(stack->widget(count));
    stack->setCurrentWidget(before);
    if (!opened)
        return error("unsupported operation", "The box opened no second window.");
    return value(m_pages.handleOf(opened));
}

CommandServer::Answer CommandServer::closeWindow(const Request &request)
{
    QStackedWidget *stack = stackOf(request.view);
    if (stack->count() == 1)
        return value(QJsonArray());
    if (stack->indexOf(request.view) == 0)
        return error("unsupported operation", "The portal cannot be closed before its favourites.");
    stack->setCurrentWidget(request.view);
    m_prompts.acceptAll(true);
    QMetaObject::invokeMethod(request.view->window(), "WinCloseWebFavorites");
    m_prompts.acceptAll(false);
    return value(QJsonArray::fromStringList(m_pages.handles()));
}

CommandServer::Answer CommandServer::selectWindow(const Request &request)
{
    stackOf(request.view)->setCurrentWidget(request.view);
    request.view->setFocus(Qt::OtherFocusReason);
    return value({});
}

CommandServer::Answer CommandServer::setGeometry(const Request &request)
{
    QWidget *window = request.view->window();
    QRect box = window->geometry();
    if (request.params.contains("x"))
        box.moveTo(request.params.value("x").toInt(), request.params.value("y").toInt());
    if (request.params.contains("width"))
        box.setSize(
            {request.params.value("width").toInt(), request.params.value("height").toInt()});
    window->setGeometry(box);
    return value({});
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
    const QPointer<QWebFrame> frame(request.frame);
    const QJsonObject result = m_pages.run(request.frame, request.params.value("body").toString(),
                                           request.params.value("arguments").toArray(), ticket,
                                           request.params.value("async").toBool());
    // The script may have opened a dialog, which gave the answer.
    if (!result.isEmpty() || !m_running.contains(request.id))
        return result;
    if (!frame)
        return error("javascript error", "The document was left while the script ran.");
    pollScript(request, 0);
    return std::nullopt;
}

void CommandServer::pollScript(const Request &request, int waitMs)
{
    const QPointer<QWebFrame> frame(request.frame);
    const int ticket = m_tickets;
    QTimer::singleShot(waitMs, this, [this, request, frame, ticket, waitMs] {
        if (m_scriptTicket != ticket)
            return;
        if (!frame) {
            reply(request.id, error("javascript error", "The frame was left by the script."));
            return;
        }
        if (!m_prompts.open().isEmpty()) {
            reply(request.id, {{"value", QJsonValue()}, {"prompt", true}});
            return;
        }
        const QJsonObject result = m_pages.poll(frame, ticket);
        if (result.isEmpty())
            pollScript(request, std::min(waitMs + 1, 10));
        else
            reply(request.id, result);
    });
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
