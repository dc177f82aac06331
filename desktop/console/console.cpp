// SPDX-License-Identifier: Apache-2.0
#include "desktop/console/console.h"

#include <array>
#include <cerrno>
#include <unistd.h>

namespace {

constexpr int longestLine = 64 * 1024;

} // namespace

Console::Console(int descriptor, QObject *parent)
    : QObject(parent)
    , m_descriptor(descriptor)
    , m_notifier(descriptor, QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &Console::readSome);
}

void Console::readSome()
{
    std::array<char, 4096> bytes{};
    const ssize_t count = ::read(m_descriptor, bytes.data(), bytes.size());
    if (count > 0) {
        m_pending.append(bytes.data(), static_cast<int>(count));
        takeLines();
    } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
        finish();
    }
}

void Console::takeLines()
{
    int end = 0;
    while ((end = m_pending.indexOf('\n')) >= 0) {
        const QString line = QString::fromLocal8Bit(m_pending.constData(), end);
        m_pending.remove(0, end + 1);
        emit lineRead(line);
    }
    if (m_pending.size() > longestLine)
        m_pending.clear();
}

void Console::finish()
{
    // At its end an input stays readable for ever.
    m_notifier.setEnabled(false);
    if (!m_pending.isEmpty())
        emit lineRead(QString::fromLocal8Bit(m_pending));
    m_pending.clear();
}
