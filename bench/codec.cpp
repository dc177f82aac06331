// SPDX-License-Identifier: Apache-2.0
// The link's codec beside Qt's own, and the splitter: frames a second and cost per byte.
#include "enigma2/frame.h"
#include "enigma2/struct_codec.h"

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QDataStream>

#include <array>
#include <string>
#include <string_view>

namespace {

// Both carry what a time message of the receiver carries.
void packCodec(benchmark::State &state)
{
    std::array<char, 8> buffer = {};
    int total = 5400000;
    for (auto _ : state) {
        benchmark::DoNotOptimize(struct_pack(buffer.data(), "!II", ++total, 1000));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(packCodec);

void packDataStream(benchmark::State &state)
{
    QByteArray buffer(8, '\0');
    int total = 5400000;
    for (auto _ : state) {
        QDataStream stream(&buffer, QIODevice::WriteOnly);
        stream << ++total << 1000;
        benchmark::ClobberMemory();
    }
}
BENCHMARK(packDataStream);

void unpackCodec(benchmark::State &state)
{
    const std::array<char, 8> buffer = {0, 0, 1, 2, 0, 0, 3, 4};
    int total = 0;
    int position = 0;
    for (auto _ : state) {
        struct_unpack(buffer.data(), "!II", &total, &position);
        benchmark::DoNotOptimize(total);
        benchmark::DoNotOptimize(position);
    }
}
BENCHMARK(unpackCodec);

void unpackDataStream(benchmark::State &state)
{
    const QByteArray buffer("\0\0\1\2\0\0\3\4", 8);
    int total = 0;
    int position = 0;
    for (auto _ : state) {
        QDataStream stream(buffer);
        stream >> total >> position;
        benchmark::DoNotOptimize(total);
        benchmark::DoNotOptimize(position);
    }
}
BENCHMARK(unpackDataStream);

std::string frames(std::size_t bytes, std::size_t payloadSize)
{
    const auto header = packFrameHeader(1005, payloadSize);
    const std::string frame =
        std::string(header.data(), header.size()) + std::string(payloadSize, 'x');
    std::string stream;
    while (stream.size() + frame.size() <= bytes)
        stream += frame;
    return stream;
}

/** A burst of small frames, as one read brings them. */
void splitFrames(benchmark::State &state)
{
    const std::string stream = frames(static_cast<std::size_t>(state.range(0)), 8);
    std::int64_t count = 0;
    for (auto _ : state) {
        FrameSplitter splitter;
        splitter.feed(stream);
        while (const auto frame = splitter.next()) {
            benchmark::DoNotOptimize(frame->payload.data());
            ++count;
        }
    }
    state.SetItemsProcessed(count);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(stream.size()));
}
BENCHMARK(splitFrames)->Arg(64 << 10)->Arg(16 << 20)->Arg(64 << 20);

/** What a burst costs whoever keeps it: fresh memory, a copy, and one look at every cache line. */
void copyBurst(benchmark::State &state)
{
    const std::string stream = frames(static_cast<std::size_t>(state.range(0)), 8);
    for (auto _ : state) {
        std::string copy;
        copy.append(stream);
        benchmark::ClobberMemory();
        unsigned sum = 0;
        for (std::size_t position = 0; position < copy.size(); position += 64)
            sum += static_cast<unsigned char>(copy[position]);
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(stream.size()));
}
BENCHMARK(copyBurst)->Arg(64 << 10)->Arg(16 << 20)->Arg(64 << 20);

} // namespace

BENCHMARK_MAIN();
