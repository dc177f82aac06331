// SPDX-License-Identifier: Apache-2.0
// Any play command: positions are never negative, and no blank of an address with a scheme stays.
#include "desktop/player/play_request.h"
#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const PlayRequest request = parsePlayText(QString::fromLatin1(Input(data, size).rest()));
    FUZZ_CHECK(request.positionMs >= 0);
    FUZZ_CHECK(!request.url.startsWith("http://") || !request.url.contains(' '));
    FUZZ_CHECK(simulatedDurationMs(request.url, 1) >= 0);
    return 0;
}
