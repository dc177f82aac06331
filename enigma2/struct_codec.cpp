// SPDX-License-Identifier: Apache-2.0
#include "enigma2/struct_codec.h"

#include "enigma2/format_walker.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::size_t alignment = 4;

/** The variable arguments, so that helpers can take the next one wherever they are. */
struct Arguments
{
    std::va_list list;
};

/** The order of a single is the opposite of the current one; both ends of the link agree on it. */
ByteOrder singleOrder(ByteOrder order)
{
    return order == hostOrder ? ByteOrder::Big : ByteOrder::Little;
}

class Writer
{
public:
    Writer(char *buffer, int offset)
        : m_buffer(buffer)
        , m_position(static_cast<std::size_t>(offset))
    {
    }

    int position() const { return static_cast<int>(m_position); }

    void integer(std::uint64_t value, int width, ByteOrder order)
    {
        for (int i = 0; i < width; ++i) {
            const int shift = 8 * (order == ByteOrder::Big ? width - 1 - i : i);
            m_buffer[m_position++] = static_cast<char>((value >> shift) & 0xff);
        }
    }

    void counted(const char *data, std::size_t length, ByteOrder order)
    {
        integer(length, 4, order);
        if (length == 0)
            return;
        std::memcpy(m_buffer + m_position, data, length);
        m_position += length;
        while (m_position % alignment != 0)
            m_buffer[m_position++] = '\0';
    }

    void item(char item, ByteOrder order, Arguments &arguments)
    {
        switch (item) {
        case 'b':
        case 'B': integer(nextInt(arguments), 1, order); break;
        case 'h':
        case 'H': integer(nextInt(arguments), 2, order); break;
        case 'q':
        case 'Q': integer(va_arg(arguments.list, std::uint64_t), 8, order); break;
        case 'f': single(static_cast<float>(va_arg(arguments.list, double)), order); break;
        case 'd': real(va_arg(arguments.list, double), order); break;
        case 's': string(va_arg(arguments.list, const char *), order); break;
        case 'o': block(arguments, order); break;
        case 't': timestamp(*va_arg(arguments.list, const StructTimestamp *), order); break;
        default: integer(nextInt(arguments), 4, order); break;
        }
    }

private:
    static std::uint64_t nextInt(Arguments &arguments)
    {
        return static_cast<std::uint64_t>(va_arg(arguments.list, int));
    }

    void single(float value, ByteOrder order)
    {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        integer(bits, 4, singleOrder(order));
    }

    void real(double value, ByteOrder order)
    {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        integer(bits, 8, order);
    }

    void string(const char *text, ByteOrder order)
    {
        counted(text, text ? std::strlen(text) : 0, order);
    }

    void block(Arguments &arguments, ByteOrder order)
    {
        const char *data = va_arg(arguments.list, const char *);
        const int length = va_arg(arguments.list, int);
        counted(data, static_cast<std::size_t>(std::max(length, 0)), order);
    }

    void timestamp(const StructTimestamp &time, ByteOrder order)
    {
        integer(static_cast<std::uint64_t>(std::int64_t{time.seconds}), 8, order);
        integer(time.milliseconds, 2, order);
        integer(static_cast<std::uint16_t>(time.timeZoneOffset), 2, order);
        integer(static_cast<std::uint16_t>(time.daylightSaving), 2, order);
    }

    char *m_buffer;
    std::size_t m_position;
};

class Reader
{
public:
    Reader(const char *buffer, int offset)
        : m_buffer(buffer)
        , m_position(static_cast<std::size_t>(offset))
    {
    }

    int position() const { return static_cast<int>(m_position); }

