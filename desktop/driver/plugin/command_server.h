// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/driver/plugin/display_mark.h"
#include "desktop/driver/plugin/pages.h"
#include "desktop/driver/plugin/prompts.h"
#include "desktop/driver/plugin/touch_screen.h"

#include <QJsonObject>
#include <QLocalSocket>
#include <QObject>
#include <QVector>

#include <optional>

class QWebFrame;
class QWebView;

/**
 * Answers the driver's requests: one JSON object a line in each direction, over a local socket. A
 * request is {"id", "method", "window", "frame", "strategy", "params"}, its answer {"id"} with
 * "value" or "error" and "message". What the program tells by itself is {"event", ...}. GUI thread.
 */
class CommandServer : public QObject
{
    Q_OBJECT

public:
    explicit CommandServer(QObject *parent = nullptr);

    /** Connects to the driver; without it the program ends, since nobody else would end it. */
    void connectTo(const QString &socketPath);

private:
    using Answer = std::optional<QJsonObject>; ///< Nothing: the answer comes later.

    struct Request
    {
        int id = 0;
        QString method;
        QJsonObject params;
        QString window;
        QWebView *view = nullptr;
        QString frameName;
        QWebFrame *frame = nullptr;
    };

    /** What a method needs before it is carried out. */
    enum Needs {
        Nothing = 0,
        OpenWindow = 1, ///< The window; no dialog before it.
        OpenFrame = 3,  ///< The same and the frame.
        Loaded = 7,     ///< The same, and no load is running.
    };

    struct Method
    {
        int needs;
        Answer (CommandServer::*run)(const Request &request);
    };

    static const QHash<QString, Method> &methods();
    static QJsonObject value(const QJsonValue &result) { return {{"value", result}}; }

    void readRequests();
    void handle(const QJsonObject &message);
    QJsonObject refusal(int needs, Request &request, const QJsonObject &message);
    void reply(int id, const QJsonObject &answer);
    void send(const QJsonObject &message);
    void tellOfPrompt();
    void pollScript(const Request &request, int waitMs);
    QJsonObject scriptResult(const Request &request, int ticket);

    Answer windows(const Request &request);
    Answer openWindow(const Request &request);
    Answer closeWindow(const Request &request);
    Answer selectWindow(const Request &request);
    Answer arrange(const Request &request);
    Answer call(const Request &request);
    Answer script(const Request &request);
    Answer abandonScript(const Request &request);
    Answer state(const Request &request);
    Answer load(const Request &request);
    Answer traverse(const Request &request);
    Answer reload(const Request &request);
    Answer childFrame(const Request &request);
    Answer enterFrame(const Request &request);
    Answer place(const Request &request);
    Answer type(const Request &request);
    Answer pressSettings(const Request &request);
    Answer dropFiles(const Request &request);
    Answer scroll(const Request &request);
    Answer touch(const Request &request);
    Answer waitForMark(const Request &request);
    Answer picture(const Request &request);
    Answer print(const Request &request);
    Answer cookies(const Request &request);
    Answer changeCookies(const Request &request);
    Answer prompt(const Request &request);
    Answer closePrompt(const Request &request);
    Answer writePrompt(const Request &request);

    QLocalSocket m_socket;
    QByteArray m_input;
    Pages m_pages;
    Prompts m_prompts;
    DisplayMark m_mark;
    TouchScreen m_touchScreen;
    QVector<int> m_running; ///< Ids of requests that are on the stack, the innermost last.
    int m_scriptTicket = 0; ///< That of the script whose result is awaited.
    int m_tickets = 0;
    bool m_connected = false;
};
