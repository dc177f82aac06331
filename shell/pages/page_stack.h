// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "shell/pages/page_kind.h"

#include <QObject>
#include <QPointer>
#include <QStackedWidget>
#include <QUrl>

class DialogHost;
class PageArea;
class QWebView;
class TransparentView;

/**
 * The pages that a viewer sees: the portal at the bottom, over it any number of favourites pages.
 * Owns what is known of them: which view is current, what kind of page it shows, which URL was
 * asked for last and which page reported itself as the portal. The top view is the current one and
 * has the keys and the events. GUI thread.
 */
class PageStack : public QObject
{
    Q_OBJECT

public:
    /**
     * Makes an empty stack of this size (px) in a sub-window of the area. Its pages ask the viewer
     * by the dialog host, and go or are replaced only after what is open there is answered.
     */
    PageStack(PageArea *area, const QSize &size, DialogHost &dialogs, QObject *parent);

    /** Puts the portal's view at the bottom; its page uses the shared network access. */
    void addPortal();

    /** Opens a favourites page over the current one. */
    void openFavourites(const QUrl &url);

    /** Closes the topmost favourites page and deletes its view, once no script runs in it. */
    void closeFavourites();

    bool favouritesOpen() const;

    /** The view on top; null before the portal's and while the window goes. */
    QWebView *currentView() const;

    /** Evaluates a statement in the current view's main frame; nothing without a view. */
    QVariant evaluate(const QString &statement) const;

    /** Gives the current view the keyboard focus. */
    void focusCurrentView() const;

    /**
     * Loads a page in the current view, whatever its page says to that, and gives it the focus;
     * while a dialog is open, as soon as the script that waits for it has ended.
     */
    void load(const QUrl &url);

    /** Loads the last URL once more, if nothing has been loaded since pages were abandoned. */
    void loadBare();

    /** The URL that was given to load() last. */
    QUrl requestedUrl() const { return m_requestedUrl; }

    /** The current page reports itself as the portal. */
    void markPortal();

    /** The URL of the page that reported itself as the portal last; empty before. */
    QUrl portalUrl() const { return m_portalUrl; }

    /** Notes the kind of the page that a view went to; the last one counts. */
    void setMode(PageMode mode) { m_mode = mode; }

    PageMode mode() const { return m_mode; }

    /**
     * Takes all views away without deleting them: a script that never ends runs in one of them,
     * and the engine loads nothing more in any.
     */
    void abandon();

    /** From here on there is no current view: the views are about to go. */
    void release();

signals:
    /** A view is there, its page not yet loaded. */
    void viewAdded(QWebView *view);

private:
    TransparentView *createView();

    DialogHost &m_dialogs;
    QPointer<QStackedWidget> m_stack;
    QUrl m_requestedUrl;
    QUrl m_portalUrl;
    PageMode m_mode = PageMode::Portal;
    int m_abandonments = 0;
    bool m_bare = false; ///< the pages were abandoned, and the new view has none yet
};
