// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/**
 * The box's unique number, made of its MAC address: 64 upper-case hexadecimal digits. Any thread.
 */
QString deviceDigest(const QString &macAddress);

/** The identifier that a portal gets under a key, made of the serial number. Any thread. */
QString keyedIdentifier(const QString &key, const QString &serialNumber);

/**
 * Proof towards a portal that knows the secret too: 40 lower-case hexadecimal digits. Any thread.
 */
QString hashVersion1(const QString &type, const QString &key, const QString &secret);

/** The secret of this build for hashVersion1(). Any thread. */
QString hashSecret();
