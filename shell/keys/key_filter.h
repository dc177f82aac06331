// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "shell/keys/drop_down_list.h"

#include <QObject>

class BrowserState;
class KeyboardPane;
class PageStack;
class QKeyEvent;
class QWebView;
class VesprelV2;
struct KeyRow;

/**
 * The remote control's keys on their way to the page: each key press of the current view passes
 * here first and is passed on, rewritten into another key that is posted to the same view, or
 * turned into a request. Releases are not looked at. GUI thread.
 */
class KeyFilter : public QObject
{
    Q_OBJECT

public:
    /**
     * Asks these for what it needs; all of them live as long as the filter. In main application
     * mode (Q_MAIN_APP_MODE) Back never quits from the main menu or the launcher.
     */
    KeyFilter(const PageStack &pages, KeyboardPane &keyboard, const BrowserState &browser,
              const VesprelV2 &gSTB, QObject *parent);

    /** Handles a key press of the current view; true if the page shall not get it. */
    bool filter(QWebView &view, const QKeyEvent &event);

    /** Does what a key does for the box rather than for a page: an application, stand-by, quit. */
    void pressBoxKey(int key);

signals:
    // What keys ask of the box or the receiver, one signal for each.
    void applicationRequested(const QString &name);
    void standbyRequested();

    /** Away from this page or application, to where the receiver came from. */
    void returnRequested();

    void quitRequested();
    void favouritesCloseRequested();

private:
    void actForBox(const KeyRow &row);

    // Each of these says whether the key is consumed.
    bool translate(QWebView &view, const QKeyEvent &event, const KeyRow &row);
    bool postTranslated(QWebView &view, const QKeyEvent &event, const KeyRow &row);
    bool isChannelKey();
    bool pressOk(QWebView &view, const QKeyEvent &event);
    bool goBack(QWebView &view, const QKeyEvent &event);
    bool quitLogged(const char *record);

    const PageStack &m_pages;
    KeyboardPane &m_keyboard;
    const BrowserState &m_browser;
    const VesprelV2 &m_gSTB;
    const bool m_mainAppMode;
    DropDownList m_list;
};
