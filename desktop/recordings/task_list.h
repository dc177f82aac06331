// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/recordings/recordings.h"

#include <QJsonObject>
#include <QString>
#include <QVector>

#include <optional>

/** The recording tasks as plain data, with the rules for them. The errors are RecordingError's. */
class TaskList
{
public:
    /** The list that an object of toJson() describes; what it does not describe is left out. */
    static TaskList fromJson(const QJsonObject &object);

    QJsonObject toJson() const;

    /** Adds a waiting task. It needs a URL and, where both times are known, a late enough end. */
    int create(const RecordingTask &task);

    /** Removes a task; its files stay. */
    int remove(int id);

    /** Sets a task's end, which must not come before its start. */
    int changeEndTime(int id, const QString &endTime);

    /** Limits the tasks that wait or record at a time, 1 or more; those that are there stay. */
    int setMaximumCount(int count);

    /** Notes where a task stands, and its error; an unknown id is ignored. */
    void setState(int id, RecordingState state, int errorCode = RecordingError::none);

    /** Notes a file of a task, or forgets one; an unknown id is ignored. */
    void addFile(int id, const QString &file);
    void removeFile(int id, const QString &file);

    const QVector<RecordingTask> &all() const { return m_tasks; }
    std::optional<RecordingTask> byId(int id) const;

private:
    int indexOf(int id) const;
    int openTasks() const;

    QVector<RecordingTask> m_tasks;
    int m_nextId = 1;
    int m_maximumCount = 100;
};
