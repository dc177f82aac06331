// SPDX-License-Identifier: Apache-2.0
#include "enigma2/frame.h"

#include "enigma2/struct_codec.h"

#include <algorithm>

namespace {

// What a large payload left behind is given back once it is used up.
constexpr std::size_t idleCapacity = std::size_t{1024} * 1024;

} // namespace

std::array<char, frameHeaderSize> packFrameHeader(std::int32_t type, std::size_t payloadSize)
{
    std::array<char, frameHeaderSize> header{};
    struct_pack(header.data(), "!III", frameMagic, type, static_cast<std::uint32_t>(payloadSize));
    return header;
}

void FrameSplitter::feed(std::string_view bytes)
{
    m_buffer.erase(0, m_position);
    m_position = 0;
    if (m_buffer.empty() && m_buffer.capacity() > idleCapacity)
        m_buffer.shrink_to_fit();
    if (m_state == State::SkippedPayload) {
        const std::size_t skipped = std::min(m_length, bytes.size());
        m_length -= skipped;
        bytes.remove_prefix(skipped);
        if (m_length == 0)
            m_state = State::Header;
    }
    m_buffer.append(bytes);
}

std::optional<Frame> FrameSplitter::next()
{
    while (available() > 0) {
        switch (m_state) {
        case State::Header:
            if (available() < frameHeaderSize)
                return takeFrame(0);
            readHeader();
            if (m_state == State::Header)
                return takeFrame(0);
            break;
        case State::Payload:
            if (available() < m_length)
                return std::nullopt;
            return takeFrame(m_length);
        case State::SkippedPayload: skip(); break;
        }
    }
    return std::nullopt;
}

void FrameSplitter::readHeader()
{
    std::uint32_t magic = 0;
    std::int32_t length = 0;
    struct_unpack(m_buffer.data() + m_position, "!III", &magic, &m_type, &length);
    m_position += frameHeaderSize;
    if (length <= 0)
        return;
    m_length = static_cast<std::size_t>(length);
    m_state = m_length > largestPayload ? State::SkippedPayload : State::Payload;
    if (m_state == State::SkippedPayload && m_skipNotice)
        m_skipNotice(m_type, m_length);
}

void FrameSplitter::skip()
{
    const std::size_t skipped = std::min(m_length, available());
    m_position += skipped;
    m_length -= skipped;
    if (m_length == 0)
        m_state = State::Header;
}

Frame FrameSplitter::takeFrame(std::size_t length)
{
    const Frame frame = {m_type, std::string_view(m_buffer).substr(m_position, length)};
    m_position += length;
    m_state = State::Header;
    return frame;
}
