// SPDX-License-Identifier: Apache-2.0
// A list of origins lets in nobody whom it does not name, and a list is a limit whatever it holds.
#include "shell/pages/portal_origins.h"
#include "fuzz/support/input.h"

#include <QUrl>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    const QString address = QString::fromUtf8(input.line());
    const QString list = QString::fromUtf8(input.rest());
    const PortalOrigins origins(list);
    const QString origin = originText(QUrl(address));
    FUZZ_CHECK(origins.allow(origin) || origins.areLimited());
    FUZZ_CHECK(!origins.areLimited() || !origins.allow(QString()));
    FUZZ_CHECK(origins.areLimited() || origins.ignored().isEmpty());
    FUZZ_CHECK(origin.isEmpty() || originText(QUrl(origin)) == origin);
    return 0;
}
