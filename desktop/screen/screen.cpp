// SPDX-License-Identifier: Apache-2.0
#include "desktop/screen/screen.h"

#include "desktop/player/mpv_player.h"
#include "desktop/player/simulated_player.h"
#include "desktop/screen/test_picture.h"
#include "platform/weston.h"

#include <QGuiApplication>
#include <QStandardPaths>

#include <utility>

namespace {

void openPlane(Screen &screen, std::unique_ptr<BlackWindow> video)
{
    screen.plane = std::make_unique<VideoPlane>(std::move(video));
    screen.notice = std::make_unique<Notice>();
    screen.cover = std::make_unique<StandbyCover>();
    if (isWeston())
        return;
    screen.program = std::make_unique<ProgramWindow>(*screen.plane);
    for (BlackWindow *window : std::initializer_list<BlackWindow *>{
             screen.plane.get(), screen.notice.get(), screen.cover.get()})
        QObject::connect(screen.program.get(), &ProgramWindow::placed, window,
                         &BlackWindow::setArea);
}

/** What only pretends to play, with a picture of it where there is a screen. */
Screen openSimulation(bool hasScreen)
{
    Screen screen;
    auto player = std::make_unique<SimulatedPlayer>();
    if (hasScreen) {
        auto picture = std::make_unique<TestPicture>();
        QObject::connect(player.get(), &SimulatedPlayer::mediumChanged, picture.get(),
                         &TestPicture::setMedium);
        openPlane(screen, std::move(picture));
    }
    screen.player = std::move(player);
    screen.description = "simulated";
    return screen;
}

bool hasMpv() { return !QStandardPaths::findExecutable("mpv").isEmpty(); }

} // namespace

void choosePlatform(ReceiverOptions::Player player)
{
    const QByteArray asked = qgetenv("QT_QPA_PLATFORM");
    const bool wantsNoScreen = player == ReceiverOptions::Player::Simulated &&
                               (asked == "offscreen" || asked == "minimal");
    const bool hasDisplay = !qEnvironmentVariableIsEmpty("DISPLAY");
    qputenv("QT_QPA_PLATFORM", hasDisplay && !wantsNoScreen ? "xcb;minimal" : "minimal");
}

Screen openScreen(const ReceiverOptions &options)
{
    const bool hasScreen = QGuiApplication::platformName() == "xcb";
    if (!hasScreen || options.player == ReceiverOptions::Player::Simulated || !hasMpv())
        return openSimulation(hasScreen);
    Screen screen;
    openPlane(screen, std::make_unique<BlackWindow>());
    MpvOptions mpv;
    mpv.arguments += QString("--wid=%1").arg(screen.plane->videoWindow());
    // Other outputs would open windows of their own.
    mpv.arguments += "--vo=gpu,xv,x11";
    // Some of the other sound outputs wait for a server for ever.
    mpv.arguments += options.isSilent ? "--ao=null" : "--ao=pulse,alsa,null";
    screen.player = std::make_unique<MpvPlayer>(mpv);
    screen.description = "mpv";
    return screen;
}
