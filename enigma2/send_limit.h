// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/**
 * Bounds what waits for a peer that does not read. A frame goes when nothing waits or when it fits;
 * from the first one that does not, frames are dropped until the peer has read all that waits, so
 * that the peer gets whole frames in order and one gap. No locking.
 */
class SendLimit
{
public:
    /** So many bytes may wait; a single larger frame may when nothing else does. */
    static constexpr std::size_t capacity = std::size_t{4} * 1024 * 1024;

    /** What becomes of a frame; the first one of those that are dropped is worth a record. */
    enum class Verdict { Send, Drop, FirstDrop };

    /** What to do with a frame of this size while so many bytes wait. */
    Verdict offer(std::size_t waiting, std::size_t size)
    {
        if (m_dropped == 0 && (waiting == 0 || waiting + size <= capacity))
            return Verdict::Send;
        return m_dropped++ == 0 ? Verdict::FirstDrop : Verdict::Drop;
    }

    /** Ends the dropping once nothing waits; how many frames were lost, 0 when it does not end. */
    std::size_t endDropping(std::size_t waiting)
    {
        if (waiting > 0)
            return 0;
        const std::size_t dropped = m_dropped;
        m_dropped = 0;
        return dropped;
    }

private:
    std::size_t m_dropped = 0;
};
