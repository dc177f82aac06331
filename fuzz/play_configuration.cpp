// SPDX-License-Identifier: Apache-2.0
// What a portal's play configuration plays is an address and a position, for any text.
#include "api/play_text.h"
#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString marker = " position:";
    const QString text = configuredPlayText(QString::fromUtf8(Input(data, size).rest()));
    FUZZ_CHECK(text.contains(marker));
    bool isNumber = false;
    text.mid(text.lastIndexOf(marker) + marker.size()).toInt(&isNumber);
    FUZZ_CHECK(isNumber);
    return 0;
}
