// SPDX-License-Identifier: Apache-2.0
// Any line on the console is a command or gives a reason why not.
#include "desktop/console/console_command.h"
#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const ConsoleCommand command = parseConsoleLine(QString::fromUtf8(Input(data, size).line()));
    FUZZ_CHECK(command.action != ConsoleCommand::Action::Explain || !command.text.isEmpty());
    return 0;
}
