// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/frame_stream.h"

#include "enigma2/frame.h"
#include "enigma2/struct_codec.h"

#include <algorithm>
#include <limits>

void FrameStream::feed(const QByteArray &bytes, bool isCut)
{
    if (m_tooLarge || bytes.isEmpty())
        return;
    // What is left of the read before is the first piece of a frame.
    if (!m_buffer.isEmpty() && m_firstPiece < 0)
        m_firstPiece = m_wasCut ? std::numeric_limits<int>::max() : m_buffer.size();
    m_wasCut = isCut;
    m_buffer += bytes;
}

std::optional<SeenFrame> FrameStream::next()
{
    if (m_tooLarge || m_buffer.size() < SeenFrame::header)
        return std::nullopt;
    SeenFrame frame;
    std::uint32_t length = 0;
    struct_unpack(m_buffer.constData(), "!III", &frame.magic, &frame.type, &length);
    if (length > largestPayload) {
        m_tooLarge = length;
        m_buffer.clear();
        return std::nullopt;
    }
    const int size = SeenFrame::header + static_cast<int>(length);
    if (m_buffer.size() < size)
        return std::nullopt;
    frame.payload = m_buffer.mid(SeenFrame::header, static_cast<int>(length));
    frame.firstPiece = m_firstPiece < 0 ? size : std::min(m_firstPiece, size);
    m_buffer.remove(0, size);
    m_firstPiece = -1;
    return frame;
}
