// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QNetworkAccessManager>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/** A running vesprel-driver with files of its own, and a client of its protocol. */
class DriverClient
{
public:
    struct Answer
    {
        int status = 0;
        QJsonValue value;

        QString error() const { return value.toObject().value("error").toString(); }
    };

    DriverClient() = default;
    DriverClient(const DriverClient &) = delete;
    DriverClient &operator=(const DriverClient &) = delete;

    /** Ends the driver, which ends its boxes. */
    ~DriverClient();

    /** Starts the driver with further options; false if it does not get ready. */
    bool start(const QStringList &options = {});

    /** Where the driver listens. */
    int port() const { return m_port; }

    /** Sends any request; the body as it is. */
    Answer send(const QByteArray &method, const QString &path, const QByteArray &body = {});

    /** Begins a session with options of the box and further capabilities. */
    Answer begin(const QJsonObject &capabilities = {});

    /** Commands of the session. A POST has a body, a JSON object. */
    Answer get(const QString &command) { return send("GET", inSession(command)); }
    Answer post(const QString &command, const QByteArray &body = "{}")
    {
        return send("POST", inSession(command), body);
    }
    Answer script(const QString &text);
    Answer remove(const QString &command) { return send("DELETE", inSession(command)); }
    Answer closeWindow() { return remove("window"); }
    Answer end() { return send("DELETE", inSession({})); }

    /** The id of the first element that a selector finds. */
    QString element(const QString &selector);

    /** Ids of the processes that the driver started, by the name of their program; none: all. */
    QList<qint64> children(const QString &name = {}) const;

    /** Whether a process still runs. */
    static bool isRunning(qint64 id);

    /** The folder that stands for the file system of the session's box. */
    QString boxRoot() const;

    /** What is left below the driver's temporary folder. */
    QStringList files() const;

    QProcess &process() { return m_process; }

private:
    struct Child
    {
        QString name;
        qint64 parent = 0;
        bool runs = false;
    };

    static Child read(qint64 id);
    QString inSession(const QString &command) const;

    QTemporaryDir m_folder;
    QProcess m_process;
    QNetworkAccessManager m_network;
    int m_port = 0;
    QString m_session;
};
