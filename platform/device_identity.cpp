// SPDX-License-Identifier: Apache-2.0
#include "platform/device_identity.h"

#include "platform/box_paths.h"
#include "platform/environment.h"
#include "platform/log_record.h"

#include <QCryptographicHash>
#include <QFile>
#include <QList>
#include <QRegularExpression>
#include <QSysInfo>

#include <algorithm>

namespace {

// Longest piece of a provisioning file that is looked at; a processor list takes a few KiB.
constexpr qint64 longestText = 64LL * 1024;

// The first and the last 256 addresses of 169.254.0.0/16 are reserved, no interface takes one by
// itself: an administrator who gave such an address means it.
constexpr quint32 firstLinkLocal = 0xA9FE0100;
constexpr quint32 lastLinkLocal = 0xA9FEFEFF;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(longestText) : QByteArray();
}

// The device tree ends its texts with NULs, drivers theirs with line breaks.
QString trimmed(QByteArray text) { return QString::fromUtf8(text.replace('\0', ' ')).trimmed(); }

QString processorSerial()
{
    const QList<QByteArray> lines = contentOf(BoxPaths::processorInfoFile()).split('\n');
    for (const QByteArray &line : lines) {
        const int colon = line.indexOf(':');
        if (colon < 0 || line.left(colon).trimmed() != "Serial")
            continue;
        const QString serial = trimmed(line.mid(colon + 1));
        // Kernels print zeros for a processor that was never given a number.
        if (serial.count('0') != serial.size())
            return serial;
    }
    return QString();
}

bool hasMacAddress(const NetworkLink &link)
{
    // Tunnels and the like show none or only zeros.
    return link.kind != NetworkLink::Kind::Loopback &&
           std::any_of(link.hardwareAddress.begin(), link.hardwareAddress.end(),
                       [](QChar c) { return c != '0' && c != ':'; });
}

QVector<NetworkLink> linksOfThisBox()
{
    QVector<NetworkLink> links;
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface &interface : interfaces)
        links.append({interface.name(), networkLinkKind(interface.type(), interface.name()),
                      interface.hardwareAddress()});
    return links;
}

bool isUsable(const QHostAddress &address)
{
    if (address.protocol() != QAbstractSocket::IPv4Protocol || address == QHostAddress::LocalHost)
        return false;
    const quint32 number = address.toIPv4Address();
    return number < firstLinkLocal || number > lastLinkLocal;
}

#ifdef VESPREL_DESKTOP

/** What a desk says of the box, or else the machine; never nothing, which no portal accepts. */
DeviceIdentity completed(const DeviceIdentity &machine)
{
    static const QRegularExpression form("^[0-9A-Fa-f]{2}(:[0-9A-Fa-f]{2}){5}$");
    const QString wanted = qEnvironmentVariable(Environment::desktopMacAddress);
    const bool isAddress = form.match(wanted).hasMatch();
    if (!wanted.isEmpty() && !isAddress)
        qWarning("%s=%s is no MAC address", Environment::desktopMacAddress, qUtf8Printable(wanted));
    DeviceIdentity identity = machine;
    if (isAddress)
        identity.macAddress = wanted;
    else if (identity.macAddress.isEmpty())
        identity.macAddress =
            inventedMacAddress(QSysInfo::machineUniqueId() + QSysInfo::machineHostName().toUtf8());
    const QString serial = qEnvironmentVariable(Environment::desktopSerialNumber);
    identity.serialNumber = serial.isEmpty() ? findSerialNumber(identity.macAddress) : serial;
    return identity;
}

#else

DeviceIdentity completed(const DeviceIdentity &machine) { return machine; }

#endif

} // namespace

DeviceIdentity DeviceIdentity::ofThisBox()
{
    const QString macAddress = chooseMacAddress(linksOfThisBox());
    return completed({findSerialNumber(macAddress), macAddress});
}

#ifdef VESPREL_DESKTOP
QString inventedMacAddress(const QByteArray &seed)
{
    // Locally administered, as makers' addresses never are.
    return "02:" + QCryptographicHash::hash(seed, QCryptographicHash::Sha256).left(5).toHex(':');
}
#endif

NetworkLink::Kind networkLinkKind(QNetworkInterface::InterfaceType type, const QString &name)
{
    switch (type) {
    case QNetworkInterface::Ethernet: return NetworkLink::Kind::Wired;
    case QNetworkInterface::Wifi: return NetworkLink::Kind::Wifi;
    case QNetworkInterface::Loopback: return NetworkLink::Kind::Loopback;
    case QNetworkInterface::Unknown: break;
    default: return NetworkLink::Kind::Other;
    }
    if (name.startsWith("eth") || name.startsWith("en"))
        return NetworkLink::Kind::Wired;
    return name == "lo" ? NetworkLink::Kind::Loopback : NetworkLink::Kind::Other;
}

QString chooseMacAddress(const QVector<NetworkLink> &links)
{
    QString other;
    for (const NetworkLink &link : links) {
        if (!hasMacAddress(link))
            continue;
        if (link.kind == NetworkLink::Kind::Wired)
            return link.hardwareAddress;
        if (other.isEmpty())
            other = link.hardwareAddress;
    }
    return other;
}

QString findSerialNumber(const QString &macAddress)
{
    const QStringList files = BoxPaths::serialNumberFiles();
    for (const QString &path : files) {
        const QString serial = trimmed(contentOf(path));
        if (!serial.isEmpty())
            return serial;
    }
    const QString serial = processorSerial();
    return serial.isEmpty() ? QString(macAddress).remove(':') : serial;
}

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
