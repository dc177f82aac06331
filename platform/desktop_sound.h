// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <optional>

/*
 * On a desktop the program has no sound output of its own: what plays is the receiver's. So the
 * program notes in a file below the root how loud the box is to be, and the receiver follows it.
 * Neither of them waits for the other. Any thread.
 */

/** How loud the box is. */
struct DesktopSound
{
    int volume = 100; ///< Percent, 0 to 100.
    bool isMuted = false;
};

/** The file; its folder exists once a receiver has been started. */
QString desktopSoundFile();

/** Notes the sound in a single write, for a reader to see all of it. False if that cannot be. */
bool writeDesktopSound(const DesktopSound &sound);

/** What was noted last; nothing if there is none that can be read. */
std::optional<DesktopSound> readDesktopSound();