    void item(char item, ByteOrder order, Arguments &arguments)
    {
        switch (item) {
        case 'b':
        case 'B': store<std::uint8_t>(arguments, integer(1, order)); break;
        case 'h':
        case 'H': store<std::uint16_t>(arguments, integer(2, order)); break;
        case 'q':
        case 'Q': store<std::uint64_t>(arguments, integer(8, order)); break;
        case 'f': store<std::uint32_t>(arguments, integer(4, singleOrder(order))); break;
        case 'd': store<std::uint64_t>(arguments, integer(8, order)); break;
        case 's': string(arguments, order); break;
        case 'o': block(arguments, order); break;
        case 't': timestamp(*va_arg(arguments.list, StructTimestamp *), order); break;
        default: store<std::uint32_t>(arguments, integer(4, order)); break;
        }
    }

private:
    std::uint64_t integer(int width, ByteOrder order)
    {
        std::uint64_t value = 0;
        for (int i = 0; i < width; ++i) {
            const int shift = 8 * (order == ByteOrder::Big ? width - 1 - i : i);
            value |= std::uint64_t{static_cast<unsigned char>(m_buffer[m_position++])} << shift;
        }
        return value;
    }

    /** Stores the bits of a value through the next pointer, whatever type of this width it has. */
    template <typename Bits>
    void store(Arguments &arguments, std::uint64_t value)
    {
        const Bits bits = static_cast<Bits>(value);
        std::memcpy(va_arg(arguments.list, void *), &bits, sizeof bits);
    }

    std::int32_t length(ByteOrder order) { return static_cast<std::int32_t>(integer(4, order)); }

    /** Allocates a NUL-terminated copy of the next bytes and skips them with their padding. */
    char *copy(std::int32_t length)
    {
        const std::size_t size = static_cast<std::size_t>(length);
        char *data = static_cast<char *>(std::malloc(size + 1));
        if (data) {
            std::memcpy(data, m_buffer + m_position, size);
            data[size] = '\0';
        }
        m_position += size;
        m_position += (alignment - m_position % alignment) % alignment;
        return data;
    }

    void string(Arguments &arguments, ByteOrder order)
    {
        const std::int32_t size = length(order);
        char **destination = va_arg(arguments.list, char **);
        *destination = size > 0 ? copy(size) : static_cast<char *>(std::calloc(1, 1));
    }

    void block(Arguments &arguments, ByteOrder order)
    {
        char **destination = va_arg(arguments.list, char **);
        int *size = va_arg(arguments.list, int *);
        *size = length(order);
        *destination = *size > 0 ? copy(*size) : nullptr;
    }

    void timestamp(StructTimestamp &time, ByteOrder order)
    {
        time.seconds = static_cast<std::int32_t>(integer(8, order));
        time.milliseconds = static_cast<std::uint16_t>(integer(2, order));
        time.timeZoneOffset = static_cast<std::int16_t>(integer(2, order));
        time.daylightSaving = static_cast<std::int16_t>(integer(2, order));
    }

    const char *m_buffer;
    std::size_t m_position;
};

/** Takes every item of the format through the writer or the reader. */
template <typename Stream>
int process(Stream stream, const char *format, Arguments &arguments)
{
    FormatWalker walker(format);
    while (walker.advance()) {
        for (std::int64_t i = 0; i < walker.count(); ++i)
            stream.item(walker.item(), walker.order(), arguments);
    }
    return walker.failed() ? -1 : stream.position();
}

} // namespace

int struct_pack_into(char *buffer, int offset, const char *format, std::va_list arguments)
{
    Arguments copy{};
    va_copy(copy.list, arguments);
    const int end = process(Writer(buffer, offset), format, copy);
    va_end(copy.list);
    return end;
}

int struct_pack(char *buffer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const int end = struct_pack_into(buffer, 0, format, arguments);
    va_end(arguments);
    return end;
}

int struct_unpack_from(const char *buffer, int offset, const char *format, std::va_list arguments)
{
    Arguments copy{};
    va_copy(copy.list, arguments);
    const int end = process(Reader(buffer, offset), format, copy);
    va_end(copy.list);
    return end;
}

int struct_unpack(const char *buffer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const int end = struct_unpack_from(buffer, 0, format, arguments);
    va_end(arguments);
    return end;
}

int struct_calcsize(const char *format)
{
    // Unsigned, so that an absurd repeat count wraps instead of overflowing.
    std::uint64_t size = 0;
    FormatWalker walker(format);
    while (walker.advance())
        size += static_cast<std::uint64_t>(walker.count()) *
                static_cast<std::uint64_t>(countedSize(walker.item()));
    return walker.failed() ? -1 : static_cast<int>(size);
}
