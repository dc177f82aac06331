// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/**
 * Makes a clip with ffmpeg: that many seconds of 160x120 px picture, 25 pictures a second, and two
 * audio tracks, English (pid 257) and German (pid 258). The ending of the path chooses the
 * container; a Matroska file also gets an English subtitle track. False when ffmpeg fails.
 */
bool makeClip(const QString &path, int seconds);

/** True when a program of this name is installed. */
bool isInstalled(const QString &program);
