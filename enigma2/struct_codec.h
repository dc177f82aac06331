// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdarg>
#include <cstdint>

/*
 * A binary codec driven by a format string. A format names items of fixed width and a byte order;
 * the items follow one another without alignment.
 *
 *   ! >      following items big-endian        b B      8 bits      int
 *   <        following items little-endian     h H      16 bits     int
 *   =        following items in host order     i I l L  32 bits     int
 *   digits   how often the next item repeats   q Q      64 bits     64-bit integer
 *                                              f d      IEEE-754    double
 *   s        counted string                    o        counted block: pointer and int length
 *   t        StructTimestamp
 *
 * A format starts in host order. Packing takes the values above; unpacking takes a pointer to each
 * (for s a char **, for o a char ** and an int *, released by the caller with free()).
 *
 * Every function returns -1 at an unknown character; what was packed or stored before it stays.
 * None knows the length of its buffer: the caller provides struct_calcsize() bytes, and what the
 * strings and blocks add. All are reentrant.
 */

/** A point in time as the item t carries it. */
struct StructTimestamp
{
    std::int32_t seconds;
    std::uint16_t milliseconds;
    std::int16_t timeZoneOffset;
    std::int16_t daylightSaving;
};

/**
 * Writes the items of format from the argument list to buffer + offset (bytes). Returns the end
 * position, counted from buffer.
 */
int struct_pack_into(char *buffer, int offset, const char *format, std::va_list arguments);

/** Writes the items of format to buffer; returns the number of bytes written. */
int struct_pack(char *buffer, const char *format, ...);

/**
 * Reads the items of format from buffer + offset (bytes) and stores each through the next pointer
 * of the argument list. Returns the end position, counted from buffer.
 */
int struct_unpack_from(const char *buffer, int offset, const char *format, std::va_list arguments);

/** Reads the items of format from buffer; returns the number of bytes read. */
int struct_unpack(const char *buffer, const char *format, ...);

/**
 * Size in bytes of the fixed part of format: a string or block counts with its length word only,
 * and a time stamp with 12 bytes although it packs to 14.
 */
int struct_calcsize(const char *format);
