// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVector>

/*
 * Recordings of the link: JSON lines, described for their readers in docs/scripts.md.
 */

/** One message of the link. */
struct TrafficMessage
{
    enum class Direction { ToReceiver, ToProgram };

    qint64 ms = 0; ///< Since the recording began.
    Direction direction = Direction::ToReceiver;
    int type = 0;
    QByteArray payload;
    int line = 0; ///< In the file it was read from, from 1.
};

/** The first line of a recording, without line end. */
QByteArray trafficHeader(const QDateTime &start);

/** The line of a message, without line end. Holds every byte of its payload. */
QByteArray trafficLine(const TrafficMessage &message);

/** The line that tells how many connections there are from now on, without line end. */
QByteArray connectionLine(qint64 ms, int count);

/** The messages of a recording in their order. */
struct ParsedTraffic
{
    QVector<TrafficMessage> messages;
    QString failure; ///< "LINE: ..." when it is not to be replayed, otherwise empty.
    QString warning; ///< "LINE: ..." when its last line is torn and was left out, otherwise empty.
};

/** Reads a recording; bytes that are none, or one of a later version, give a failure. */
ParsedTraffic parseTraffic(const QByteArray &text);
