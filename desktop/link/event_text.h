// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "enigma2/messages.h"

#include <QByteArray>
#include <QString>

/** One readable line for an event or answer that the receiver sends. */
QString describeEvent(Event event, const QByteArray &payload);
