// SPDX-License-Identifier: Apache-2.0
// Any recording of the link: what was read is written and read again as it is, and its replay ends
// whatever the program says meanwhile.
#include "desktop/traffic/traffic_file.h"
#include "desktop/traffic/traffic_replay.h"
#include "enigma2/messages.h" // Not its aim.
#include "fuzz/support/input.h"

#include <iterator>

namespace {

void replay(const QVector<TrafficMessage> &messages, const QByteArray &commands)
{
    qint64 now = 0;
    TrafficReplay replay(messages, now);
    for (const char c : commands) {
        // Of the commands that there are each, some as they were recorded.
        const auto number = static_cast<std::uint8_t>(c);
        const auto type = static_cast<int>(commandRows[number % std::size(commandRows)].command);
        const TrafficMessage recorded = messages.value(number % messages.size());
        replay.take(type, recorded.type == type ? recorded.payload : QByteArray(), now += 10);
    }
    for (int i = 0; i <= messages.size(); ++i) {
        const std::optional<qint64> next = replay.nextTime();
        if (!next)
            return;
        FUZZ_CHECK(*next >= 0);
        now = qMax(now + 1, *next);
        replay.advance(now);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    const QByteArray commands = input.bytes(input.byte() % 8);
    const ParsedTraffic traffic = parseTraffic(input.rest());
    if (!traffic.failure.isEmpty())
        return 0;
    QByteArray text = trafficHeader(QDateTime()) + '\n';
    for (const TrafficMessage &message : traffic.messages)
        text += trafficLine(message) + '\n';
    const ParsedTraffic again = parseTraffic(text);
    FUZZ_CHECK(again.failure.isEmpty() && again.messages.size() == traffic.messages.size());
    for (int i = 0; i < again.messages.size(); ++i) {
        FUZZ_CHECK(again.messages[i].type == traffic.messages[i].type);
        FUZZ_CHECK(again.messages[i].payload == traffic.messages[i].payload);
    }
    replay(traffic.messages, commands);
    return 0;
}
