// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

#include <algorithm>
#include <cstdint>
#include <optional>

/** A frame as the receiver sent it, with what Vesprel does not look at. */
struct SeenFrame
{
    std::uint32_t magic = 0;
    std::int32_t type = 0;
    QByteArray payload;
    /** Bytes of the frame in the read that brought its first; all of them if it came at once. */
    int firstPiece = 0;

    /** Whether the header came before the payload, or itself in pieces. */
    bool isTorn() const { return firstPiece < header + std::min(payload.size(), 1); }

    static constexpr int header = 12; ///< Bytes.
};

/**
 * Cuts what the receiver sends into frames and notes how they came. Unlike the splitter of the
 * program it takes no part of a header for a message, and ends at a payload that is too large.
 */
class FrameStream
{
public:
    /**
     * Adds what one read brought. isCut: the read was full, so that its end says nothing about the
     * receiver's writes.
     */
    void feed(const QByteArray &bytes, bool isCut);

    /** The next whole frame; nothing while bytes are missing. */
    std::optional<SeenFrame> next();

    /** The length in bytes of a payload that is too large, after which no frame is found. */
    std::optional<std::uint32_t> tooLarge() const { return m_tooLarge; }

    /** Bytes of a frame that is not whole. */
    int rest() const { return m_buffer.size(); }

private:
    QByteArray m_buffer;
    int m_firstPiece = -1; ///< Of the frame at the buffer's begin; -1: it came with the last read.
    bool m_wasCut = false; ///< The end of the last read is not that of a write.
    std::optional<std::uint32_t> m_tooLarge;
};
