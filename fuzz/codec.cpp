// SPDX-License-Identifier: Apache-2.0
// Any format: its size, and that whatever is packed by it is unpacked as it was.
#include "enigma2/format_walker.h"
#include "enigma2/struct_codec.h"
#include "fuzz/support/input.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace {

// One call serves any format: integers and pointers go one way, floating-point numbers another, as
// long as these stay in registers. So it is on the 64-bit processors that fuzzers run on.
static_assert(sizeof(void *) == sizeof(std::uint64_t) && hostOrder == ByteOrder::Little);
constexpr std::size_t mostWords = 12;
constexpr std::size_t mostReals = 8;

/** An item with the value that is packed for it. */
struct Item
{
    char kind = '\0';
    std::uint64_t bits = 0; ///< An integer or a double; the length of an empty block.
    QByteArray text;        ///< A text or a block.
    StructTimestamp time = {};
};

/** What a pointer of an unpacking points to, larger than whatever is stored there. */
struct alignas(std::uint64_t) Slot
{
    Slot() { bytes.fill(0xAA); }

    template <typename Value>
    void store(Value value, std::size_t size = sizeof(Value))
    {
        std::memcpy(bytes.data(), &value, size);
    }

    template <typename Value>
    Value value() const
    {
        Value result = {};
        std::memcpy(&result, bytes.data(), sizeof result);
        return result;
    }

    std::array<std::uint8_t, 16> bytes = {};
};

bool isReal(char kind) { return kind == 'f' || kind == 'd'; }

/** The items of a format, each as often as it repeats; nothing if a call here cannot pass them. */
std::optional<std::string> itemsOf(const std::string &format)
{
    std::string items;
    FormatWalker walker(format.c_str());
    while (walker.advance()) {
        FUZZ_CHECK(countedSize(walker.item()) > 0 && walker.count() >= 0);
        if (walker.count() > std::int64_t{mostWords})
            return std::nullopt;
        items.append(static_cast<std::size_t>(walker.count()), walker.item());
    }
    const auto blocks = static_cast<std::size_t>(std::count(items.begin(), items.end(), 'o'));
    const auto reals = std::count_if(items.begin(), items.end(), isReal);
    const bool fit = items.size() + blocks <= mostWords && reals <= std::int64_t{mostReals};
    return fit ? std::optional(items) : std::nullopt;
}

std::uint64_t drawBits(Input &input)
{
    const auto high = static_cast<std::uint32_t>(input.integer());
    return std::uint64_t{high} << 32 | static_cast<std::uint32_t>(input.integer());
}

Item drawItem(char kind, Input &input)
{
    Item item;
    item.kind = kind;
    if (kind == 's' || kind == 'o') {
        item.text = input.bytes(input.byte() % 16);
        if (kind == 's')
            item.text.truncate(static_cast<int>(qstrlen(item.text.constData())));
        else if (item.text.isEmpty())
            item.bits = static_cast<std::uint64_t>(-input.byte());
    } else {
        item.bits = drawBits(input);
        if (kind == 't')
            item.time = {input.integer(), static_cast<std::uint16_t>(item.bits),
                         static_cast<std::int16_t>(item.bits >> 16),
                         static_cast<std::int16_t>(item.bits >> 32)};
    }
    return item;
}

std::size_t endOf(const Item &item, std::size_t begin)
{
    if (item.kind == 't')
        return begin + 14;
    const std::size_t end = begin + static_cast<std::size_t>(countedSize(item.kind));
    return item.text.isEmpty() ? end : (end + static_cast<std::size_t>(item.text.size()) + 3) & ~3U;
}

int pack(char *buffer, const char *format, const std::vector<Item> &items)
{
    std::array<std::uint64_t, mostWords> words = {};
    std::array<double, mostReals> reals = {};
    auto word = words.begin();
    auto real = reals.begin();
    for (const Item &item : items) {
        const bool hasText = !item.text.isEmpty();
        if (isReal(item.kind)) {
            std::memcpy(&*real++, &item.bits, sizeof item.bits);
        } else if (item.kind == 's' || item.kind == 'o') {
            // Nothing to say is a null pointer.
            *word++ = hasText ? reinterpret_cast<std::uintptr_t>(item.text.constData()) : 0;
            if (item.kind == 'o')
                *word++ = hasText ? static_cast<std::uint64_t>(item.text.size()) : item.bits;
        } else {
            *word++ = item.kind == 't' ? reinterpret_cast<std::uintptr_t>(&item.time) : item.bits;
        }
    }
    return struct_pack(buffer, format, words[0], words[1], words[2], words[3], words[4], words[5],
                       words[6], words[7], words[8], words[9], words[10], words[11], reals[0],
                       reals[1], reals[2], reals[3], reals[4], reals[5], reals[6], reals[7]);
}

void checkCounted(const Item &item, const Slot *&slot)
{
    char *data = (slot++)->value<char *>();
    const QByteArray expected = item.text;
    if (item.kind == 'o')
        FUZZ_CHECK((slot++)->value<int>() == expected.size());
    FUZZ_CHECK((data != nullptr) == (item.kind == 's' || !expected.isEmpty()));
    if (data)
        FUZZ_CHECK(std::equal(expected.begin(), expected.end() + 1, data)); // NUL included.
    std::free(data);
}

void checkItem(const Item &item, const Slot *&slot)
{
    if (item.kind == 's' || item.kind == 'o') {
        checkCounted(item, slot);
        return;
    }
    const Slot &found = *slot++;
    Slot expected;
    if (item.kind == 't') {
        const auto time = found.value<StructTimestamp>();
        FUZZ_CHECK(time.seconds == item.time.seconds &&
                   time.milliseconds == item.time.milliseconds &&
                   time.timeZoneOffset == item.time.timeZoneOffset &&
                   time.daylightSaving == item.time.daylightSaving);
        return;
    }
    if (item.kind == 'f') {
        double value = 0.0;
        std::memcpy(&value, &item.bits, sizeof value);
        expected.store(static_cast<float>(value));
    } else {
        expected.store(item.bits, static_cast<std::size_t>(countedSize(item.kind)));
    }
    FUZZ_CHECK(found.bytes == expected.bytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    // Up to a NUL, as the codec reads it.
    std::string format(input.bytes(input.byte() % 32).constData());
    struct_calcsize(format.c_str()); // Wraps for absurd repeat counts.
    std::optional<std::string> kinds;
    while (!(kinds = itemsOf(format)))
        format.pop_back();

    std::vector<Item> items;
    std::size_t end = 0;
    int fixedSize = 0;
    for (const char kind : *kinds) {
        items.push_back(drawItem(kind, input));
        end = endOf(items.back(), end);
        fixedSize += countedSize(kind);
    }
    const bool isKnown = format.find_first_not_of("!<>=0123456789bBhHiIlLqQfdsot") == format.npos;
    FUZZ_CHECK(struct_calcsize(format.c_str()) == (isKnown ? fixedSize : -1));
    std::vector<char> packed(end);
    const int result = isKnown ? static_cast<int>(end) : -1;
    FUZZ_CHECK(pack(packed.data(), format.c_str(), items) == result);

    std::array<Slot, mostWords> stored;
    Slot *at = stored.data();
    FUZZ_CHECK(struct_unpack(packed.data(), format.c_str(), at, at + 1, at + 2, at + 3, at + 4,
                             at + 5, at + 6, at + 7, at + 8, at + 9, at + 10, at + 11) == result);
    const Slot *slot = at;
    for (const Item &item : items)
        checkItem(item, slot);
    return 0;
}
