// SPDX-License-Identifier: Apache-2.0
// A stream gives the same frames however the system cuts it.
#include "enigma2/frame.h"
#include "fuzz/support/input.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

using Frames = std::vector<std::pair<std::int32_t, std::string>>;

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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
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
    return 0;
}
