// SPDX-License-Identifier: Apache-2.0
/*
 * How the window is built and taken down.
 */
#include "shell/window.h"

#include "api/vesprelv2.h"
#include "enigma2/enigma2.h"
#include "objects/placeholders.h"
#include "objects/player.h"
#include "objects/player_manager.h"
#include "objects/pvr_manager.h"
#include "objects/web_window.h"
#include "objects/window_manager.h"
#include "platform/box_paths.h"
#include "platform/environment.h"
#include "platform/log_record.h"
#include "platform/trusted_certificates.h"
#include "shell/dialogs/dialog_host.h"
#include "shell/keyboard/keyboard_pane.h"
#include "shell/keys/key_filter.h"
#include "shell/keys/posted_key.h"
#include "shell/pages/network.h"
#include "shell/pages/page_area.h"
#include "shell/pages/page_log.h"
#include "shell/pages/page_stack.h"
#include "shell/pages/script_connections.h"
#include "shell/pages/transparent_view.h"
#include "shell/pages/web_page.h"
#include "shell/window_placement.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QNetworkDiskCache>
#include <QPointer>
#include <QStandardPaths>
#include <QWebFrame>
#include <QWebView>

Window::Window(QWidget *parent)
    : QMainWindow(parent)
    , m_origins(qEnvironmentVariable(Environment::portalOrigins))
{
    const QStringList ignored = m_origins.ignored();
    for (const QString &entry : ignored)
        logRecord("no origin, ignored:", entry);
    if (qEnvironmentVariableIsSet(Environment::userAgent))
        setUserAgentOverride(qEnvironmentVariable(Environment::userAgent));
    if (qEnvironmentVariableIsSet(Environment::trust))
        trustCertificates(qEnvironmentVariable(Environment::trust));
    for (const auto attribute :
         {QWebSettings::PluginsEnabled, QWebSettings::AcceleratedCompositingEnabled,
          QWebSettings::WebGLEnabled})
        QWebSettings::globalSettings()->setAttribute(attribute, true);

    resize(initialWindowSize());
    setAttribute(Qt::WA_TranslucentBackground);
    setStyleSheet(transparentStyle);

    buildPages();
    connect(this, &Window::pwr, this, &Window::QuitApp);
    // Queued, since the toolkit moves the focus in several steps.
    connect(qApp, &QApplication::focusChanged, this, &Window::keepFocus, Qt::QueuedConnection);

    m_enigma2 = new Enigma2(this);
    connectReceiverEvents();
    m_enigma2->ConnectServer(BoxPaths::receiverSocket());

    m_gSTB = new VesprelV2(this);
    m_playerManager = new stbPlayerManager(this, m_gSTB);
    m_pvrManager = new PvrManager(this);
    connectPortalRequests();

    m_windowManager = new stbWindowMgr(this);
    m_timeShift = new stbTimeShift(this);
    m_storage = new stbStorage(this);
    m_webWindow = new stbWebWindow(this);
    m_surface = new stbSurface(this);
    connectWindowObjects();
    watchScriptConnections();

    m_keys = new KeyFilter(*m_pages, *m_keyboard, m_browser, *m_gSTB, this);
    connectKeys();
    m_pages->addPortal();
    connect(&sharedNetworkAccess, &NAM::finished, this, &Window::NetworkReplyError);
    connect(&sharedNetworkAccess, &NAM::networkAccessibleChanged, this,
            &Window::NetworkAccessibleChanged);
    logFailuresOf(&sharedNetworkAccess, this);
    setUpDiskCache();
}

Window::~Window()
{
    // Views and their pages go while this is still a whole Window, for their last signals; then
    // the objects that the pages used, the player manager before the gSTB that it serves; then
    // the link, which ends its reader thread.
    // From here on there is no current view, and what a page still says in its unload handler
    // reaches the receiver but none of the views that are going.
    m_pages->release();
    qApp->disconnect(this);
    m_gSTB->disconnect(this);
    m_windowManager->disconnect(this);
    m_webWindow->disconnect(this);
    delete m_area;
    // Scripts may have connected any signal of these, "destroyed" too, and are gone.
    for (QObject *published : std::initializer_list<QObject *>{
             m_webWindow, m_windowManager, m_storage, m_timeShift, m_pvrManager, m_playerManager,
             m_playerManager->firstPlayer(), m_gSTB})
        published->disconnect();
    delete m_webWindow;
    delete m_windowManager;
    delete m_pvrManager;
    delete m_playerManager;
    delete m_gSTB;
    delete m_enigma2;
    // The shared manager outlives this window, the cache does not.
    sharedNetworkAccess.setCache(nullptr);
}

