// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <condition_variable>
#include <deque>
#include <mutex>

/**
 * What a box says while it runs: the program's log, what pages write to their console, and what
 * the receiver prints. Each kind keeps its newest 10,000 entries. Any thread.
 */
class BoxRecords
{
public:
    void addProgramOutput(const QByteArray &bytes);
    void addReceiverOutput(const QByteArray &bytes);
    void addPageMessage(const QJsonObject &message);

    /** The entries since the last question of this kind. */
    QStringList takeLog();
    QStringList takeCommands();
    QJsonArray takePageMessages();

    /** The last lines of the log and of the receiver, for a message about a box that failed. */
    QString lastLines(int count);

    /** How many lines the receiver has printed. */
    qint64 receiverLineCount();

    /**
     * Waits for the receiver to have something to say: the first of its lines from a number on
     * that begins with one of the texts. Null if none came within that time in ms.
     */
    QString waitForReceiver(const QStringList &beginnings, qint64 from, double timeMs);

    /** Whether something plays, as the receiver told the program last. */
    bool isPlaying();

private:
    struct Lines
    {
        QByteArray rest;
        std::deque<QString> lines;
        qint64 count = 0; ///< All lines ever.
        qint64 taken = 0; ///< Those that were given away.

        void add(const QByteArray &bytes);
        QStringList take();
    };

    std::mutex m_mutex;
    std::condition_variable m_changed;
    Lines m_log;
    Lines m_receiver;
    std::deque<QJsonObject> m_pageMessages;
    bool m_playing = false;
};
