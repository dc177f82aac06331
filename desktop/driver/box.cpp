// SPDX-License-Identifier: Apache-2.0
/*
 * How a box is talked to while it runs; how it is started and ended is in box_start.cpp.
 */
#include "desktop/driver/box.h"

#include "desktop/driver/webdriver_error.h"

#include <QJsonDocument>

#include <algorithm>
#include <cerrno>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

/** Reads what is there; false at the end of the stream. */
bool readSome(const Descriptor &from, QByteArray &bytes)
{
    bytes.resize(1 << 16);
    const ssize_t size = ::read(from.number(), bytes.data(), std::size_t(bytes.size()));
    bytes.resize(int(std::max<ssize_t>(size, 0)));
    return size > 0 || (size < 0 && (errno == EINTR || errno == EAGAIN));
}

int millisecondsTo(const Deadline &deadline)
{
    if (!deadline)
        return -1;
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        *deadline - std::chrono::steady_clock::now());
    return int(std::min<qint64>(std::max<qint64>(left.count(), 0), 1 << 30));
}

} // namespace

Deadline deadlineAfter(std::optional<double> milliseconds)
{
    // More than a month is for ever.
    if (!milliseconds || *milliseconds > 3e9)
        return std::nullopt;
    return std::chrono::steady_clock::now() + std::chrono::milliseconds(qint64(*milliseconds));
}

void Box::watch()
{
    // It stays open as long as the box, since a command may be writing to it.
    bool pluginLost = false;
    for (;;) {
        pollfd polled[] = {{m_wake.read.number(), POLLIN, 0},
                           {m_listener.number(), POLLIN, 0},
                           {pluginLost ? -1 : m_plugin.number(), POLLIN, 0},
                           {m_programOutput.number(), POLLIN, 0},
                           {m_receiverOutput.number(), POLLIN, 0}};
        if (::poll(polled, 5, -1) < 0 && errno != EINTR)
            return;
        if (polled[0].revents)
            return;
        QByteArray bytes;
        if (polled[3].revents) {
            if (!readSome(m_programOutput, bytes))
                m_programOutput.reset();
            m_records.addProgramOutput(bytes);
        }
        if (polled[4].revents) {
            if (!readSome(m_receiverOutput, bytes))
                m_receiverOutput.reset();
            m_records.addReceiverOutput(bytes);
        }
        if (polled[1].revents)
            acceptPlugin(m_listener);
        pluginLost |= polled[2].revents && !readPlugin();
        // The program's output ends with it, also where its plugin never came.
        if (pluginLost || !m_programOutput.isOpen())
            giveUp();
        if (m_gone && !m_programOutput.isOpen() && !m_receiverOutput.isOpen())
            return;
    }
}

bool Box::acceptPlugin(const Descriptor &listener)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_plugin.reset(::accept4(listener.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    m_listener.reset();
    return m_plugin.isOpen();
}

bool Box::readPlugin()
{
    QByteArray bytes;
    if (!readSome(m_plugin, bytes))
        return false;
    m_pluginInput += bytes;
    int begin = 0;
    for (int end = m_pluginInput.indexOf('\n'); end >= 0;
         end = m_pluginInput.indexOf('\n', begin)) {
        takeMessage(m_pluginInput.mid(begin, end - begin));
        begin = end + 1;
    }
    m_pluginInput.remove(0, begin);
    return true;
}

void Box::takeMessage(const QByteArray &line)
{
    const QJsonObject message = QJsonDocument::fromJson(line).object();
    if (message.value("event") == QLatin1String("console")) {
        m_records.addPageMessage(message.value("data").toObject());
        return;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (message.value("event") == QLatin1String("ready"))
        m_ready = true;
    else if (message.value("id").toInt() == m_awaited)
        m_answers[m_awaited] = message;
    m_changed.notify_all();
}

void Box::giveUp()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_gone = true;
    // Wakes a command that writes more than the program reads.
    if (m_plugin.isOpen())
        ::shutdown(m_plugin.number(), SHUT_RDWR);
    m_changed.notify_all();
}

bool Box::write(const QByteArray &bytes, const Deadline &deadline)
{
    int written = 0;
    while (written < bytes.size() && !m_gone) {
        const ssize_t size = ::send(m_plugin.number(), bytes.data() + written,
                                    std::size_t(bytes.size() - written), MSG_NOSIGNAL);
        if (size > 0) {
            written += int(size);
            continue;
        }
        if (errno != EAGAIN && errno != EINTR)
            return false;
        pollfd polled{m_plugin.number(), POLLOUT, 0};
        if (::poll(&polled, 1, millisecondsTo(deadline)) == 0)
            return false;
    }
    return written == bytes.size();
}

void Box::failGone()
{
    m_program.waitForEnd(std::chrono::milliseconds(500));
    fail("unknown error", "The program " +
                              (m_program.isRunning() ? "no longer answers" : m_program.end()) +
                              ". Its last words:\n" + m_records.lastLines(20));
}

std::optional<QJsonObject> Box::request(const QJsonObject &message, const Deadline &deadline)
{
    QJsonObject numbered = message;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_awaited = ++m_lastId;
        m_answers.clear();
    }
    numbered["id"] = m_awaited;
    if (m_gone)
        failGone();
    if (!write(QJsonDocument(numbered).toJson(QJsonDocument::Compact) + '\n', deadline)) {
        // Half a request leaves nothing to go on with.
        giveUp();
        failGone();
    }
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto answered = [this] { return m_answers.count(m_awaited) > 0 || m_gone; };
    if (!deadline)
        m_changed.wait(lock, answered);
    else if (!m_changed.wait_until(lock, *deadline, answered))
        return std::nullopt;
    const auto answer = m_answers.find(m_awaited);
    if (answer == m_answers.end()) {
        lock.unlock();
        failGone();
    }
    return answer->second;
}

bool Box::tellReceiver(const QString &line, const Deadline &deadline)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    int written = 0;
    while (written < bytes.size() && !m_gone) {
        const ssize_t size = ::write(m_receiverInput.number(), bytes.constData() + written,
                                     std::size_t(bytes.size() - written));
        if (size > 0) {
            written += int(size);
            continue;
        }
        pollfd polled{m_receiverInput.number(), POLLOUT, 0};
        const bool mayRead = errno == EAGAIN || errno == EINTR;
        if (!mayRead || ::poll(&polled, 1, millisecondsTo(deadline)) == 0)
            break;
    }
    if (written > 0 && written < bytes.size())
        m_receiverInput.reset();
    return written == bytes.size();
}
