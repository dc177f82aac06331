// SPDX-License-Identifier: Apache-2.0
/*
 * How the window is built and taken down.
 */
#include "shell/window.h"

#include "api/vesprelv2.h"
#include "enigma2/enigma2.h"
#include "objects/player_manager.h"
#include "objects/pvr_manager.h"
#include "objects/storage.h"
#include "objects/surface.h"
#include "objects/time_shift.h"
#include "objects/web_window.h"
#include "objects/window_manager.h"
#include "platform/box_paths.h"
#include "platform/log_record.h"
#include "shell/pages/network_access.h"
#include "shell/pages/web_page.h"

#include <QGuiApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QNetworkDiskCache>
#include <QScreen>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QWebFrame>
#include <QWebSettings>
#include <QWebView>

namespace {

const char transparent[] = "background: transparent;";

void enable(QWebSettings *settings, std::initializer_list<QWebSettings::WebAttribute> attributes)
{
    for (const QWebSettings::WebAttribute attribute : attributes)
        settings->setAttribute(attribute, true);
}

} // namespace

Window::Window(QWidget *parent)
    : QMainWindow(parent)
{
    applyEnvironment();
    enable(QWebSettings::globalSettings(),
           {QWebSettings::PluginsEnabled, QWebSettings::AcceleratedCompositingEnabled,
            QWebSettings::WebGLEnabled});

    m_screenSize = QGuiApplication::primaryScreen()->availableGeometry().size();
    resize(m_screenSize);
    setAttribute(Qt::WA_TranslucentBackground);
    setStyleSheet(transparent);

    buildMdiArea();
    buildKeyboardView();
    buildStack();
    connect(this, &Window::pwr, this, &Window::QuitApp);

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

    buildPortalView();
    m_browserIdle = true;
}

Window::~Window()
{
    // Views and their pages go while this is still a whole Window, for their last signals; then
    // the objects that the pages used, the player manager before the gSTB that it serves; then
    // the link, which ends its reader thread.
    // From here on there is no current view, and what a page still says in its unload handler
    // reaches the receiver but none of the views that are going.
    m_stack = nullptr;
    m_gSTB->disconnect(this);
    m_windowManager->disconnect(this);
    m_webWindow->disconnect(this);
    delete m_mdiArea;
    delete m_webWindow;
    delete m_windowManager;
    delete m_pvrManager;
    delete m_playerManager;
    delete m_gSTB;
    delete m_enigma2;
    // The shared manager outlives this window, the cache does not.
    sharedNetworkAccess.setCache(nullptr);
}

void Window::applyEnvironment()
{
    m_mainAppMode = qgetenv("Q_MAIN_APP_MODE") == "true";
    if (qEnvironmentVariableIsSet("Q_USER_AGENT"))
        setUserAgentOverride(qEnvironmentVariable("Q_USER_AGENT"));
}

void Window::buildMdiArea()
{
    m_mdiArea = new QMdiArea(this);
    m_mdiArea->setBackground(QBrush(Qt::transparent));
    m_mdiArea->resize(m_screenSize);
    setCentralWidget(m_mdiArea);
}

void Window::buildKeyboardView()
{
    m_keyboardView = createView();
    m_keyboardView->setFocusPolicy(Qt::NoFocus);
    enable(m_keyboardView->settings(),
           {QWebSettings::PluginsEnabled, QWebSettings::JavascriptEnabled,
            QWebSettings::DeveloperExtrasEnabled});
    QWebFrame *frame = m_keyboardView->page()->mainFrame();
    frame->setScrollBarPolicy(Qt::Horizontal, Qt::ScrollBarAlwaysOff);
    frame->setScrollBarPolicy(Qt::Vertical, Qt::ScrollBarAlwaysOff);
    connect(frame, &QWebFrame::javaScriptWindowObjectCleared, this, &Window::SetupKeyboardJSObject);
    connect(frame, &QWebFrame::loadFinished, this, &Window::finishKeyboardLoading);

    m_keyboardSubWindow =
        m_mdiArea->addSubWindow(m_keyboardView, Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    m_keyboardSubWindow->setFocusPolicy(Qt::NoFocus);
    m_keyboardSubWindow->hide();
}

void Window::buildStack()
{
    m_stack = new QStackedWidget(this);
    m_stackSubWindow = m_mdiArea->addSubWindow(m_stack, Qt::FramelessWindowHint);
    m_stackSubWindow->resize(m_screenSize);
    m_stackSubWindow->show();
}

void Window::buildPortalView()
{
    QWebView *view = createView();
    view->setPage(new QWebPagePriv(view));
    view->installEventFilter(this);
    enable(view->settings(), {QWebSettings::PluginsEnabled, QWebSettings::JavascriptEnabled,
                              QWebSettings::DeveloperExtrasEnabled});
    view->page()->setNetworkAccessManager(&sharedNetworkAccess);
    watchView(view);
    connect(&sharedNetworkAccess, &NAM::finished, this, &Window::NetworkReplyError);
    connect(&sharedNetworkAccess, &NAM::networkAccessibleChanged, this,
            &Window::NetworkAccessibleChanged);
    setUpDiskCache();
    m_stack->addWidget(view);
}

void Window::setUpDiskCache()
{
    auto *cache = new QNetworkDiskCache(this);
    QString directory = qEnvironmentVariable("Q_CACHE_PATH");
    if (directory.isEmpty())
        directory = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    cache->setCacheDirectory(directory);
    logRecord("setCacheDirectory", directory);
    logRecord("maximumCacheSize", cache->maximumCacheSize());
    const QByteArray size = qgetenv("Q_CACHE_MAX_SIZE");
    if (!size.isEmpty()) {
        cache->setMaximumCacheSize(size.toLongLong());
        logRecord("setMaximumCacheSize", cache->maximumCacheSize());
    }
    sharedNetworkAccess.setCache(cache);
    // The manager adopts its cache; this window stays the owner.
    cache->setParent(this);
}

QWebView *Window::createView()
{
    auto *view = new QWebView(this);
    view->setAttribute(Qt::WA_TranslucentBackground);
    view->setWindowFlag(Qt::FramelessWindowHint);
    view->setStyleSheet(transparent);
    return view;
}

void Window::watchView(QWebView *view)
{
    connect(view, &QWebView::loadProgress, this, &Window::setProgress);
    connect(view, &QWebView::loadFinished, this, &Window::finishLoading);
    connect(view, &QWebView::urlChanged, this, &Window::Urlchanged);
    connect(view->page()->mainFrame(), &QWebFrame::javaScriptWindowObjectCleared, this,
            &Window::SetupJSObject);
}

QWebView *Window::currentView() const
{
    return m_stack ? qobject_cast<QWebView *>(m_stack->currentWidget()) : nullptr;
}

void Window::evaluate(const QString &statement)
{
    if (QWebView *view = currentView())
        view->page()->mainFrame()->evaluateJavaScript(statement);
}
