// SPDX-License-Identifier: Apache-2.0
#include "desktop/recordings/ffmpeg_recordings.h"

#include "desktop/recordings/box_media.h"
#include "desktop/recordings/recording_time.h"
#include "platform/box_paths.h"
#include "platform/one_line.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>

#include <algorithm>
#include <utility>

namespace {

constexpr qint64 msPerSecond = 1000;
// The clock of the machine may be set while we wait.
constexpr qint64 longestWaitMs = 60LL * 1000;

qint64 now() { return QDateTime::currentSecsSinceEpoch(); }

/** Makes an empty file of this name or, where it exists, of the next free "name-2", "name-3". */
QString makeFile(const QString &wanted)
{
    const QFileInfo info(wanted);
    if (!QDir().mkpath(info.path()))
        return QString();
    QString path = wanted;
    const QString ending = info.suffix().isEmpty() ? QString() : '.' + info.suffix();
    for (int number = 2; QFileInfo::exists(path); ++number)
        path = info.path() + '/' + info.completeBaseName() + '-' + QString::number(number) + ending;
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::NewOnly) ? path : QString();
}

qint64 startOf(const RecordingTask &task) { return recordingTime(task.startTime).value_or(0); }

qint64 endOf(const RecordingTask &task) { return recordingTime(task.endTime).value_or(0); }

} // namespace

FfmpegRecordings::FfmpegRecordings(const RecorderOptions &options, QObject *parent)
    : Recordings(parent)
    , m_options(options)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &FfmpegRecordings::carryOut);
}

FfmpegRecordings::~FfmpegRecordings()
{
    // All are asked before the first is waited for.
    for (const auto &recorder : m_recorders) {
        recorder.second->disconnect(this);
        recorder.second->stop();
    }
}

void FfmpegRecordings::restore()
{
    QFile file(recordingTasksFile());
    if (!file.open(QIODevice::ReadOnly)) {
        if (file.exists())
            emit message(QString("cannot read the recording tasks in %1: %2")
                             .arg(file.fileName(), file.errorString()));
        return;
    }
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.object().value("tasks").isArray()) {
        QString kept = file.fileName() + ".broken";
        for (int number = 2; QFileInfo::exists(kept); ++number)
            kept = file.fileName() + ".broken-" + QString::number(number);
        file.rename(kept);
        emit message("the recording tasks cannot be read; their file is now " + kept);
        return;
    }
    m_tasks = TaskList::fromJson(document.object());
    m_timer.start(0);
}

int FfmpegRecordings::create(const RecordingTask &task)
{
    RecordingTask added = task;
    if (added.startTime.trimmed().isEmpty())
        added.startTime = QString::number(now());
    if (const int error = refusal(added); error != RecordingError::none)
        return error;
    const int id = m_tasks.create(added);
    if (id > 0) {
        save();
        m_timer.start(0); // Not from within the request, whose answer comes before any event.
    }
    return id;
}

int FfmpegRecordings::refusal(const RecordingTask &task)
{
    const auto refuse = [this](int error, const QString &reason) {
        emit message("cannot record: " + reason);
        return error;
    };
    if (!recordingTime(task.startTime) || !recordingTime(task.endTime))
        return refuse(RecordingError::badArgument,
                      QString("\"%1\" to \"%2\" is no time of the form seconds "
                              "since 1970, ISO 8601 "
                              "or YYYY-MM-DD hh:mm:ss")
                          .arg(task.startTime, task.endTime));
    if (endOf(task) <= now())
        return refuse(RecordingError::wrongDuration, "its end is in the past");
    const MediaSource source = mediaSource(task.url);
    if (!source.refusal.isEmpty())
        return refuse(RecordingError::addressNotOpened,
                      oneLine(task.url) + ", because " + source.refusal);
    const QString path = recordingFile(task.fileName);
    if (path.isEmpty())
        return refuse(RecordingError::wrongFileName,
                      oneLine(task.fileName) + " is no file below /media/");
    const auto isSameFile = [&path](const RecordingTask &other) {
        return isOpen(other) && !other.fileName.isEmpty() && recordingFile(other.fileName) == path;
    };
    const bool isTaken = std::any_of(m_tasks.all().begin(), m_tasks.all().end(), isSameFile);
    if (!task.fileName.trimmed().isEmpty() && (isTaken || QFileInfo::exists(path)))
        return refuse(RecordingError::fileExists, oneLine(task.fileName) + " exists already");
    return RecordingError::none;
}

int FfmpegRecordings::remove(int id, RemoveType type)
{
    const auto task = m_tasks.byId(id);
    if (!task)
        return RecordingError::noSuchTask;
    endRecorder(id);
    const bool isUnfinished = task->state != RecordingState::Finished;
    if (type == RemoveType::EveryFile || (type == RemoveType::UnfinishedFile && isUnfinished)) {
        for (const QString &file : task->files) {
            const QString path = BoxPaths::root() + file;
            if (QFileInfo::exists(path) && !QFile::remove(path))
                emit message("cannot remove " + path);
        }
    }
    m_tasks.remove(id);
    save();
    return RecordingError::none;
}

