// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/traffic/traffic_file.h"

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QString>

/**
 * Writes the messages of the link into a file, each at once, so that a power cut tears no more than
 * the last. When the file takes no more, that is told once and nothing further is recorded.
 */
class TrafficRecorder : public QObject
{
    Q_OBJECT

public:
    explicit TrafficRecorder(QObject *parent = nullptr);

    /** Begins; replaces what the file held. Why that is not possible, otherwise empty. */
    QString start(const QString &fileName);

    void noteCommand(int type, const QByteArray &payload);
    void noteSent(int type, const QByteArray &payload);
    void noteConnections(int count);

signals:
    /** Something that a person may want to read, one line. */
    void message(const QString &line);

private:
    void note(TrafficMessage::Direction direction, int type, const QByteArray &payload);
    void write(const QByteArray &line);

    QFile m_file;
    QElapsedTimer m_clock;
};
