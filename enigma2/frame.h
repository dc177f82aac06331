// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

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

/** A longer payload is skipped, so that no length that a peer announces exhausts the memory. */
constexpr std::size_t largestPayload = std::size_t{16} * 1024 * 1024;

/**
 * Cuts a byte stream into frames. Feed it bytes as they come and take frames until there is none.
 * The cost is linear in the bytes, however many frames a read brings. No thread of its own, no
 * locking.
 */
class FrameSplitter
{
public:
    /** Is told the type and the length in bytes of a payload that is skipped. */
    using SkipNotice = std::function<void(std::int32_t type, std::size_t length)>;

    explicit FrameSplitter(SkipNotice skipNotice = {})
        : m_skipNotice(std::move(skipNotice))
    {
    }

    /** Adds bytes to the end of the stream. */
    void feed(std::string_view bytes);

    /**
     * Takes the next complete frame; nothing when more bytes are needed. The magic is read but not
     * checked, and a length above the signed range counts as an empty payload. A payload above
     * largestPayload is passed over without being kept, and its frame is none.
     *
     * A lone piece of a header (1 to 11 bytes) gives the previous frame's type with an empty
     * payload, again at every call, and consumes nothing: peers write header and payload
     * together, and the link keeps the behaviour that they know.
     */
    std::optional<Frame> next();

    /** True when next() would meet the lone piece of a header. */
    bool hasLoneHeaderPiece() const
    {
        return m_state == State::Header && available() > 0 && available() < frameHeaderSize;
    }

private:
    /** What the next byte of the stream belongs to. */
    enum class State { Header, Payload, SkippedPayload };

    std::size_t available() const { return m_buffer.size() - m_position; }
    void readHeader();
    void skip();
    Frame takeFrame(std::size_t length);

    SkipNotice m_skipNotice;
    std::string m_buffer;
    std::size_t m_position = 0;
    State m_state = State::Header;
    std::int32_t m_type = 0;  ///< Of the last header.
    std::size_t m_length = 0; ///< Bytes that the payload, or what is skipped of it, still needs.
};
