// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/child_process.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>

/** How ffmpeg is run. */
struct RecorderOptions
{
    QString program = "ffmpeg";
    int stallMs = 30000;      ///< A source that gives nothing for so long has failed.
    int endPatienceMs = 1000; ///< Between asking ffmpeg to end, demanding it and forcing it.
};

/** Copies one source into one file with ffmpeg, without encoding anything anew. */
class Recorder : public QObject
{
    Q_OBJECT

public:
    /**
     * source is an address or a path, file an existing file that is overwritten;
     * it is removed if nothing comes.
     */
    Recorder(const RecorderOptions &options, const QString &source, const QString &file,
             QObject *parent = nullptr);

    /** Ends ffmpeg as stop() does, and waits for it. */
    ~Recorder() override;

    /** The file that is recorded into. */
    QString file() const { return m_file; }

    /** Whether anything came. */
    bool hasRecorded() const { return m_bytes > 0; }

    /** Starts recording; what goes wrong comes as finished(), later. */
    void start();

    /** Ends the recording so that the file is whole; finished() follows. */
    void stop();

signals:
    /** The first data have reached the file. */
    void started();

    /** The recording has ended; failure is empty, or says why it is not what was asked for. */
    void finished(const QString &failure);

private:
    void readProgress();
    void handleSize(qint64 bytes);
    void handleExit(int code, QProcess::ExitStatus status);
    void force();
    void removeIfEmpty();
    QString lastError() const;

    RecorderOptions m_options;
    QString m_source;
    QString m_file;
    ChildProcess m_ffmpeg;
    QTimer m_stall;
    QTimer m_forceTimer;
    QByteArray m_errors;
    qint64 m_bytes = 0;
    bool m_stopping = false;
    bool m_stalled = false;
    bool m_demanded = false;
};
