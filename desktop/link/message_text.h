// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "enigma2/messages.h"

#include <QByteArray>
#include <QString>

/**
 * One readable line for a command or request, such as "seek 5000 ms". Any type and any payload
 * give a line; an unknown type is named with its number and the payload's size in bytes.
 */
QString describeCommand(int type, const QByteArray &payload);

/** The same for an event or answer that the receiver sends. */
QString describeEvent(Event event, const QByteArray &payload);
