// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "shell/browser_state.h"
#include "shell/pages/portal_origins.h"

#include <QMainWindow>
#include <QNetworkAccessManager>
#include <QNetworkReply>

class DialogHost;
class Enigma2;
class KeyFilter;
class KeyboardPane;
class PageArea;
class PageStack;
class PvrManager;
class QWebFrame;
class QWebView;
class ScriptConnections;
class VesprelV2;
class stbPlayerManager;
class stbStorage;
class stbSurface;
class stbTimeShift;
class stbWebWindow;
class stbWindowMgr;

namespace PageStatement {
enum class Recording;
}

/**
 * The one top-level widget and the only place where the parts meet. It owns the pages, the
 * keyboard, the objects that pages see and the receiver link, wires them (connections.cpp),
 * publishes the objects and scripts to every page (bridge.cpp), and brings the receiver's events
 * into the portal (portal_events.cpp). State of the box is in its parts: its slots are what others
 * connect to, and ask whoever owns it. GUI thread.
 */
class Window : public QMainWindow
{
    Q_OBJECT

public:
    /** Builds everything in its order and connects to the receiver. */
    explicit Window(QWidget *parent = nullptr);

    /** Takes everything down, whoever uses another before that; see the destructor for the order.
     */
    ~Window() override;

    /** Loads a URL in the current view and tells child processes of it by "portal1". */
    void setUrl(const QUrl &url);

    /** Sees every key press of the current view first and consumes what it translates. */
    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    /** Takes the keys also where no window manager gives them to a window that appears. */
    void showEvent(QShowEvent *event) override;

    /** Who closes the window at a desk ends the program: hidden, nobody could end it any more. */
    void closeEvent(QCloseEvent *event) override;

signals:
    /** Asks for QuitApp(). */
    void pwr();

public slots:
    void SetupJSObject();
    void SetupKeyboardJSObject();
    void setProgress(int progress);
    void finishLoading(bool ok);
    void finishKeyboardLoading(bool ok);
    void NetworkReplyError(QNetworkReply *reply);
    void NetworkAccessibleChanged(QNetworkAccessManager::NetworkAccessibility accessible);
    void Urlchanged(const QUrl &url);
    void OnPortalLoaded();
    void OnNewPortal(const QString &url);
    void OnFirstPlay();
    void OnPlayStart();
    void OnPlayEnd();
    void OnPlayProgressive();
    void OnPlayTStatus(int total, int pos);
    void OnAudioPids(const QString &list);
    void OnSubPids(const QString &list);
    void OnAudioPid(int pid);
    void OnSubPid(int pid);
    void OnUsbMounted();
    void OnUsbUmounted();
    void OnPvrRecStarted(int rec_id);
    void OnPvrRecFinished(int rec_id);
    void OnPvrRecError(int rec_id);
    void OnPowerOff();
    void OnPowerOn();
    void WinOpenWebFavorites(const QString &url, int unknown);
    void WinCloseWebFavorites();
    void UpdateFocusedPos(int &x, int &y, int &w, int &h);
    void VirtualKeyboardOpen();
    void VirtualKeyboardClose();
    void VirtualKeyboardOnKey(const QString &key, const QString &id);
    void VirtualKeyboardSetPos(int x, int y, int w, int h);
    void OnWebWindowClose();
    void PreviewHole();
    void ShowPreviewHole();
    void HidePreviewHole();
    void PrependKeyboard();

private slots:
    /** Hides the window and stops playback, once until the next portal; the process goes on. */
    void QuitApp();

private:
    void buildPages();
    void watchKeyboard();
    void replaceAbandonedPages();
    void loadBarePage();
    void setUpDiskCache();
    void watchView(QWebView *view);

    void connectReceiverEvents();
    void connectPortalRequests();
    void connectWindowObjects();
    void connectKeys();

    void watchScriptConnections();

    /** Whether the box's objects are for the document of this frame. */
    bool mayUseBox(const QWebFrame &frame) const;

    /** Publishes the box's objects in a page whose document begins, and completes them. */
    void setUpPage(const QWebView &view);
    void setUpLowerPage(const QWebView &view);

    /** Evaluates a script of the program's in a page that has the objects; nothing without one. */
    void injectScript(const char *name, const QWebView *view);
    void closeKeyboard();
    void keepFocus();
    void postEventKey(int key, Qt::KeyboardModifiers modifiers);
    void raiseRecordingEvent(PageStatement::Recording code, int id);

    VesprelV2 *m_gSTB = nullptr;
    stbPlayerManager *m_playerManager = nullptr;
    PvrManager *m_pvrManager = nullptr;
    Enigma2 *m_enigma2 = nullptr;
    stbWindowMgr *m_windowManager = nullptr;
    stbTimeShift *m_timeShift = nullptr;
    stbStorage *m_storage = nullptr;
    stbWebWindow *m_webWindow = nullptr;
    stbSurface *m_surface = nullptr; ///< promised to exist; published nowhere, read by nobody
    DialogHost *m_dialogs = nullptr;
    PageArea *m_area = nullptr;
    KeyboardPane *m_keyboard = nullptr;
    PageStack *m_pages = nullptr;
    KeyFilter *m_keys = nullptr;
    ScriptConnections *m_scriptConnections = nullptr;
    BrowserState m_browser;
    PortalOrigins m_origins;
};
