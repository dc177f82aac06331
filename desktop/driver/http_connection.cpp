// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/http_connection.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr std::size_t chunk = 16384;
constexpr int goodbyeSeconds = 2;

bool waitFor(int socket, short event, int seconds)
{
    pollfd polled{socket, event, 0};
    int ready = 0;
    do
        ready = ::poll(&polled, 1, seconds * 1000);
    while (ready < 0 && errno == EINTR);
    return ready > 0;
}

/** What a request announces of its body. */
struct Announced
{
    bool understood = false;
    bool tooLong = false;
    std::size_t unread = 0; ///< Bytes that the library leaves, since the method has no body.
};

Announced readHead(httplib::Request &request, std::size_t largestBody)
{
    Announced result;
    result.understood = true;
    // JSON, whatever a client calls it: the library allows forms 8 KiB and takes others apart.
    request.headers.erase("Content-Type");
    if (request.has_header("Transfer-Encoding"))
        return result;
    if (!request.has_header("Content-Length")) {
        // The library would read until the client closes the connection.
        request.set_header("Content-Length", "0");
        return result;
    }
    const std::string text = request.get_header_value("Content-Length");
    const unsigned long long length = std::strtoull(text.c_str(), nullptr, 10);
    result.tooLong = length > largestBody;
    for (const char *method : {"GET", "HEAD", "OPTIONS"}) {
        if (request.method == method)
            result.unread = std::size_t(length);
    }
    return result;
}

} // namespace

HttpConnection::HttpConnection(int socket, int slowSeconds)
    : m_socket(socket)
    , m_slowSeconds(slowSeconds)
{
}

HttpConnection::~HttpConnection() { ::close(m_socket); }

bool HttpConnection::waitForRequest(int seconds) const
{
    return m_begin < m_early.size() || waitFor(m_socket, POLLIN, seconds);
}

bool HttpConnection::skip(std::size_t size)
{
    std::array<char, chunk> dropped = {};
    while (size > 0) {
        const ssize_t count = read(dropped.data(), std::min(size, dropped.size()));
        if (count <= 0)
            return false;
        size -= std::size_t(count);
    }
    return true;
}

void HttpConnection::finish()
{
    ::shutdown(m_socket, SHUT_WR);
    // A socket that is closed with something unread takes back what was written.
    std::array<char, chunk> dropped = {};
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(goodbyeSeconds);
    while (std::chrono::steady_clock::now() < end && waitFor(m_socket, POLLIN, goodbyeSeconds)) {
        if (::recv(m_socket, dropped.data(), dropped.size(), 0) <= 0)
            return;
    }
}

bool HttpConnection::is_readable() const { return waitForRequest(m_slowSeconds); }

bool HttpConnection::is_writable() const { return waitFor(m_socket, POLLOUT, m_slowSeconds); }

ssize_t HttpConnection::read(char *data, std::size_t size)
{
    if (m_begin == m_early.size()) {
        if (!is_readable())
            return -1;
        m_early.resize(chunk);
        const ssize_t count = ::recv(m_socket, &m_early[0], m_early.size(), 0);
        m_begin = 0;
        m_early.resize(std::size_t(std::max<ssize_t>(count, 0)));
        if (count <= 0)
            return count;
    }
    const std::size_t count = std::min(size, m_early.size() - m_begin);
    std::memcpy(data, m_early.data() + m_begin, count);
    m_begin += count;
    return ssize_t(count);
}

ssize_t HttpConnection::write(const char *data, std::size_t size)
{
    return is_writable() ? ::send(m_socket, data, size, MSG_NOSIGNAL) : -1;
}

// Nobody here asks who it is: only this machine can connect.
void HttpConnection::get_remote_ip_and_port(std::string &ip, int &port) const
{
    ip = "127.0.0.1";
    port = 0;
}

void HttpConnection::get_local_ip_and_port(std::string &ip, int &port) const
{
    get_remote_ip_and_port(ip, port);
}

ForgivingServer::ForgivingServer(int slowSeconds, int idleSeconds, std::size_t largestBody)
    : m_slowSeconds(slowSeconds)
    , m_idleSeconds(idleSeconds)
    , m_largestBody(largestBody)
{
    set_keep_alive_timeout(idleSeconds);
    set_payload_max_length(largestBody);
}

bool ForgivingServer::process_and_close_socket(socket_t socket)
{
    HttpConnection connection(socket, m_slowSeconds);
    bool ends = false;
    while (!ends && connection.waitForRequest(m_idleSeconds)) {
        Announced announced;
        const bool served =
            process_request(connection, false, ends, [&](httplib::Request &request) {
                announced = readHead(request, m_largestBody);
            });
        // After a request that was not read to its end nobody knows where the next begins.
        ends = ends || !served || !announced.understood || announced.tooLong ||
               !connection.skip(announced.unread);
    }
    connection.finish();
    return true;
}
