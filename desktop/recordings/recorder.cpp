// SPDX-License-Identifier: Apache-2.0
#include "desktop/recordings/recorder.h"

#include "desktop/recordings/box_media.h"
#include "platform/one_line.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace {

constexpr int longestErrors = 4096;

const char mediaContainers[] =
    "mpegts,mpeg,mpegvideo,matroska,webm,mov,mp4,avi,flv,asf,ogg,mp3,aac,ac3,"
    "eac3,flac,wav,h264,hevc";

/** Texts of files, unlike those of broadcasts, do not fit into every container. */
bool isFileWithTexts(const QString &source)
{
    const QString suffix = QFileInfo(source.section('?', 0, 0)).suffix().toLower();
    return suffix == "mkv" || suffix == "mp4" || suffix == "webm";
}

bool ffmpegKnows(const QString &suffix)
{
    return QStringList({"ts", "mkv", "mp4", "mov", "mpg", "m2ts"}).contains(suffix.toLower());
}

QStringList ffmpegArguments(const QString &source, const QString &file)
{
    QStringList arguments = {"-hide_banner", "-loglevel",     "error", "-progress",
                             "pipe:1",       "-stats_period", "0.5"};
    const bool isPath = source.startsWith('/');
    if (isPath) {
        // At the pace of a channel, so that a task takes the time it would take; and nothing that
        // leads from one file to another.
        arguments += {"-re", "-protocol_whitelist", "file", "-format_whitelist", mediaContainers};
    } else {
        arguments += {"-protocol_whitelist", networkProtocols()};
    }
    arguments += {"-i", isPath ? "file:" + source : source, "-map", "0:v?", "-map", "0:a?"};
    if (!isFileWithTexts(source))
        arguments += {"-map", "0:s?"};
    arguments += {"-c", "copy", "-y"};
    if (!ffmpegKnows(QFileInfo(file).suffix()))
        arguments += {"-f", "mpegts"};
    return arguments + QStringList("file:" + file);
}

} // namespace

Recorder::Recorder(const RecorderOptions &options, const QString &source, const QString &file,
                   QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_source(source)
    , m_file(file)
{
    m_stall.setInterval(m_options.stallMs);
    m_stall.setSingleShot(true);
    m_forceTimer.setInterval(m_options.endPatienceMs);
    connect(&m_stall, &QTimer::timeout, this, [this] {
        m_stalled = true;
        stop();
    });
    connect(&m_forceTimer, &QTimer::timeout, this, &Recorder::force);
    connect(&m_ffmpeg, &QProcess::readyReadStandardOutput, this, &Recorder::readProgress);
    connect(&m_ffmpeg, &QProcess::readyReadStandardError, this, [this] {
        m_errors = (m_errors + m_ffmpeg.readAllStandardError()).right(longestErrors);
    });
    connect(&m_ffmpeg, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &Recorder::handleExit);
    connect(&m_ffmpeg, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        removeIfEmpty();
        emit finished(QString("%1 could not be started").arg(m_options.program));
    });
}

Recorder::~Recorder()
{
    m_ffmpeg.disconnect(this);
    stop();
    while (m_ffmpeg.state() != QProcess::NotRunning &&
           !m_ffmpeg.waitForFinished(m_options.endPatienceMs))
        force();
    removeIfEmpty();
}

void Recorder::start()
{
    m_stall.start();
    m_ffmpeg.start(m_options.program, ffmpegArguments(m_source, m_file));
}

void Recorder::stop()
{
    m_stall.stop();
    if (m_stopping || m_ffmpeg.state() == QProcess::NotRunning)
        return;
    m_stopping = true;
    m_ffmpeg.write("q");
    m_forceTimer.start();
}

void Recorder::force()
{
    // A source that gives nothing keeps ffmpeg from reading its keys, but not its signals.
    if (!m_demanded)
        m_ffmpeg.terminate();
    else
        m_ffmpeg.kill();
    m_demanded = true;
}

void Recorder::readProgress()
{
    constexpr char size[] = "total_size=";
    while (m_ffmpeg.canReadLine()) {
        const QByteArray line = m_ffmpeg.readLine().trimmed();
        if (line.startsWith(size))
            handleSize(line.mid(int(sizeof size) - 1).toLongLong());
    }
}

void Recorder::handleSize(qint64 bytes)
{
    if (bytes <= m_bytes)
        return;
    const bool first = m_bytes == 0;
    m_bytes = bytes;
    if (!m_stopping)
        m_stall.start();
    if (first)
        emit started();
}

void Recorder::handleExit(int code, QProcess::ExitStatus status)
{
    m_forceTimer.stop();
    m_errors = (m_errors + m_ffmpeg.readAllStandardError()).right(longestErrors);
    const qint64 size = QFileInfo(m_file).size();
    const bool isEmpty = size == 0;
    handleSize(size); // A short recording may not have reported any.
    m_stall.stop();
    removeIfEmpty();
    const bool failedByItself = !m_stopping && (status != QProcess::NormalExit || code != 0);
    if (m_stalled)
        emit finished(QString("nothing came for %1 s").arg(m_options.stallMs / 1000));
    else if (failedByItself)
        emit finished(lastError());
    else if (isEmpty)
        emit finished("nothing was recorded");
    else
        emit finished(QString());
}

void Recorder::removeIfEmpty()
{
    if (QFileInfo(m_file).size() == 0)
        QFile::remove(m_file);
}

QString Recorder::lastError() const
{
    const QByteArray line = m_errors.trimmed().split('\n').last();
    return line.isEmpty() ? QString("ffmpeg ended early") : oneLine(QString::fromUtf8(line));
}
