// SPDX-License-Identifier: Apache-2.0
// Any text may be a portal's query; it is understood in one way only.
#include "api/parameter_query.h"
#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(Input(data, size).rest());
    const ParameterQuery first = parseParameterQuery(text);
    const ParameterQuery second = parseParameterQuery(text);
    FUZZ_CHECK(first.kind == second.kind && first.name == second.name &&
               first.value == second.value);
    return 0;
}
