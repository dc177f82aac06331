// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/web_page.h"

namespace {

QString userAgentOverride;

// Portals recognise the box by this text, to the letter.
const char boxUserAgent[] = "Mozilla/5.0 (Unknown; Linux) AppleWebKit/538.1 (KHTML, like Gecko) "
                            "MAG200 stbapp ver: 4 rev: 734 Mobile Safari/538.1";

} // namespace

QString QWebPagePriv::userAgentForUrl(const QUrl &) const
{
    return userAgentOverride.isEmpty() ? QString(boxUserAgent) : userAgentOverride;
}

void setUserAgentOverride(const QString &text)
{
    const QString header = "User-Agent: ";
    userAgentOverride = text.startsWith(header) ? text.mid(header.size()) : text;
}
