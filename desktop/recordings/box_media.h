// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/*
 * Where the media of the box lie on this machine. Portals name them as the box does, so
 * "/media/..." is also looked for below the root that stands for the box's file system.
 */

/**
 * What a player or recorder opens for the address of a portal. Addresses with a scheme stay as
 * they are, except "file:", which becomes a path. A path that does not exist is tried below the
 * root, and then both again without the parameters behind "?"; if nothing exists it stays.
 */
QString mediaSource(const QString &address);

/** The folder of the recordings on this machine. */
QString recordingsFolder();

/**
 * The file on this machine that a recording of this name goes to. A name below "/media/" keeps its
 * folders, of any other only the last part counts; it never leaves the root. A name without an
 * ending gets ".ts", and an empty one becomes "recording.ts".
 */
QString recordingFile(const QString &name);

/** The file that keeps the recording tasks. */
QString recordingTasksFile();
