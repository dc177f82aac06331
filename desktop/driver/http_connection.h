// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <httplib.h>

#include <string>

/** One connection of a client. What came too early for one request is there for the next. */
class HttpConnection : public httplib::Stream
{
public:
    /** Owns the socket. A client that is silent or takes nothing for that time, in s, has failed.
     */
    HttpConnection(int socket, int slowSeconds);
    ~HttpConnection() override;
    HttpConnection(const HttpConnection &) = delete;
    HttpConnection &operator=(const HttpConnection &) = delete;

    /** Waits for something to read; false after that time, in s. */
    bool waitForRequest(int seconds) const;

    /** Drops what comes next; false if it does not come. */
    bool skip(std::size_t size);

    /** Says that no more will be sent, and lets the client read what was before the connection
     * ends. */
    void finish();

    bool is_readable() const override;
    bool is_writable() const override;
    ssize_t read(char *data, std::size_t size) override;
    ssize_t write(const char *data, std::size_t size) override;
    void get_remote_ip_and_port(std::string &ip, int &port) const override;
    void get_local_ip_and_port(std::string &ip, int &port) const override;
    socket_t socket() const override { return m_socket; }

private:
    int m_socket;
    int m_slowSeconds;
    std::string m_early; ///< Was received and not read yet, from m_begin on.
    std::size_t m_begin = 0;
};

/**
 * The library's server for requests as clients send them: a body is read whatever the method, and
 * one that no header announces is not waited for.
 */
class ForgivingServer : public httplib::Server
{
public:
    /** Times in s; the size of the largest body in bytes. */
    ForgivingServer(int slowSeconds, int idleSeconds, std::size_t largestBody);

private:
    bool process_and_close_socket(socket_t socket) override;

    int m_slowSeconds;
    int m_idleSeconds;
    std::size_t m_largestBody;
};
