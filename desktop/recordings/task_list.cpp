// SPDX-License-Identifier: Apache-2.0
#include "desktop/recordings/task_list.h"

#include "desktop/recordings/recording_time.h"

#include <QJsonArray>

#include <algorithm>
#include <limits>

namespace {

constexpr int noMoreIds = std::numeric_limits<int>::max();

/** True when both times are known and the end is not after the start. */
bool endsBeforeItStarts(const QString &startTime, const QString &endTime)
{
    const auto start = recordingTime(startTime);
    const auto end = recordingTime(endTime);
    return start && end && *end <= *start;
}

QJsonObject storedTask(const RecordingTask &task)
{
    QJsonObject object = recordingJson(task);
    object["files"] = QJsonArray::fromStringList(task.files);
    return object;
}

RecordingTask taskOf(const QJsonObject &object)
{
    RecordingTask task;
    task.id = object["id"].toInt();
    task.url = object["url"].toString();
    task.fileName = object["fileName"].toString();
    task.startTime = object["startTime"].toString();
    task.endTime = object["endTime"].toString();
    const int state = object["state"].toInt();
    if (state >= int(RecordingState::Waiting) && state <= int(RecordingState::Finished))
        task.state = static_cast<RecordingState>(state);
    const QJsonArray files = object["files"].toArray();
    task.errorCode = object["errorCode"].toInt();
    for (const auto &file : files)
        task.files += file.toString();
    return task;
}

} // namespace

TaskList TaskList::fromJson(const QJsonObject &object)
{
    TaskList list;
    list.m_maximumCount = std::max(1, object["maximumCount"].toInt(list.m_maximumCount));
    list.m_nextId = std::max(1, object["nextId"].toInt());
    const QJsonArray tasks = object["tasks"].toArray();
    for (const auto &value : tasks) {
        const RecordingTask task = taskOf(value.toObject());
        if (task.id < 1 || task.id >= noMoreIds || list.indexOf(task.id) >= 0)
            continue;
        list.m_tasks.append(task);
        list.m_nextId = std::max(list.m_nextId, task.id + 1);
    }
    return list;
}

QJsonObject TaskList::toJson() const
{
    QJsonArray tasks;
    for (const RecordingTask &task : m_tasks)
        tasks.append(storedTask(task));
    return {{"maximumCount", m_maximumCount}, {"nextId", m_nextId}, {"tasks", tasks}};
}

int TaskList::create(const RecordingTask &task)
{
    if (task.url.isEmpty())
        return RecordingError::badArgument;
    if (endsBeforeItStarts(task.startTime, task.endTime))
        return RecordingError::wrongDuration;
    if (openTasks() >= m_maximumCount || m_nextId == noMoreIds)
        return RecordingError::tooMany;
    RecordingTask added = task;
    added.id = m_nextId++;
    added.state = RecordingState::Waiting;
    added.errorCode = RecordingError::none;
    added.files.clear();
    m_tasks.append(added);
    return added.id;
}

int TaskList::remove(int id)
{
    const int index = indexOf(id);
    if (index < 0)
        return RecordingError::noSuchTask;
    m_tasks.remove(index);
    return RecordingError::none;
}

int TaskList::changeEndTime(int id, const QString &endTime)
{
    const int index = indexOf(id);
    if (index < 0)
        return RecordingError::noSuchTask;
    if (endTime.isEmpty())
        return RecordingError::badArgument;
    if (endsBeforeItStarts(m_tasks[index].startTime, endTime))
        return RecordingError::wrongDuration;
    m_tasks[index].endTime = endTime;
    return RecordingError::none;
}

int TaskList::setMaximumCount(int count)
{
    if (count < 1)
        return RecordingError::badArgument;
    m_maximumCount = count;
    return RecordingError::none;
}

void TaskList::setState(int id, RecordingState state, int errorCode)
{
    const int index = indexOf(id);
    if (index < 0)
        return;
    m_tasks[index].state = state;
    m_tasks[index].errorCode = errorCode;
}

void TaskList::addFile(int id, const QString &file)
{
    const int index = indexOf(id);
    if (index >= 0)
        m_tasks[index].files += file;
}

void TaskList::removeFile(int id, const QString &file)
{
    const int index = indexOf(id);
    if (index >= 0)
        m_tasks[index].files.removeOne(file);
}

std::optional<RecordingTask> TaskList::byId(int id) const
{
    const int index = indexOf(id);
    if (index < 0)
        return std::nullopt;
    return m_tasks[index];
}

int TaskList::indexOf(int id) const
{
    const auto found = std::find_if(m_tasks.begin(), m_tasks.end(),
                                    [id](const RecordingTask &task) { return task.id == id; });
    return found == m_tasks.end() ? -1 : static_cast<int>(found - m_tasks.begin());
}

int TaskList::openTasks() const
{
    return static_cast<int>(std::count_if(m_tasks.begin(), m_tasks.end(), isOpen));
}
