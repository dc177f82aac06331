// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/recordings/recordings.h"

#include <QByteArray>
#include <QString>

/*
 * The recording requests: each takes the payload as it came, does its work on the tasks and
 * returns the answer. A payload that is no JSON object counts as one without members.
 */

/** The new id or an error; one of its texts may have 65,536 characters. */
int createRecording(Recordings &recordings, const QByteArray &payload);

/** 0 or an error. An unknown remove type takes only the task. */
int removeRecording(Recordings &recordings, const QByteArray &payload);

/** 0 or an error. */
int changeRecordingEnd(Recordings &recordings, const QByteArray &payload);

/** 0 or an error. */
int setMostRecordings(Recordings &recordings, const QByteArray &payload);

/** The JSON object text of one task, "{}" when there is none of that id. */
QString recordingById(const Recordings &recordings, const QByteArray &payload);

/**
 * The JSON array text of the tasks of an id list, in the list's order, each once and
 * without the unknown ones. Whatever separates the numbers is accepted, so "[1,2]" and "1 2" are
 * the same list.
 */
QString recordingsByIds(const Recordings &recordings, const QByteArray &payload);

/** The JSON array text of all tasks. */
QString allRecordings(const Recordings &recordings);
