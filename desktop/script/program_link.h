// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QLocalServer>
#include <QObject>
#include <QPointer>

#include <functional>

class QLocalSocket;

/**
 * Asks the driver's plugin inside the program, which connects by itself: one JSON object a line in
 * each direction, one request at a time. GUI thread.
 */
class ProgramLink : public QObject
{
    Q_OBJECT

public:
    using Answer = std::function<void(const QJsonObject &)>;

    explicit ProgramLink(QObject *parent = nullptr);
    ~ProgramLink() override;

    /** Serves the plugin at this path; what went wrong as a sentence, empty when it is served. */
    QString listen(const QString &path);

    bool isListening() const { return m_server.isListening(); }

    /** Whether the program answers requests. */
    bool isReady() const { return m_isReady; }

    /**
     * Asks; the answer has "value", or "error" and "message". Nobody hears the answer to the
     * request before it any more. Without a program nothing happens.
     */
    void ask(const QString &method, const QString &window, const QJsonObject &parameters,
             const Answer &answer);

    /** Nobody hears the answer to the last request. */
    void giveUp() { m_answer = nullptr; }

signals:
    /** The program that was ready has ended. */
    void programGone();

private:
    void takeProgram();
    void readSome();
    void take(const QJsonObject &message);
    void lose();

    QLocalServer m_server;
    QPointer<QLocalSocket> m_socket;
    QByteArray m_input;
    Answer m_answer;
    int m_lastId = 0;
    bool m_isReady = false;
};
