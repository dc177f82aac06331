// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHostAddress>
#include <QList>
#include <QNetworkInterface>
#include <QString>
#include <QVector>

#include <optional>

/** One network interface, as far as the choice of the box's MAC address looks at it. */
struct NetworkLink
{
    enum class Kind { Wired, Wifi, Loopback, Other };

    QString name;
    Kind kind = Kind::Other;
    QString hardwareAddress; ///< Colon-separated hexadecimal; empty if the interface has none.
};

/** Who the box is. Both texts are empty only on a box without any identity and network. */
struct DeviceIdentity
{
    QString serialNumber;
    QString macAddress; ///< Colon-separated hexadecimal.

    /**
     * Reads the box's own provisioning and its network interfaces; on a desktop first what the
     * environment says, and what neither says is invented. Any thread.
     */
    static DeviceIdentity ofThisBox();
};

/** Kind of an interface; where the system does not know its type, the name decides. Any thread. */
NetworkLink::Kind networkLinkKind(QNetworkInterface::InterfaceType type, const QString &name);

/**
 * MAC address of the first wired interface in the list, else of the first other one that is no
 * loopback; empty if none has a hardware address. Any thread.
 */
QString chooseMacAddress(const QVector<NetworkLink> &links);

/** On a desktop, a MAC address for a machine without any: the same for the same seed. Any thread.
 */
QString inventedMacAddress(const QByteArray &seed);

/**
 * Serial number from the first source that has one: the box's drivers, its device tree, the
 * processor, at last the digits of the given MAC address. Any thread.
 */
QString findSerialNumber(const QString &macAddress);

/**
 * Dotted text of the last address in the list that can be the box's own: IPv4, neither 127.0.0.1
 * nor link-local. Nothing if none qualifies. Writes one record for each address that does. Any
 * thread.
 */
std::optional<QString> lastUsableAddress(const QList<QHostAddress> &addresses);
