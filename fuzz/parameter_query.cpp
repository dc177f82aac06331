// SPDX-License-Identifier: Apache-2.0
// Any text may be a portal's query; it is understood in one way only and answered from the box.
#include "api/parameter_query.h"
#include "api/settings_file.h" // Not its aim.
#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using Kind = ParameterQuery::Kind;
    const QString text = QString::fromUtf8(Input(data, size).rest());
    const ParameterQuery query = parseParameterQuery(text);
    const ParameterQuery again = parseParameterQuery(text);
    FUZZ_CHECK(query.kind == again.kind && query.name == again.name && query.value == again.value);
    // It would remove any file.
    if (query.kind == Kind::RemoveFile && !query.name.startsWith("/nowhere/"))
        return 0;
    const BoxValues box = {"192.0.2.1", "serial", "00:00:5E:00:53:01", [] { return "disks"; }};
    const SettingsFile noSettings("/nowhere/settings");
    const QString answer = answerParameterQuery(text, box, noSettings);
    switch (query.kind) {
    case Kind::Constant:
    case Kind::ReadSetting: FUZZ_CHECK(answer == query.value); break;
    case Kind::IpAddress: FUZZ_CHECK(answer == box.ipAddress); break;
    case Kind::SerialNumber: FUZZ_CHECK(answer == box.serialNumber); break;
    case Kind::MacAddress: FUZZ_CHECK(answer == box.macAddress); break;
    case Kind::RemoveFile: FUZZ_CHECK(answer == "Fail"); break;
    case Kind::StorageInfo: FUZZ_CHECK(answer == "disks"); break;
    default: FUZZ_CHECK(answer.isEmpty()); break;
    }
    return 0;
}
