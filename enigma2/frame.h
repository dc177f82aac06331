// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/*
 * Frames of the receiver link, both directions: a header of three unsigned 32-bit big-endian
 * integers (magic, message type, payload length in bytes), then the payload.
 */

constexpr std::uint32_t frameMagic = 987654321;
constexpr std::size_t frameHeaderSize = 12;

/** The header of a frame with a payload of the given size in bytes. */
std::array<char, frameHeaderSize> packFrameHeader(std::int32_t type, std::size_t payloadSize);

/** One received frame. The payload is valid until the splitter that gave it is fed again. */
struct Frame
{
    std::int32_t type = 0;
    std::string_view payload;
};

/**
 * Cuts a byte stream into frames. Feed it bytes as they come and take frames until there is none.
 * The cost is linear in the bytes, however many frames a read brings. No thread of its own, no
 * locking.
 */
class FrameSplitter
{
public:
    /** Adds bytes to the end of the stream. */
    void feed(std::string_view bytes);

    /**
     * Takes the next complete frame; false when more bytes are needed. The magic is read but not
     * checked, and a length above the signed range counts as an empty payload.
     *
     * A lone piece of a header (1 to 11 bytes) gives the previous frame's type with an empty
     * payload, again at every call, and consumes nothing: peers write header and payload
     * together, and the link keeps the behaviour that they know.
     */
    bool next(Frame &frame);

    /**
     * True when a whole header is there or the body of one is awaited. A caller that asks first
     * never meets the lone piece of a header.
     */
    bool hasHeader() const { return m_pendingLength > 0 || available() >= frameHeaderSize; }

private:
    std::size_t available() const { return m_buffer.size() - m_position; }
    void readHeader();

    std::string m_buffer;
    std::size_t m_position = 0;
    std::int32_t m_pendingType = 0;
    std::int32_t m_pendingLength = 0;
};
