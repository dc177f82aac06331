#include "desktop/memory_recordings.h"

#include <algorithm>

namespace {

/** True when both times are numbers and the end is not after the start. */
bool endsBeforeItStarts(const QString &startTime, const QString &endTime)
{
    bool startIsNumber = false;
    bool endIsNumber = false;
    const qlonglong start = startTime.toLongLong(&startIsNumber);
    const qlonglong end = endTime.toLongLong(&endIsNumber);
    return startIsNumber && endIsNumber && end <= start;
}

bool isOpen(const RecordingTask &task)
{
    return task.state == RecordingState::Waiting || task.state == RecordingState::Recording;
}

} // namespace

int MemoryRecordings::create(const RecordingTask &task)
{
    if (task.url.isEmpty() || endsBeforeItStarts(task.startTime, task.endTime))
        return RecordingError::badArgument;
    if (openTasks() >= m_maximumCount)
        return RecordingError::tooMany;
    RecordingTask added = task;
    added.id = m_nextId++;
    added.state = RecordingState::Waiting;
    m_tasks.append(added);
    return added.id;
}

int MemoryRecordings::remove(int id)
{
    const int index = indexOf(id);
    if (index < 0)
        return RecordingError::noSuchTask;
    m_tasks.remove(index);
    return RecordingError::none;
}

int MemoryRecordings::changeEndTime(int id, const QString &endTime)
{
    const int index = indexOf(id);
    if (index < 0)
        return RecordingError::noSuchTask;
    if (endTime.isEmpty() || endsBeforeItStarts(m_tasks[index].startTime, endTime))
        return RecordingError::badArgument;
    m_tasks[index].endTime = endTime;
    return RecordingError::none;
}

int MemoryRecordings::setMaximumCount(int count)
{
    if (count < 1)
        return RecordingError::badArgument;
    m_maximumCount = count;
    return RecordingError::none;
}

void MemoryRecordings::setState(int id, RecordingState state)
{
    const int index = indexOf(id);
    if (index >= 0)
        m_tasks[index].state = state;
}

std::optional<RecordingTask> MemoryRecordings::byId(int id) const
{
    const int index = indexOf(id);
    if (index < 0)
        return std::nullopt;
    return m_tasks[index];
}

int MemoryRecordings::indexOf(int id) const
{
    const auto found = std::find_if(m_tasks.begin(), m_tasks.end(),
                                    [id](const RecordingTask &task) { return task.id == id; });
    return found == m_tasks.end() ? -1 : static_cast<int>(found - m_tasks.begin());
}

int MemoryRecordings::openTasks() const
{
    return static_cast<int>(std::count_if(m_tasks.begin(), m_tasks.end(), isOpen));
}
