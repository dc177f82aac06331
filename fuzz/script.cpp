// SPDX-License-Identifier: Apache-2.0
// Any file may be given as a script; it is either understood or refused with a line's number.
#include "desktop/script/script_parser.h"
#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const ParsedScript script = parseScript(QString::fromUtf8(Input(data, size).rest()));
    FUZZ_CHECK(script.failure.isEmpty() || script.failure.at(0).isDigit());
    return 0;
}
