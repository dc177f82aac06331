// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

/**
 * Every absolute path of the box but the log's, each below one root. The root is empty in the box
 * build, so the paths are exact there; on a desktop it is a folder of the user's own, in tests a
 * temporary one. Any thread, provided that nobody calls setRoot() meanwhile.
 */
namespace BoxPaths {

/** The folder below which all other paths lie; empty on the box, never ending in "/". */
QString root();

/** Puts all paths below another root. For tests and tools, before anything reads a path. */
void setRoot(const QString &root);

/** What a path of the box's disks, "/media" and all below it, is here; any other stays as it is. */
QString mediaPath(const QString &path);

/** Local socket that the receiver serves. A socket path is limited to 107 bytes. */
QString receiverSocket();

/** The application's home directory, ending in "/". */
QString applicationHome();

/** URL of the on-screen keyboard page: "file:///" and an absolute path, so four slashes. */
QString keyboardPageUrl();

/** URL of the local services page, whose absence the receiver is told of. */
QString servicesPageUrl();

/** Beginning of the URLs of the box's local pages, as portals write it whatever the root. */
QString localPagesUrl();

/** Script that carries out a portal's system actions. */
QString actionScript();

/** File of the decoder's video window; name is one of "dst_left", "dst_top" and their like. */
QString decoderFile(const QString &name);

/** Box parameters, an opaque text that the portal reads and writes whole. */
QString parameterFile();

/** Files that may hold the box's serial number and nothing else, the best source first. */
QStringList serialNumberFiles();

/** The kernel's list of processors, which may have a line with a serial number. */
QString processorInfoFile();

} // namespace BoxPaths
