// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/** Takes a fuzzer's bytes apart, front to back; at their end numbers are 0 and texts empty. */
class Input
{
public:
    Input(const std::uint8_t *data, std::size_t size)
        : m_next(reinterpret_cast<const char *>(data))
        , m_end(m_next + size)
    {
    }

    bool atEnd() const { return m_next == m_end; }

    int byte() { return atEnd() ? 0 : static_cast<std::uint8_t>(*m_next++); }

    int integer()
    {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i)
            value = (value << 8) | static_cast<std::uint32_t>(byte());
        return static_cast<int>(value);
    }

    /** At most so many of the next bytes. */
    QByteArray bytes(int most)
    {
        const int left = static_cast<int>(m_end - m_next);
        const int size = most < left ? most : left;
        const QByteArray taken(m_next, size);
        m_next += size;
        return taken;
    }

    /** The bytes up to the next line end, which is taken as well. */
    QByteArray line()
    {
        const char *start = m_next;
        while (!atEnd() && *m_next != '\n')
            ++m_next;
        const QByteArray taken(start, static_cast<int>(m_next - start));
        m_next += atEnd() ? 0 : 1;
        return taken;
    }

    QByteArray rest() { return bytes(static_cast<int>(m_end - m_next)); }

private:
    const char *m_next;
    const char *m_end;
};

/** Ends the fuzzer with a finding unless what must hold holds. */
#define FUZZ_CHECK(condition)                                                                      \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition);    \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)
