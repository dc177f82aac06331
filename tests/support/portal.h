// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "shell/window.h"
#include "tests/support/receiver_peer.h"

#include <QTemporaryDir>
#include <QVariant>

class QStackedWidget;
class QWebFrame;

/** Gives all box paths a temporary root for as long as it lives. */
class TemporaryRoot
{
public:
    TemporaryRoot();

    /** Writes a file below the root, its folders included, and returns its full path. */
    QString write(const QString &path, const QByteArray &content) const;

private:
    QTemporaryDir m_folder;
};

/**
 * A whole window on a temporary root, connected to a receiver of the test's own, with a page that
 * is written into the test. Scripts run in the current view's main frame.
 */
class Portal
{
public:
    Portal();

    /** Waits for the receiver to be reached and forgets what it was told; false after 5 s. */
    bool reachReceiver();

    /** Loads a page with this body and waits for it; the URL's last piece is `name`. */
    void load(const QByteArray &body, const QString &name = "portal.html");

    QVariant evaluate(const QString &script) const;
    QWebView *view() const;
    QStackedWidget *stack() const;

    /** What the page noted in its array `trace`, joined with blanks. */
    QString trace() const;
    void clearTrace() const;

    TemporaryRoot root;
    ReceiverPeer receiver;
    Window window;
};

/** Script source of a page that notes events, keys and debug texts in `trace`. */
extern const char tracingPage[];
