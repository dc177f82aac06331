// SPDX-License-Identifier: Apache-2.0
// A key of the on-screen keyboard stays inside its text, unless it is the quote itself.
#include "shell/pages/page_statement.h"
#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    const QString id = QString::fromUtf8(input.line());
    const QString key = QString::fromUtf8(input.line());
    const QString statement = PageStatement::keyboardPress(key, id);
    FUZZ_CHECK(statement.count('\\') >= 2 * key.count('\\'));
    FUZZ_CHECK(!PageStatement::recordingParameters(input.integer()).isEmpty());
    return 0;
}
