// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

/**
 * Reads lines from a file descriptor as they come. The end of the input, or an error, ends the
 * reading and nothing else. Bytes without a line end become a line at the end of the input; a line
 * of more than 64 KiB is thrown away.
 */
class Console : public QObject
{
    Q_OBJECT

public:
    /** The descriptor stays the caller's and must stay open. */
    explicit Console(int descriptor, QObject *parent = nullptr);

signals:
    void lineRead(const QString &line);

private:
    void readSome();
    void takeLines();
    void finish();

    int m_descriptor;
    QSocketNotifier m_notifier;
    QByteArray m_pending;
};
