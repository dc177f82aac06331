// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

class QString;

/**
 * Message handler that appends every message, of whatever level, as one line to /tmp/vesprel.log:
 * the time of day as HH:MM:SS, ": " and the text in UTF-8. The file is opened and closed for each
 * message, so that others may read or remove it at any time. Everybody may write to that folder,
 * so a file is used only if it is regular, this user's own and reached by no link; a message that
 * cannot be written is lost. Never waits for a reader. Any thread; lines stay whole.
 */
void writeToLog(QtMsgType type, const QMessageLogContext &context, const QString &message);
