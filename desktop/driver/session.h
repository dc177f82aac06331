// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/driver/actions.h"
#include "desktop/driver/box.h"
#include "desktop/driver/capabilities.h"
#include "desktop/driver/endpoints.h"

#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

/**
 * One session: a box, the window and frame that commands are for, and the settings of the client.
 * Commands come from any thread and are carried out one after the other.
 */
class Session
{
public:
    /** Starts the box; throws "session not created". */
    Session(const QString &id, const BoxPrograms &programs, const SessionRequest &request);

    QString id() const { return m_id; }

    /** The capabilities of the answer to New Session. */
    QJsonObject capabilities() const { return m_request.matched; }

    /** Carries out a command, after those before it. Throws WebDriverError. */
    QJsonValue execute(const Endpoint &endpoint, const CommandCall &call);

    /** Lets running commands fail, for the session's end. */
    void giveUp();

    /** Whether the program is gone or the last window was closed. */
    bool isOver() const { return m_over || m_box.isGone(); }

    /** Since when no command came or ran; 0 while one does. */
    std::chrono::steady_clock::duration idleTime() const;

    // The commands of the standard by their names there, then those of the box; each takes the
    // call's parameters, gives the value of the answer and throws WebDriverError. They are called
    // by execute(), one after the other.

    QJsonValue getTimeouts(const CommandCall &call);
    QJsonValue setTimeouts(const CommandCall &call);

    QJsonValue navigate(const CommandCall &call);
    QJsonValue url(const CommandCall &call);
    QJsonValue back(const CommandCall &call);
    QJsonValue forward(const CommandCall &call);
    QJsonValue refresh(const CommandCall &call);
    QJsonValue title(const CommandCall &call);

    QJsonValue windowHandle(const CommandCall &call);
    QJsonValue closeWindow(const CommandCall &call);
    QJsonValue switchToWindow(const CommandCall &call);
    QJsonValue windowHandles(const CommandCall &call);
    QJsonValue newWindow(const CommandCall &call);
    QJsonValue switchToFrame(const CommandCall &call);
    QJsonValue switchToParentFrame(const CommandCall &call);
    QJsonValue windowRect(const CommandCall &call);
    QJsonValue setWindowRect(const CommandCall &call);
    QJsonValue changeWindowState(const CommandCall &call);

    QJsonValue activeElement(const CommandCall &call);
    QJsonValue findElement(const CommandCall &call);
    QJsonValue findElements(const CommandCall &call);
    QJsonValue findInShadowRoot(const CommandCall &call);
    QJsonValue elementState(const CommandCall &call);
    QJsonValue click(const CommandCall &call);
    QJsonValue clear(const CommandCall &call);
    QJsonValue sendKeys(const CommandCall &call);

    QJsonValue source(const CommandCall &call);
    QJsonValue executeSync(const CommandCall &call);
    QJsonValue executeAsync(const CommandCall &call);
    QJsonValue allCookies(const CommandCall &call);
    QJsonValue namedCookie(const CommandCall &call);
    QJsonValue addCookie(const CommandCall &call);
    QJsonValue deleteCookie(const CommandCall &call);
    QJsonValue deleteAllCookies(const CommandCall &call);

    QJsonValue performActions(const CommandCall &call);
    QJsonValue releaseActions(const CommandCall &call);

    QJsonValue dismissAlert(const CommandCall &call);
    QJsonValue acceptAlert(const CommandCall &call);
    QJsonValue alertText(const CommandCall &call);
    QJsonValue sendAlertText(const CommandCall &call);
    QJsonValue screenshot(const CommandCall &call);
    QJsonValue elementScreenshot(const CommandCall &call);
    QJsonValue print(const CommandCall &call);

    QJsonValue pressRemoteKey(const CommandCall &call);
    QJsonValue tellReceiver(const CommandCall &call);
    QJsonValue takeCommands(const CommandCall &call);
    QJsonValue takeLog(const CommandCall &call);
    QJsonValue takePageMessages(const CommandCall &call);
    QJsonValue screenPicture(const CommandCall &call);
    QJsonValue waitUntilPlaying(const CommandCall &call);

private:
    /** For as long as it lives commands are for the window, whatever became of its frames. */
    class WholeWindow
    {
    public:
        explicit WholeWindow(Session &session)
            : m_frame(session.m_frame)
            , m_kept(std::exchange(session.m_frame, QString()))
        {
        }
        ~WholeWindow() { m_frame = m_kept; }
        WholeWindow(const WholeWindow &) = delete;
        WholeWindow &operator=(const WholeWindow &) = delete;

    private:
        QString &m_frame;
        QString m_kept;
    };

    /** For as long as it lives a command keeps the session in use. */
    class Use
    {
    public:
        explicit Use(Session &session);
        ~Use();
        Use(const Use &) = delete;
        Use &operator=(const Use &) = delete;

    private:
        Session &m_session;
    };

    /** Where the current frame is on the display. */
    struct Place
    {
        int x = 0;
        int y = 0;
        double width = 0;
        double height = 0;
        quint32 window = 0;
    };

    /** Asks the plugin; its answer whatever it is. Throws "timeout" if the program is stuck. */
    QJsonObject askOnce(const QString &method, const QJsonObject &params, const Deadline &deadline);

    /**
     * Asks the plugin once dialogs are handled and the page is loaded. Throws the error of the
     * answer.
     */
    QJsonObject ask(const QString &method, const QJsonObject &params = {});

    /** Calls a command of the page's scripts in the current frame; its value. */
    QJsonValue callPage(const QString &command, const QJsonArray &arguments = {});

    void handlePrompt(const QJsonObject &prompt);
    void closePrompt(bool accept);
    void requireWindow();
    void requirePrompt();
    void handlePrompts();
    QJsonObject state();
    QJsonObject elementOf(const CommandCall &call) const;

    QJsonArray find(const CommandCall &call, bool onlyFirst);
    QJsonValue arrangeWindow(const QJsonObject &wanted);
    QJsonValue runScript(const CommandCall &call, bool async);
    QJsonValue load(const QString &method, const QJsonObject &params);
    void waitForLoad(const Deadline &deadline);
    void waitForNewLoad(int loadsBefore);
    /** Tries until the element can be acted on, at most for the implicit time. */
    QJsonValue onceInteractable(const std::function<QJsonValue()> &action);
    void sendToElement(const QJsonObject &element, const QString &text);
    void chooseFiles(const QJsonObject &element, const QStringList &files, bool several);

    Place place();
    void settle(quint32 window);
    ActionContext actionContext();
    InputState &inputState() { return m_inputs[m_window]; }

    QString m_id;
    SessionRequest m_request;
    Box m_box;
    QString m_window = "portal";
    QString m_frame;            ///< Empty: the window's main frame.
    QStringList m_parentFrames; ///< The way to m_frame, from the main frame; stale without one.
    QHash<QString, InputState> m_inputs;
    QHash<QString, QString> m_sameSite; ///< What the engine's cookies do not keep.
    quint32 m_mark = 0;
    std::mutex m_turn;
    std::atomic<bool> m_over{false};
    std::atomic<int> m_commands{0}; ///< That run or wait for their turn.
    std::atomic<std::chrono::steady_clock::duration::rep> m_lastUse;
};
