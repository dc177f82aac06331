// SPDX-License-Identifier: Apache-2.0
// A key of the on-screen keyboard stays inside its text, unless it is the quote itself; numbers
// from the receiver stay what they are.
#include "shell/pages/page_statement.h"
#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    const QString id = QString::fromUtf8(input.line());
    const QString key = QString::fromUtf8(input.line());
    const QString statement = PageStatement::keyboardPress(key, id);
    FUZZ_CHECK(statement.count('\\') >= 2 * key.count('\\'));
    const int number = input.integer();
    FUZZ_CHECK(PageStatement::recordingParameters(number) == QString("{\"id\":%1}").arg(number));
    const QString event = PageStatement::recording(static_cast<PageStatement::Recording>(number));
    FUZZ_CHECK(event.contains(QString("stbEvent.onEvent(\"%1\", eventParams);").arg(number)));
    return 0;
}
