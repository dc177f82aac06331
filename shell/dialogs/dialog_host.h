// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "shell/dialogs/dialog.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <functional>

class QKeyEvent;
class QWebPage;
class QWidget;

/**
 * Asks the viewer what pages ask, and sees to it that no question holds the box up.
 *
 * A page's script waits inside ask(), in an event loop of its own, with its frames on the stack.
 * Nothing that those use may be freed, and no other page put in their place, until that loop has
 * returned: whoever does either goes through whenAnswered(). While a dialog is open it takes the
 * keys of the remote from whatever widget they were meant for. GUI thread.
 */
class DialogHost : public QObject
{
    Q_OBJECT

public:
    /** Shows its dialogs over `window`, and only while that is visible. */
    explicit DialogHost(QWidget *window);
    ~DialogHost() override;

    /**
     * Shows a dialog of a page and waits for the answer. Answers by itself, as Back would, where
     * nobody can: the window is hidden, the box is in stand-by, another page is on its way, or
     * too many dialogs are open.
     */
    DialogAnswer ask(const Dialog &dialog, QWebPage *page);

    /** In stand-by nobody is asked; what is open is answered now. */
    void setStandby(bool standby);

    /**
     * Answers everything that is open, and runs `act` once the scripts that asked have come to
     * their ends; at once if there are none. Acts keep their order. A script that asks on and on
     * is abandoned, and the acts run without its end.
     */
    void whenAnswered(const std::function<void()> &act);

    /**
     * Runs a load that the page itself did not ask for. The page is not asked whether it may be
     * left, and asks the viewer nothing more until its successor is there or the load has failed.
     */
    void leave(QWebPage *page, const std::function<void()> &load);

    /** Every page that asks tells where it is: a new document has begun. */
    void pageArrived(const QWebPage *page);

    /** ... or its load has ended, well or not. */
    void pageFinished(const QWebPage *page);

signals:
    /** A key that is the box's business was pressed in a dialog; its Qt key code. */
    void boxKey(int key);

    /**
     * A script asks without end and stays on the stack for good. The engine holds all pages that
     * there are back until it returns: they must be replaced, and neither they nor their views may
     * be deleted.
     */
    void pagesAbandoned();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Level;

    bool answersItself(const QWebPage *page) const;
    DialogAnswer answerItself(const Dialog &dialog);
    DialogAnswer show(const Dialog &dialog);
    void answerAll();
    void abandonPages();
    void runPending();
    void watchKeys();
    bool takesKey(const QKeyEvent &event);

    QWidget *m_window;
    QList<Level *> m_levels; ///< dialogs that are open; the last is on top
    QList<std::function<void()>> m_pending;
    bool m_standby = false;
    QPointer<QWebPage> m_left; ///< the page that another replaces
    bool m_leaving = false;    ///< inside the load that replaces it
    int m_selfAnswered = 0;    ///< dialogs since the event loop last came round
    int m_heldKey = 0;         ///< the key that closed a dialog, until it is released
};
