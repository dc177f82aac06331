// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class DialogHost;
class PageArea;
class QKeyEvent;
class QMdiSubWindow;
class QRect;
class QWebFrame;
class QWidget;
class TransparentView;

/**
 * The on-screen keyboard: a page of its own in a sub-window above the portal. It counts as shown,
 * and takes the keys, from the moment its page has loaded until it is closed; a page that is still
 * loading or failed to load is visible, but the keys are the portal's. GUI thread.
 */
class KeyboardPane : public QObject
{
    Q_OBJECT

public:
    /** Makes the hidden pane in a sub-window of the area. */
    KeyboardPane(PageArea *area, DialogHost &dialogs, QObject *parent);

    /** Loads the keyboard's page, every time anew, and makes the pane visible. */
    void open();

    /** Hides the pane and stops its page's loading. */
    void close();

    /** The load of the keyboard's page has ended. */
    void finishLoading(bool ok);

    /** Whether the keyboard is on the screen, its page loaded or not. */
    bool isOpen() const;

    /**
     * Closes the pane and gives it a new view, and so a new frame(). The old one is not deleted:
     * the engine loads nothing more in it.
     */
    void replaceView();

    /** Whether the keyboard takes the keys. */
    bool isShown() const { return m_shown; }

    /** Places the pane (px of the window). */
    void setGeometry(const QRect &geometry);

    /** Hands a key of the remote to the keyboard's page; F5 is its Backspace. */
    void postKey(const QKeyEvent &event);

    /** The main frame of the keyboard's page. */
    QWebFrame *frame() const;

private:
    TransparentView *createView(QWidget *window) const;

    DialogHost &m_dialogs;
    TransparentView *m_view = nullptr;
    QMdiSubWindow *m_subWindow = nullptr;
    bool m_shown = false;
};
