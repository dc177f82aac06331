// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/*
 * Payloads of the receiver link as the receiver reads and writes them. Reading never fails: bytes
 * that are missing read as zeros, and text that is no JSON object reads as an empty one.
 */

/** The integer number index (from 0) of a payload of big-endian 32-bit integers. */
int integerAt(const QByteArray &payload, int index);

/** The text of a command: Latin-1, the whole payload. */
QString commandText(const QByteArray &payload);

/** The JSON object of a request, which travels as Latin-1 like every text of a command. */
QJsonObject commandObject(const QByteArray &payload);

/** Payload of an event with one integer. */
QByteArray integerPayload(int value);

/** Payload of an event with two integers. */
QByteArray integerPayload(int first, int second);
