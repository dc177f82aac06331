// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/**
 * Makes a path ready for a local server: creates its folder and removes a socket file on which
 * nobody answers. Returns what is in the way as a sentence, empty when nothing is: the path is too
 * long for a socket (more than 107 bytes), the folder cannot be made, another server answers, or
 * something that is no socket lies there. That is never removed.
 */
QString prepareSocketPath(const QString &path);
