// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QObject>

#include <functional>

/** What an MpvPlayer says to mpv and hears from it. */
class MpvChannel : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /** The object of an answer: "error" is "success" or says what went wrong, "data" the result. */
    using Reply = std::function<void(const QJsonObject &answer)>;

    virtual bool isRunning() const = 0;

    /** Process id of the running mpv, 0 when there is none. */
    virtual qint64 processId() const = 0;

    /** Starts mpv unless it runs; false with a text in failure if that cannot be. */
    virtual bool start(QString *failure) = 0;

    /** Ends an mpv that no longer answers; exited() is not emitted. */
    virtual void kill() = 0;

    /** Sends a command. Without a running mpv nothing is sent and no answer comes. */
    virtual void command(const QJsonArray &words, const Reply &reply = {}) = 0;

signals:
    /** An event of mpv; its name is the member "event". */
    void eventReceived(const QJsonObject &event);

    /** mpv has gone without being asked to. */
    void exited();
};
