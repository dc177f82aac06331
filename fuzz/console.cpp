// SPDX-License-Identifier: Apache-2.0
// Any line on the console is a command with all that it needs, or gives a reason why not.
#include "desktop/console/console_command.h"
#include "fuzz/support/input.h"

namespace {

/** Whether the payload is one of this form. */
bool isOf(PayloadForm form, const QByteArray &payload)
{
    switch (form) {
    case PayloadForm::Nothing: return payload.isEmpty();
    case PayloadForm::Integer:
    case PayloadForm::OnOff: return payload.size() == 4;
    case PayloadForm::TwoIntegers: return payload.size() == 8;
    case PayloadForm::Area: return payload.size() == 16;
    default: return !payload.isEmpty();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using Action = ConsoleCommand::Action;
    const ConsoleCommand command = parseConsoleLine(QString::fromUtf8(Input(data, size).line()));
    const bool hasText = command.action == Action::Explain || command.action == Action::MountUsb ||
                         command.action == Action::UnmountUsb;
    FUZZ_CHECK(hasText != command.text.isEmpty());
    FUZZ_CHECK(command.ms >= 0);
    if (command.action == Action::SendEvent) {
        const EventRow *row = findEvent(static_cast<std::int32_t>(command.event));
        FUZZ_CHECK(row && isOf(row->form, command.payload));
    }
    return 0;
}
