// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/box_records.h"

#include <algorithm>
#include <chrono>

namespace {

constexpr std::size_t mostEntries = 10000;
constexpr int longestLine = 1 << 16;

} // namespace

void BoxRecords::Lines::add(const QByteArray &bytes)
{
    rest += bytes;
    for (int end = rest.indexOf('\n'); end >= 0 || rest.size() > longestLine;
         end = rest.indexOf('\n')) {
        const int size = end >= 0 ? end : longestLine;
        lines.push_back(QString::fromUtf8(rest.left(size)));
        rest.remove(0, end >= 0 ? end + 1 : size);
        ++count;
        if (lines.size() > mostEntries)
            lines.pop_front();
    }
}

QStringList BoxRecords::Lines::take()
{
    QStringList result;
    const qint64 first = count - qint64(lines.size());
    for (qint64 number = std::max(taken, first); number < count; ++number)
        result += lines[std::size_t(number - first)];
    taken = count;
    return result;
}

void BoxRecords::addProgramOutput(const QByteArray &bytes)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_log.add(bytes);
}

void BoxRecords::addReceiverOutput(const QByteArray &bytes)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const qint64 before = m_receiver.count;
    m_receiver.add(bytes);
    const qint64 first = m_receiver.count - qint64(m_receiver.lines.size());
    for (qint64 number = std::max(before, first); number < m_receiver.count; ++number) {
        const QString &line = m_receiver.lines[std::size_t(number - first)];
        if (line.startsWith("sent: play start"))
            m_playing = true;
        else if (line.startsWith("sent: play end") || line.startsWith("stop"))
            m_playing = false;
    }
    m_changed.notify_all();
}

void BoxRecords::addPageMessage(const QJsonObject &message)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_pageMessages.push_back(message);
    if (m_pageMessages.size() > mostEntries)
        m_pageMessages.pop_front();
}

QStringList BoxRecords::takeLog()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_log.take();
}

QStringList BoxRecords::takeCommands()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_receiver.take();
}

QJsonArray BoxRecords::takePageMessages()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QJsonArray result;
    for (const QJsonObject &message : m_pageMessages)
        result.append(message);
    m_pageMessages.clear();
    return result;
}

QString BoxRecords::lastLines(int count)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QStringList result;
    for (const Lines *lines : {&m_receiver, &m_log}) {
        const int size = int(lines->lines.size());
        for (int index = std::max(0, size - count); index < size; ++index)
            result += lines->lines[std::size_t(index)];
        if (!lines->rest.isEmpty())
            result += QString::fromUtf8(lines->rest);
    }
    return result.join('\n');
}

qint64 BoxRecords::receiverLineCount()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_receiver.count;
}

QString BoxRecords::waitForReceiver(const QStringList &beginnings, qint64 from, double timeMs)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(qint64(std::min(timeMs, 1e9)));
    for (;;) {
        const qint64 first = m_receiver.count - qint64(m_receiver.lines.size());
        for (from = std::max(from, first); from < m_receiver.count; ++from) {
            const QString &line = m_receiver.lines[std::size_t(from - first)];
            for (const QString &beginning : beginnings) {
                if (line.startsWith(beginning))
                    return line;
            }
        }
        if (m_changed.wait_until(lock, deadline) == std::cv_status::timeout)
            return {};
    }
}

bool BoxRecords::isPlaying()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_playing;
}
