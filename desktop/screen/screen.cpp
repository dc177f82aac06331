// SPDX-License-Identifier: Apache-2.0
#include "desktop/screen/screen.h"

#include "desktop/player/mpv_player.h"
#include "desktop/player/simulated_player.h"

#include <QGuiApplication>
#include <QStandardPaths>

void choosePlatform(ReceiverOptions::Player player)
{
    const bool wantsScreen = player != ReceiverOptions::Player::Simulated &&
                             !QStandardPaths::findExecutable("mpv").isEmpty();
    qputenv("QT_QPA_PLATFORM", wantsScreen ? "xcb;minimal" : "minimal");
}

Screen openScreen(bool isSilent)
{
    Screen screen;
    if (QGuiApplication::platformName() != "xcb") {
        screen.player = std::make_unique<SimulatedPlayer>();
        screen.description = "simulated";
        return screen;
    }
    screen.plane = std::make_unique<VideoPlane>();
    screen.notice = std::make_unique<Notice>();
    screen.cover = std::make_unique<StandbyCover>();
    MpvOptions options;
    options.arguments += QString("--wid=%1").arg(screen.plane->videoWindow());
    // Other outputs would open windows of their own.
    options.arguments += "--vo=gpu,xv,x11";
    // Some of the other sound outputs wait for a server for ever.
    options.arguments += isSilent ? "--ao=null" : "--ao=pulse,alsa,null";
    screen.player = std::make_unique<MpvPlayer>(options);
    screen.description = "mpv";
    return screen;
}
