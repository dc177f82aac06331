// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>

/**
 * A connection to the receiver's socket on which every step has a time limit. Below the buffers of
 * QLocalSocket, since what one read brings tells where the receiver's writes end.
 */
class Connection
{
public:
    Connection() = default;
    ~Connection() { close(); }

    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    /** Connects; what went wrong as a sentence, empty when nothing did. */
    QString open(const QByteArray &path, const QDeadlineTimer &deadline);

    void close();

    /** True until either side has closed, as far as a read or a write has told. */
    bool isOpen() const { return m_descriptor >= 0; }

    int descriptor() const { return m_descriptor; }

    /** Writes all of it; false when the receiver has closed or does not read. */
    bool send(const QByteArray &bytes, const QDeadlineTimer &deadline);

    /** So much does one read bring at most, in bytes. */
    static constexpr int readSize = 64 * 1024;

    /** What is there now, without waiting; empty when nothing is, or when it is closed. */
    QByteArray read();

    /**
     * The same, of no more than one write of the receiver, and seldom of a part of one. Where the
     * system cannot tell it is read().
     */
    QByteArray readWrite();

private:
    QByteArray receive(int descriptor);
    bool openPipe();

    int m_descriptor = -1;
    int m_pipe[2] = {-1, -1};
};
