// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/** Byte order of packed items. */
enum class ByteOrder { Big = 1, Little = 2 };

#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
constexpr ByteOrder hostOrder = ByteOrder::Big;
#else
constexpr ByteOrder hostOrder = ByteOrder::Little;
#endif

/**
 * Bytes of an item that struct_calcsize() counts, 0 for a character that is no item. Any thread.
 */
int countedSize(char item);

/** Steps through the items of a format with their repeat count and byte order. */
class FormatWalker
{
public:
    explicit FormatWalker(const char *format)
        : m_next(format)
    {
    }

    /** Moves to the next item; false at the end of the format and at an unknown character. */
    bool advance();

    /** The item: the character that stands for it. */
    char item() const { return m_item; }

    /** The number before the item, 1 without one; the largest there is for one beyond it. */
    std::int64_t count() const { return m_count; }

    ByteOrder order() const { return m_order; }

    /** Whether the format ended at a character that is no item. */
    bool failed() const { return m_failed; }

private:
    void takeCount();

    const char *m_next;
    std::array<char, 32> m_digits = {};
    std::size_t m_digitCount = 0;
    ByteOrder m_order = hostOrder;
    char m_item = '\0';
    std::int64_t m_count = 1;
    bool m_failed = false;
};