void Window::buildPages()
{
    m_area = new PageArea(this);
    m_area->resize(size());
    setCentralWidget(m_area);

    m_dialogs = new DialogHost(this);
    connect(m_dialogs, &DialogHost::pagesAbandoned, this, &Window::replaceAbandonedPages);

    m_keyboard = new KeyboardPane(m_area, *m_dialogs, this);
    watchKeyboard();

    m_pages = new PageStack(m_area, size(), *m_dialogs, this);
    connect(m_pages, &PageStack::viewAdded, this, &Window::watchView);
}

void Window::watchKeyboard()
{
    QWebFrame *frame = m_keyboard->frame();
    connect(frame, &QWebFrame::javaScriptWindowObjectCleared, this, &Window::SetupKeyboardJSObject);
    connect(frame, &QWebFrame::loadFinished, this, &Window::finishKeyboardLoading);
}

void Window::replaceAbandonedPages()
{
    m_scriptConnections->abandon();
    m_pages->abandon();
    m_keyboard->replaceView();
    watchKeyboard();
    m_pages->addPortal();
    // Queued: what is on its way to be loaded comes first.
    QMetaObject::invokeMethod(this, &Window::loadBarePage, Qt::QueuedConnection);
}

void Window::loadBarePage()
{
    // With nobody to answer it would ask without end and be abandoned again and again.
    if (isVisible() && !m_browser.isPoweredOff())
        m_pages->loadBare();
}

void Window::watchScriptConnections()
{
    m_scriptConnections = new ScriptConnections(*m_pages, this);
    for (QObject *object : std::initializer_list<QObject *>{
             m_gSTB, m_playerManager, m_playerManager->firstPlayer(), m_pvrManager, m_timeShift,
             m_storage, m_windowManager, m_webWindow})
        m_scriptConnections->watch(object);
}

void Window::setUpDiskCache()
{
    auto *cache = new QNetworkDiskCache(this);
    QString directory = qEnvironmentVariable(Environment::cachePath);
    if (directory.isEmpty())
        directory = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    cache->setCacheDirectory(directory);
    logRecord("setCacheDirectory", directory);
    logRecord("maximumCacheSize", cache->maximumCacheSize());
    const QByteArray size = qgetenv(Environment::cacheMaxSize);
    if (!size.isEmpty()) {
        cache->setMaximumCacheSize(size.toLongLong());
        logRecord("setMaximumCacheSize", cache->maximumCacheSize());
    }
    sharedNetworkAccess.setCache(cache);
    // The manager adopts its cache; this window stays the owner.
    cache->setParent(this);
}

void Window::watchView(QWebView *view)
{
    view->installEventFilter(this);
    logConsoleOf(view->page());
    connect(view, &QWebView::loadProgress, this, &Window::setProgress);
    connect(view, &QWebView::loadFinished, this, &Window::finishLoading);
    connect(view, &QWebView::urlChanged, this, &Window::Urlchanged);
    connect(view->page()->mainFrame(), &QWebFrame::javaScriptWindowObjectCleared, this,
            [this, view] { m_scriptConnections->drop(view); });
    connect(view->page()->mainFrame(), &QWebFrame::javaScriptWindowObjectCleared, this,
            &Window::SetupJSObject);
    connect(view->page()->mainFrame(), &QWebFrame::javaScriptWindowObjectCleared, this,
            [this, view] { setUpLowerPage(*view); });
}

void Window::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    activateWindow();
    loadBarePage();
}

void Window::closeEvent(QCloseEvent *event)
{
    QMainWindow::closeEvent(event);
    if (event->spontaneous())
        QCoreApplication::quit();
}

void Window::keepFocus()
{
    // What a page or a key does may move the focus within the window or take it away; a list that
    // drops down is a window of its own and keeps it.
    const QWidget *now = QApplication::focusWidget();
    const bool ours = now ? now->window() == this : isActiveWindow();
    if (ours && now != m_pages->currentView())
        m_pages->focusCurrentView();
}

bool Window::eventFilter(QObject *watched, QEvent *event)
{
    QPointer<QWebView> view = m_pages->currentView();
    // A rewritten key is posted: those pressed right behind it on a busy box must not overtake it.
    if (event->type() == QEvent::KeyPress && event->spontaneous() && view && watched == view)
        deliverPostedKeys(view);
    if (event->type() == QEvent::KeyPress && view && watched == view &&
        m_keys->filter(*view, *static_cast<QKeyEvent *>(event)))
        return true;
    return QMainWindow::eventFilter(watched, event);
}
