// SPDX-License-Identifier: Apache-2.0
// Every message that a receiver can send, with any payload.
#include "enigma2/answer_mailbox.h"
#include "enigma2/event_queue.h"
#include "enigma2/message_reader.h"
#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int wakes = 0;
    static EventQueue events([] { ++wakes; });
    static AnswerMailbox answers;
    static MessageReader reader(events, answers);
    Input input(data, size);
    const int wakesBefore = wakes;
    bool isAnyTaken = false;
    while (!input.atEnd()) {
        // The numbers of the link are below 2,000; others are rare enough among these.
        const bool isAnyNumber = input.byte() == 255;
        const std::int32_t number = isAnyNumber ? input.integer() : 1000 + input.byte() * 4;
        const QByteArray payload = input.bytes(input.byte());
        reader.HandleMessage(isAnyNumber ? number : number + input.byte() % 4,
                             {payload.constData(), static_cast<std::size_t>(payload.size())});
    }
    while (events.take())
        isAnyTaken = true;
    FUZZ_CHECK(isAnyTaken == (wakes > wakesBefore));
    return 0;
}
