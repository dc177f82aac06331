// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/player/media_player.h"
#include "desktop/receiver_options.h"
#include "desktop/screen/notice.h"
#include "desktop/screen/program_window.h"
#include "desktop/screen/video_plane.h"

#include <QString>

#include <memory>

/** What plays, and where it is shown. */
struct Screen
{
    std::unique_ptr<VideoPlane> plane;      ///< None without a display.
    std::unique_ptr<Notice> notice;         ///< The same.
    std::unique_ptr<StandbyCover> cover;    ///< The same.
    std::unique_ptr<ProgramWindow> program; ///< None where windows can't be followed.
    std::unique_ptr<MediaPlayer> player;
    QString description;
};

/**
 * Chooses how Qt reaches the screen, before the application object is made: mpv draws into windows
 * of X, so without X there is none. A simulated player needs none, and opens none where
 * QT_QPA_PLATFORM asks for a platform without one.
 */
void choosePlatform(ReceiverOptions::Player player);

/** Opens what was chosen: mpv where it is installed and not refused, otherwise a simulation. */
Screen openScreen(const ReceiverOptions &options);
