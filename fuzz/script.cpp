// SPDX-License-Identifier: Apache-2.0
// Any file may be given as a script; it is either understood or refused with a line's number. What
// is understood has a test case and a time for each step, in the order of its lines.
#include "desktop/script/script_parser.h"
#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(Input(data, size).rest());
    const ParsedScript script = parseScript(text);
    FUZZ_CHECK(script.failure.isEmpty() ||
               (script.failure.at(0).isDigit() && script.steps.isEmpty()));
    const QStringList lines = text.split('\n');
    int line = 0;
    int screenshots = 0;
    for (const ScriptStep &step : script.steps) {
        FUZZ_CHECK(step.line > line && step.line <= lines.size());
        line = step.line;
        FUZZ_CHECK(lines.at(line - 1).trimmed() == step.source);
        FUZZ_CHECK(step.testCase >= 0 && step.testCase < script.testCases.size());
        FUZZ_CHECK(step.ms >= 0 && step.times >= 1);
        screenshots += step.kind == ScriptStep::Kind::Screenshot ? 1 : 0;
    }
    FUZZ_CHECK(script.outputs().size() == screenshots);
    return 0;
}
