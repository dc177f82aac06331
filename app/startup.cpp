// SPDX-License-Identifier: Apache-2.0
#include "app/startup.h"

#include "api/settings_file.h"
#include "app/load_ahead.h"
#include "app/log_sink.h"
#include "app/watchdog.h"
#include "platform/box_paths.h"
#include "platform/environment.h"
#include "platform/program_version.h"
#include "shell/window.h"
#include "shell/window_placement.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QUrl>

#include <clocale>

namespace {

/**
 * Writes messages to the log file if the box asks for it, the first of them saying what runs;
 * otherwise Qt's default output stays.
 */
void switchLogOn()
{
    if (qgetenv(Environment::logSwitch) != "true")
        return;
    qInstallMessageHandler(writeToLog);
    // Not as a record, which the box's logging rules may switch off.
    writeToLog(QtInfoMsg, QMessageLogContext(), programVersion("vesprel"));
}

/** For the web engine and for child processes; docs/box.md tells why each. */
void setEnvironment()
{
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    qputenv("QT_IM_MODULE", "none");
    qputenv("LC_ALL", "C.UTF-8");
    // At once, since the first path decides how file names are encoded for good.
    std::setlocale(LC_ALL, "");
}

} // namespace

int runVesprel(int &argc, char **argv)
{
    switchLogOn();
    setEnvironment();
    const WatchdogOptions watchdogOptions = WatchdogOptions::takeFromEnvironment();
    const QString home = BoxPaths::applicationHome();
    qputenv(Environment::applicationHome, QFile::encodeName(home));
    const QDir homeDirectory(home);
    if (!homeDirectory.exists())
        homeDirectory.mkpath(home);
    removeUnfinishedSettings();

    // Has its place before other threads read the environment; setUrl() gives it its value.
    qputenv(Environment::currentPortal, QByteArray());
    const std::future<void> ahead = loadAhead();
    // Pages are painted by the processor: without this the first window would load all of OpenGL,
    // which then only a page that uses WebGL does.
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
    QApplication application(argc, argv);
    // The engine takes the cross of its search fields from the desk's icon theme, which is slow to
    // read and would look different from the box's.
    QIcon::setThemeSearchPaths({":/icons"});
    const Watchdog watchdog(watchdogOptions);
    // Nothing that closes while the window is hidden may end the loop: quitting only hides it.
    QApplication::setQuitOnLastWindowClosed(false);
    Window window;
    const QString portal = qEnvironmentVariable(Environment::startPortal);
    QApplication::setOverrideCursor(Qt::BlankCursor);
    window.setUrl(QUrl(portal, QUrl::TolerantMode));
    showInPlace(window);
    // The first portal that is announced adds a variable.
    ahead.wait();
    return QApplication::exec();
}
