// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/recordings/recordings.h"
#include "desktop/recordings/task_list.h"

/** Recording tasks that live as long as the program; nothing is recorded. */
class MemoryRecordings : public Recordings
{
    Q_OBJECT

public:
    using Recordings::Recordings;

    int create(const RecordingTask &task) override { return m_tasks.create(task); }
    int remove(int id, RemoveType) override { return m_tasks.remove(id); }
    int changeEndTime(int id, const QString &endTime) override
    {
        return m_tasks.changeEndTime(id, endTime);
    }
    int setMaximumCount(int count) override { return m_tasks.setMaximumCount(count); }
    void setState(int id, RecordingState state) override { m_tasks.setState(id, state); }
    QVector<RecordingTask> all() const override { return m_tasks.all(); }
    std::optional<RecordingTask> byId(int id) const override { return m_tasks.byId(id); }

private:
    TaskList m_tasks;
};
