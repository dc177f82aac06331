// SPDX-License-Identifier: Apache-2.0
// A stream gives the same frames however the system cuts it, and of messages one after the other
// each that is not too large, unchanged.
#include "enigma2/frame.h"
#include "fuzz/support/input.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

// More than the splitter keeps room for once it is used up.
constexpr int largeSize = 1100 * 1024;
constexpr int mostLargeOnes = 3;

using Frames = std::vector<std::pair<std::int32_t, std::string>>;
using Skips = std::vector<std::pair<std::int32_t, std::size_t>>;

void takeAll(FrameSplitter &splitter, Frames &frames)
{
    // A lone piece of a header repeats the last frame; the rest of the header is still to come.
    while (!splitter.hasLoneHeaderPiece()) {
        const std::optional<Frame> frame = splitter.next();
        if (!frame)
            break;
        frames.emplace_back(frame->type, frame->payload);
    }
}

void splitAnything(Input input)
{
    const QByteArray cuts = input.bytes(input.byte() % 16);
    const QByteArray stream = input.rest();

    FrameSplitter whole;
    Frames expected;
    whole.feed({stream.constData(), static_cast<std::size_t>(stream.size())});
    takeAll(whole, expected);

    FrameSplitter split;
    Frames found;
    int at = 0;
    for (int i = 0; at < stream.size(); ++i) {
        const int step = cuts.isEmpty() ? 1 : static_cast<std::uint8_t>(cuts[i % cuts.size()]) + 1;
        const int length = std::min<int>(step, stream.size() - at);
        split.feed({stream.constData() + at, static_cast<std::size_t>(length)});
        takeAll(split, found);
        at += length;
    }
    FUZZ_CHECK(found == expected);
    if (split.hasLoneHeaderPiece())
        FUZZ_CHECK(split.next().has_value());
}

/** Sends messages of any size; what is too large costs nothing here, for it is never copied. */
class Sender
{
public:
    void send(std::int32_t type, const QByteArray &payload)
    {
        announce(type, static_cast<std::size_t>(payload.size()));
        m_pending.append(payload.constData(), static_cast<std::size_t>(payload.size()));
        m_sent.emplace_back(type, payload.toStdString());
    }

    /** Sends a payload of this length, so much of it with the header and with what comes next. */
    void sendTooLarge(std::int32_t type, std::size_t length, std::size_t atEnds)
    {
        static const std::string filler(std::size_t{8} * 1024 * 1024, 'x');
        announce(type, length);
        m_pending.append(atEnds, 'x');
        flush();
        for (std::size_t left = length - 2 * atEnds; left > 0;) {
            const std::size_t size = std::min(left, filler.size());
            feed(std::string_view(filler).substr(0, size));
            left -= size;
        }
        m_pending.assign(atEnds, 'x');
        m_tooLarge.emplace_back(type, length);
    }

    /** Lets what was sent so far arrive, cut after so many bytes. */
    void flush(std::size_t cut = 0)
    {
        cut = std::min(cut, m_pending.size());
        feed(std::string_view(m_pending).substr(0, cut));
        feed(std::string_view(m_pending).substr(cut));
        m_pending.clear();
    }

    void check() const { FUZZ_CHECK(m_found == m_sent && m_skipped == m_tooLarge); }

private:
    void announce(std::int32_t type, std::size_t length)
    {
        const auto header = packFrameHeader(type, length);
        m_pending.append(header.data(), header.size());
    }

    void feed(std::string_view bytes)
    {
        m_splitter.feed(bytes);
        takeAll(m_splitter, m_found);
    }

    Frames m_sent;
    Frames m_found;
    Skips m_tooLarge;
    Skips m_skipped;
    FrameSplitter m_splitter{
        [this](std::int32_t type, std::size_t length) { m_skipped.emplace_back(type, length); }};
    std::string m_pending; ///< Sent, not yet arrived.
};

void splitMessages(Input input)
{
    constexpr std::size_t mostBeyond = std::numeric_limits<std::int32_t>::max() - largestPayload;
    Sender sender;
    int largeOnes = 0;
    while (!input.atEnd()) {
        const int kind = input.byte();
        const std::int32_t type = input.integer();
        const QByteArray payload = input.bytes(input.byte());
        if (kind >= 0xF0) {
            const auto beyond = static_cast<std::uint32_t>(input.integer()) % mostBeyond + 1;
            sender.sendTooLarge(type, largestPayload + beyond,
                                static_cast<std::size_t>(payload.size()));
        } else {
            const bool isLarge = kind == 0xEF && largeOnes++ < mostLargeOnes;
            sender.send(type, isLarge ? payload.leftJustified(largeSize, 'x') : payload);
        }
        if (kind % 2 == 0)
            sender.flush(static_cast<std::size_t>(input.byte()));
    }
    sender.flush();
    sender.check();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    splitAnything(Input(data, size));
    splitMessages(Input(data, size));
    return 0;
}
