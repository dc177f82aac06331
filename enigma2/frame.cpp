// SPDX-License-Identifier: Apache-2.0
#include "enigma2/frame.h"

#include "enigma2/struct_codec.h"

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
    m_buffer.append(bytes);
}

bool FrameSplitter::next(Frame &frame)
{
    if (available() == 0)
        return false;
    if (available() >= frameHeaderSize && m_pendingLength == 0)
        readHeader();
    const std::size_t length = m_pendingLength > 0 ? static_cast<std::size_t>(m_pendingLength) : 0;
    if (length > available())
        return false;
    frame.type = m_pendingType;
    frame.payload = std::string_view(m_buffer).substr(m_position, length);
    m_position += length;
    m_pendingLength = 0;
    return true;
}

void FrameSplitter::readHeader()
{
    std::uint32_t magic = 0;
    struct_unpack(m_buffer.data() + m_position, "!III", &magic, &m_pendingType, &m_pendingLength);
    m_position += frameHeaderSize;
}
