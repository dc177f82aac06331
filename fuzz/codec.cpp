// SPDX-License-Identifier: Apache-2.0
// Any format: its size, unpacking of any bytes by it, and packing of what was unpacked.
#include "enigma2/format_walker.h"
#include "enigma2/struct_codec.h"
#include "fuzz/support/input.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr std::size_t mostItems = 6;
constexpr const char *integerItems = "bBhHiIlLqQ";

/** Integers of one width, so that one call passes any of their formats. */
struct IntegerFormat
{
    std::string text;
    std::size_t items = 0;
};

/** The longest start of a format that is a few integers without large repeats. */
IntegerFormat integersOf(const std::string &format)
{
    IntegerFormat result;
    for (const char c : format) {
        const bool isItem = std::strchr(integerItems, c) != nullptr && c != '\0';
        if (isItem && ++result.items > mostItems) {
            --result.items;
            break;
        }
        if (isItem || (c != '\0' && std::strchr("!<>=", c) != nullptr))
            result.text += c;
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    const QByteArray format = input.bytes(input.byte() % 32);
    const std::string text(format.constData()); // Up to a NUL, as the codec reads it.
    FormatWalker walker(text.c_str());
    while (walker.advance())
        FUZZ_CHECK(countedSize(walker.item()) > 0);
    struct_calcsize(text.c_str()); // Wraps for absurd repeat counts.

    const IntegerFormat integers = integersOf(text);
    const int width = struct_calcsize(integers.text.c_str());
    FUZZ_CHECK(width >= 0 && width <= int(mostItems) * 8);
    std::vector<char> packed(static_cast<std::size_t>(width));
    const QByteArray bytes = input.bytes(width);
    std::copy(bytes.begin(), bytes.end(), packed.begin());
    std::array<std::int64_t, mostItems> values = {};
    FUZZ_CHECK(struct_unpack(packed.data(), integers.text.c_str(), &values[0], &values[1],
                             &values[2], &values[3], &values[4], &values[5]) == width);
    std::vector<char> again(packed.size());
    FUZZ_CHECK(struct_pack(again.data(), integers.text.c_str(), values[0], values[1], values[2],
                           values[3], values[4], values[5]) == width);
    FUZZ_CHECK(again == packed);
    return 0;
}
