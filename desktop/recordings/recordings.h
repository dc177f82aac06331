// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/** Where a recording task stands. The numbers are what portals read. */
enum class RecordingState { Waiting = 1, Recording = 2, Failed = 3, Finished = 4 };

/** What goes with a task that is removed. The numbers are what portals send. */
enum class RemoveType {
    TaskOnly = 0,       ///< Nothing.
    KeepRecorded = 1,   ///< Nothing either: what was recorded is whole, and under its name.
    UnfinishedFile = 2, ///< The file of a recording that did not come to its end.
    EveryFile = 3,      ///< Every file of the task.
};

/** One recording task. The times are texts of the portal's own and kept as they came. */
struct RecordingTask
{
    int id = 0;
    QString url;
    QString fileName;
    QString startTime;
    QString endTime;
    RecordingState state = RecordingState::Waiting;
    int errorCode = 0; ///< One of RecordingError.
    QStringList files; ///< What was recorded so far, as paths of the box. Portals
                       ///< do not see it.
};

/** Whether a task still waits or records. */
inline bool isOpen(const RecordingTask &task)
{
    return task.state == RecordingState::Waiting || task.state == RecordingState::Recording;
}

/** The task as portals read it: id, url, fileName, startTime, endTime, state,
 * errorCode. */
QJsonObject recordingJson(const RecordingTask &task);

/**
 * Integer answers of the recording requests, where an id or a success is 0 or
 * more, and the errors of tasks. The numbers are what portals read.
 */
namespace RecordingError {

constexpr int none = 0;
constexpr int badArgument = -1;
constexpr int noMemory = -2;
constexpr int wrongDuration = -3;
constexpr int noSuchTask = -4;
constexpr int wrongFileName = -5;
constexpr int fileExists = -6;
constexpr int addressNotOpened = -7;
constexpr int fileNotOpened = -8;
constexpr int tooMany = -9;
constexpr int endOfStream = -10;
constexpr int notWritten = -11;

} // namespace RecordingError

/** What the receiver asks of whatever keeps the recording tasks, and what it hears from it. */
class Recordings : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /** Goes on with the tasks of the last run, if they were kept; once, before anything else. */
    virtual void restore() {}

    /**
     * Adds a task; id, state and files of the given one are not read. The new id, 1 or more, or an
     * error.
     */
    virtual int create(const RecordingTask &task) = 0;

    /** Removes a task, and ends its recording without an event; 0 or an error. */
    virtual int remove(int id, RemoveType type) = 0;

    /** Sets the end of a task; 0 or an error. */
    virtual int changeEndTime(int id, const QString &endTime) = 0;

    /** Limits the tasks that wait or record at a time, 1 or more; 0 or an error. */
    virtual int setMaximumCount(int count) = 0;

    /**
     * Notes where a task stands; an unknown id is ignored. One that is over ends its recording,
     * without an event.
     */
    virtual void setState(int id, RecordingState state) = 0;

    /** All tasks in the order of their making. */
    virtual QVector<RecordingTask> all() const = 0;

    /** The task of this id, if there is one. */
    virtual std::optional<RecordingTask> byId(int id) const = 0;

signals:
    /** The recording has begun to arrive, has come to its end, or has failed. */
    void started(int id);
    void finished(int id);
    void failed(int id);

    /** Something that a person may want to read, one line. */
    void message(const QString &line);
};
