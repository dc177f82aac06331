// SPDX-License-Identifier: Apache-2.0
#include "platform/network_address.h"

#include "platform/log_record.h"

namespace {

// The first and the last 256 addresses of 169.254.0.0/16 are reserved, no interface takes one by
// itself: an administrator who gave such an address means it.
constexpr quint32 firstLinkLocal = 0xA9FE0100;
constexpr quint32 lastLinkLocal = 0xA9FEFEFF;

bool isUsable(const QHostAddress &address)
{
    if (address.protocol() != QAbstractSocket::IPv4Protocol || address == QHostAddress::LocalHost)
        return false;
    const quint32 number = address.toIPv4Address();
    return number < firstLinkLocal || number > lastLinkLocal;
}

} // namespace

std::optional<QString> lastUsableAddress(const QList<QHostAddress> &addresses)
{
    std::optional<QString> last;
    for (const QHostAddress &address : addresses) {
        if (!isUsable(address))
            continue;
        last = address.toString();
        logRecord("UpdateNetconfig", ":", *last);
    }
    return last;
}
