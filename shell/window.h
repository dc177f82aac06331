// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "shell/pages/page_mode.h"

#include <QMainWindow>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSize>
#include <QUrl>

class Enigma2;
class PvrManager;
class QKeyEvent;
class QMdiArea;
class QMdiSubWindow;
class QStackedWidget;
class QWebView;
class VesprelV2;
class stbPlayerManager;
class stbStorage;
class stbSurface;
class stbTimeShift;
class stbWebWindow;
class stbWindowMgr;
struct KeyRow;

namespace EventStatement {
enum class Recording;
}

/**
 * The one top-level widget and the only place where the parts meet. It owns the views, the objects
 * that pages see and the receiver link, wires them (connections.cpp), translates the remote's keys
 * (remote_keys.cpp), publishes the objects and scripts to every page (bridge.cpp), and brings the
 * receiver's events into the portal (portal_events.cpp). GUI thread.
 */
class Window : public QMainWindow
{
    Q_OBJECT

public:
    /** Builds everything in its order and connects to the receiver. */
    explicit Window(QWidget *parent = nullptr);

    /** Takes everything down in the opposite order. */
    ~Window() override;

    /** Loads a URL in the current view and tells child processes of it by "portal1". */
    void setUrl(const QUrl &url);

    /** Sees every key press of the current view first and consumes what it translates. */
    bool eventFilter(QObject *watched, QEvent *event) override;

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
    void applyEnvironment();
    void buildMdiArea();
    void buildKeyboardView();
    void buildStack();
    void buildPortalView();
    void setUpDiskCache();
    QWebView *createView();
    void watchView(QWebView *view);

    void connectReceiverEvents();
    void connectPortalRequests();
    void connectWindowObjects();

    QWebView *currentView() const;

    /** Evaluates a statement in the current view's main frame; nothing without a view. */
    void evaluate(const QString &statement);
    void injectScript(const char *name);
    void raiseRecordingEvent(EventStatement::Recording code, int id);

    // Each of these says whether the key is consumed.
    bool filterKey(QWebView &view, const QKeyEvent &event);
    bool translateKey(QWebView &view, const QKeyEvent &event, const KeyRow &row);
    bool postTranslated(QWebView &view, const QKeyEvent &event, const KeyRow &row);
    bool isChannelKey(QWebView &view);
    bool pressOk(QWebView &view, const QKeyEvent &event);
    bool goBack(QWebView &view, const QKeyEvent &event);
    bool quitLogged(const char *record);

    VesprelV2 *m_gSTB = nullptr;
    stbPlayerManager *m_playerManager = nullptr;
    PvrManager *m_pvrManager = nullptr;
    Enigma2 *m_enigma2 = nullptr;
    stbWindowMgr *m_windowManager = nullptr;
    stbTimeShift *m_timeShift = nullptr;
    stbStorage *m_storage = nullptr;
    stbWebWindow *m_webWindow = nullptr;
    stbSurface *m_surface = nullptr;
    QStackedWidget *m_stack = nullptr;
    QMdiArea *m_mdiArea = nullptr;
    QWebView *m_keyboardView = nullptr;
    QMdiSubWindow *m_keyboardSubWindow = nullptr;
    QMdiSubWindow *m_stackSubWindow = nullptr;
    PageMode m_pageMode = PageMode::Portal;
    bool m_browserIdle = false;
    bool m_webFavoritesOpen = false;
    bool m_keyboardShown = false;
    bool m_comboboxJustClosed = false;
    QUrl m_portalUrl;
    QUrl m_currentUrl;
    bool m_powerOffState = false;
    bool m_mainAppMode = false;
    QSize m_screenSize;
};