int FfmpegRecordings::changeEndTime(int id, const QString &endTime)
{
    if (!recordingTime(endTime))
        return m_tasks.byId(id) ? RecordingError::badArgument : RecordingError::noSuchTask;
    const int result = m_tasks.changeEndTime(id, endTime);
    if (result == RecordingError::none) {
        save();
        m_timer.start(0);
    }
    return result;
}

int FfmpegRecordings::setMaximumCount(int count)
{
    const int result = m_tasks.setMaximumCount(count);
    save();
    return result;
}

void FfmpegRecordings::setState(int id, RecordingState state)
{
    if (state == RecordingState::Finished || state == RecordingState::Failed)
        endRecorder(id);
    m_tasks.setState(id, state);
    save();
}

void FfmpegRecordings::save()
{
    const QString path = recordingTasksFile();
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(QJsonDocument(m_tasks.toJson()).toJson()) < 0 || !file.commit())
        emit message(
            QString("cannot keep the recording tasks in %1: %2").arg(path, file.errorString()));
}

void FfmpegRecordings::carryOut()
{
    // One time for all: what is not yet due now is waited for.
    const auto msUntil = [nowMs = QDateTime::currentMSecsSinceEpoch()](qint64 time) {
        return time * msPerSecond - nowMs;
    };
    qint64 nextMs = longestWaitMs;
    const QVector<RecordingTask> tasks = m_tasks.all(); // What follows changes the list.
    for (const RecordingTask &task : tasks) {
        if (!isOpen(task))
            continue;
        const auto recorder = m_recorders.find(task.id);
        const bool isRecorded = recorder != m_recorders.end();
        if (isRecorded && msUntil(endOf(task)) <= 0)
            recorder->second->stop();
        else if (!isRecorded && msUntil(startOf(task)) <= 0)
            begin(task);
        for (const qint64 time : {startOf(task), endOf(task)}) {
            if (msUntil(time) > 0)
                nextMs = std::min(nextMs, msUntil(time));
        }
    }
    m_timer.start(static_cast<int>(nextMs));
}

void FfmpegRecordings::begin(const RecordingTask &task)
{
    if (endOf(task) <= now()) {
        fail(task.id, RecordingError::wrongDuration, "its end is in the past");
        return;
    }
    const MediaSource source = mediaSource(task.url);
    if (!source.refusal.isEmpty()) {
        fail(task.id, RecordingError::addressNotOpened, source.refusal);
        return;
    }
    const QString path = makeFile(recordingFile(task.fileName));
    if (path.isEmpty()) {
        fail(task.id, RecordingError::fileNotOpened,
             "no file can be made for it in " + QFileInfo(recordingFile(task.fileName)).path());
        return;
    }
    m_tasks.addFile(task.id, path.mid(BoxPaths::root().size()));
    save();
    auto recorder = std::make_unique<Recorder>(m_options, source.location, path);
    connect(recorder.get(), &Recorder::started, this, [this, id = task.id] { noteStart(id); });
    // Queued, because the recorder goes with its end.
    connect(
        recorder.get(), &Recorder::finished, this,
        [this, id = task.id](const QString &failure) { noteEnd(id, failure); },
        Qt::QueuedConnection);
    recorder->start();
    m_recorders[task.id] = std::move(recorder);
}

void FfmpegRecordings::noteStart(int id)
{
    m_tasks.setState(id, RecordingState::Recording);
    save();
    emit started(id);
}

void FfmpegRecordings::noteEnd(int id, const QString &failure)
{
    const auto recorder = m_recorders.find(id);
    if (recorder == m_recorders.end())
        return;
    const bool hasRecorded = recorder->second->hasRecorded();
    endRecorder(id);
    if (!failure.isEmpty()) {
        const bool isFull = failure.contains("No space left");
        const int incomplete =
            hasRecorded ? RecordingError::endOfStream : RecordingError::addressNotOpened;
        fail(id, isFull ? RecordingError::notWritten : incomplete, failure);
        return;
    }
    const auto task = m_tasks.byId(id);
    const bool isShort = task && endOf(*task) > now();
    m_tasks.setState(id, RecordingState::Finished,
                     isShort ? RecordingError::endOfStream : RecordingError::none);
    save();
    emit finished(id);
}

void FfmpegRecordings::fail(int id, int errorCode, const QString &reason)
{
    m_tasks.setState(id, RecordingState::Failed, errorCode);
    save();
    emit message(QString("recording %1 failed: %2").arg(id).arg(reason));
    emit failed(id);
}

void FfmpegRecordings::endRecorder(int id)
{
    const auto found = m_recorders.find(id);
    if (found == m_recorders.end())
        return;
    const QString file = found->second->file();
    found->second->disconnect(this);
    m_recorders.erase(found); // Ends ffmpeg and waits for it.
    // Nothing was recorded; the name may become another task's.
    if (!QFileInfo::exists(file))
        m_tasks.removeFile(id, file.mid(BoxPaths::root().size()));
}
