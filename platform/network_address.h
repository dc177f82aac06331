// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHostAddress>
#include <QList>
#include <QString>

#include <optional>

/**
 * Dotted text of the last address in the list that can be the box's own: IPv4, neither 127.0.0.1
 * nor link-local. Nothing if none qualifies. Writes one record for each address that does. Any
 * thread.
 */
std::optional<QString> lastUsableAddress(const QList<QHostAddress> &addresses);
