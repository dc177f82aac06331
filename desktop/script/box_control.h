// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <functional>

/** What came of something that a script does to the box. */
struct BoxAnswer
{
    QString failure; ///< Empty: it was done.
    QString value;   ///< What an expression gave, for a person: texts as they are, others as JSON.
    bool isTrue = false;
};

/** What scripts do to the box beside the link: its remote, its page and its screen. GUI thread. */
class BoxControl
{
public:
    /** Is called once, unless the call is given up. May be called before the call returns. */
    using Done = std::function<void(const BoxAnswer &)>;

    BoxControl() = default;
    virtual ~BoxControl() = default;
    BoxControl(const BoxControl &) = delete;
    BoxControl &operator=(const BoxControl &) = delete;

    /** Presses and releases a key of the remote; done when the program has seen it. */
    virtual void pressKey(const QString &name, const Done &done) = 0;

    /** Evaluates an expression in the page on screen once that has loaded. */
    virtual void evaluate(const QString &expression, const Done &done) = 0;

    /** Calls what makes the portal load again; done when it has loaded. */
    virtual void reload(const std::function<void()> &trigger, const Done &done) = 0;

    /** Saves the whole screen, the video with it, as PNG. */
    virtual BoxAnswer savePicture(const QString &file) = 0;

    /** Forgets the call that is not done yet. */
    virtual void giveUp() = 0;

    /** What that call waits for, a sentence; empty if it is just being carried out. */
    virtual QString obstacle() const = 0;
};
