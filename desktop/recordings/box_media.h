// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/*
 * Where the media of the box lie on this machine. Portals name them as the box does, so
 * "/media/..." is also looked for below the root that stands for the box's file system.
 */

/** What a player or recorder may open for the address of a portal. */
struct MediaSource
{
    QString location; ///< An address, or a path on this machine.
    QString refusal;  ///< Why nothing may be opened; otherwise empty.
};

/**
 * Judges the address that a portal plays or records. A page may come from anywhere, and what plays
 * for it knows schemes that load libraries, write files or show the screen; so only the schemes of
 * broadcasts and video servers pass, and paths (also as "file:") below the box's "/media/". A path
 * that does not exist is tried without the parameters behind "?".
 */
MediaSource mediaSource(const QString &address);

/**
 * The protocols that may be opened on behalf of a source: those of networks, so that no list that
 * a server sends leads to a file of this machine. Separated by commas, as ffmpeg reads them.
 */
QString networkProtocols();

/** The folder of recordings of which only a name is known, on this machine. */
QString recordingsFolder();

/**
 * The file on this machine that a recording of this name goes to. A path below
 * "/media/" is taken as it is, any other absolute path is not allowed. Other
 * names are below the folder of the recordings and must not leave it; without
 * an ending they get ".ts", and an empty one is "recording.ts". What is not
 * allowed gives an empty text.
 */
QString recordingFile(const QString &name);

/** The file that keeps the recording tasks. */
QString recordingTasksFile();
