// SPDX-License-Identifier: Apache-2.0
#include "api/unique_identifiers.h"
#include "api/vesprelv2.h"
#include "platform/box_paths.h"
#include "platform/device_identity.h"
#include "tests/support/files.h"
#include "tests/support/log_capture.h"

#include <QHostAddress>
#include <QMap>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using Kind = NetworkLink::Kind;
using FileContents = QMap<QString, QByteArray>;

Q_DECLARE_METATYPE(QVector<NetworkLink>)
Q_DECLARE_METATYPE(NetworkLink::Kind)
Q_DECLARE_METATYPE(QNetworkInterface::InterfaceType)
Q_DECLARE_METATYPE(FileContents)

class TestIdentity : public QObject
{
    Q_OBJECT

private slots:
    void macAddress_data()
    {
        QTest::addColumn<QVector<NetworkLink>>("links");
        QTest::addColumn<QString>("expected");
        const NetworkLink loopback = {"lo", Kind::Loopback, "00:00:00:00:00:00"};
        const NetworkLink wifi = {"wlan0", Kind::Wifi, "02:00:00:00:00:01"};
        const NetworkLink wired = {"eth0", Kind::Wired, "00:1A:2B:3C:4D:5E"};
        const NetworkLink second = {"eth1", Kind::Wired, "00:1A:2B:3C:4D:5F"};
        const NetworkLink bare = {"eth9", Kind::Wired, ""};
        const NetworkLink tunnel = {"tun0", Kind::Other, "00:00:00:00:00:00"};
        using Links = QVector<NetworkLink>;
        row("first wired", Links{loopback, wifi, wired, second}, "00:1A:2B:3C:4D:5E");
        row("wired without address", Links{bare, second}, "00:1A:2B:3C:4D:5F");
        row("no wired", Links{loopback, bare, tunnel, wifi}, "02:00:00:00:00:01");
        row("loopback with address", Links{{"lo", Kind::Loopback, "02:00:00:00:00:02"}}, "");
        row("none", Links{}, "");
    }

    void macAddress()
    {
        QFETCH(QVector<NetworkLink>, links);
        QFETCH(QString, expected);
        QCOMPARE(chooseMacAddress(links), expected);
    }

    void linkKind_data()
    {
        QTest::addColumn<QNetworkInterface::InterfaceType>("type");
        QTest::addColumn<QString>("name");
        QTest::addColumn<NetworkLink::Kind>("expected");
        row("wired", QNetworkInterface::Ethernet, "lan", Kind::Wired);
        row("wifi with a wired name", QNetworkInterface::Wifi, "eth1", Kind::Wifi);
        row("loopback", QNetworkInterface::Loopback, "eth2", Kind::Loopback);
        row("virtual", QNetworkInterface::Virtual, "eth3", Kind::Other);
        row("unknown eth", QNetworkInterface::Unknown, "eth0", Kind::Wired);
        row("unknown en", QNetworkInterface::Unknown, "enp3s0", Kind::Wired);
        row("unknown lo", QNetworkInterface::Unknown, "lo", Kind::Loopback);
        row("unknown", QNetworkInterface::Unknown, "wlan0", Kind::Other);
    }

    void linkKind()
    {
        QFETCH(QNetworkInterface::InterfaceType, type);
        QFETCH(QString, name);
        QFETCH(NetworkLink::Kind, expected);
        QVERIFY(networkLinkKind(type, name) == expected);
    }

    void serialNumber_data()
    {
        QTest::addColumn<FileContents>("files");
        QTest::addColumn<QString>("expected");
        const QString driver = "/proc/stb/info/sn";
        const QString tree = "/proc/device-tree/serial-number";
        const QString otherTree = "/sys/firmware/devicetree/base/serial-number";
        const QString processor = "/proc/cpuinfo";
        const QByteArray nuls("TREE7\0\0", 7);
        const QByteArray onlyNuls("\0\0 \n", 4);
        row("driver first",
            FileContents{{driver, " SN 1\n"}, {tree, nuls}, {processor, "Serial : 9\n"}}, "SN 1");
        row("empty driver file", FileContents{{driver, "\n"}, {tree, nuls}}, "TREE7");
        row("only NULs", FileContents{{tree, onlyNuls}, {otherTree, "T8"}}, "T8");
        row("processor",
            FileContents{{processor, "model\t: Serial\n\nHardware\t: X\n"
                                     "Serial\t\t: 00a1b2\n"}},
            "00a1b2");
        row("processor never numbered", FileContents{{processor, "Serial\t\t: 0000000000000000\n"}},
            "001A2B3C4D5E");
        row("empty processor line", FileContents{{processor, "Serial\t\t:"}}, "001A2B3C4D5E");
        row("nothing provisioned", FileContents{}, "001A2B3C4D5E");
    }

    void serialNumber()
    {
        QFETCH(FileContents, files);
        QFETCH(QString, expected);
        const QTemporaryDir root;
        BoxPaths::setRoot(root.path());
        for (auto it = files.begin(); it != files.end(); ++it) {
            writeFile(root.path() + it.key(), it.value());
        }
        QCOMPARE(findSerialNumber("00:1A:2B:3C:4D:5E"), expected);
    }

    void unreadableSourcesFallThrough()
    {
        const QTemporaryDir root;
        BoxPaths::setRoot(root.path());
        QVERIFY(QDir().mkpath(root.path() + "/proc/stb/info/sn"));
        QVERIFY(QDir().mkpath(root.path() + "/proc/cpuinfo"));
        QCOMPARE(findSerialNumber(""), QString());
    }

    void identityOfThisMachine()
    {
        const QTemporaryDir root;
        BoxPaths::setRoot(root.path());
        const DeviceIdentity identity = DeviceIdentity::ofThisBox();
        QCOMPARE(identity.serialNumber, QString(identity.macAddress).remove(':'));
        const QRegularExpression mac("^([0-9A-Fa-f]{2}(:[0-9A-Fa-f]{2})+)?$");
        QVERIFY2(mac.match(identity.macAddress).hasMatch(), qPrintable(identity.macAddress));
    }

    void desk_data()
    {
        QTest::addColumn<QByteArray>("mac");
        QTest::addColumn<QByteArray>("serial");
        QTest::addColumn<QString>("expectedMac"); // Empty: the machine's.
        QTest::addColumn<QString>("expectedSerial");
        const QByteArray mac = "02:00:5e:00:00:07";
        row("address", mac, QByteArray(), "02:00:5e:00:00:07", "02005e000007");
        row("both", mac, QByteArray("SN 1"), "02:00:5e:00:00:07", "SN 1");
        row("no address", QByteArray("02:00:5e:00:00"), QByteArray("SN"), "", "SN");
    }

    /** A portal knows one box of a desk from another. */
    void desk()
    {
        QFETCH(QByteArray, mac);
        QFETCH(QByteArray, serial);
        QFETCH(QString, expectedMac);
        QFETCH(QString, expectedSerial);
        const QTemporaryDir root;
        BoxPaths::setRoot(root.path());
        const QString machine = DeviceIdentity::ofThisBox().macAddress;
        qputenv("VESPREL_MAC", mac);
        qputenv("VESPREL_SERIAL", serial);
        const DeviceIdentity identity = DeviceIdentity::ofThisBox();
        qunsetenv("VESPREL_MAC");
        qunsetenv("VESPREL_SERIAL");
        QCOMPARE(identity.macAddress, expectedMac.isEmpty() ? machine : expectedMac);
        QCOMPARE(identity.serialNumber, expectedSerial);
        QVERIFY(!machine.isEmpty());
    }

    void inventedAddress()
    {
        QCOMPARE(inventedMacAddress("a machine"), inventedMacAddress("a machine"));
        QVERIFY(inventedMacAddress("a machine") != inventedMacAddress("another"));
        const QRegularExpression form("^02(:[0-9a-f]{2}){5}$");
        QVERIFY(form.match(inventedMacAddress(QByteArray())).hasMatch());
    }

    void deviceDigest_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("digest");
        row("MAC address", "00:1A:2B:3C:4D:5E",
            "F57B6B8D2F6806E3D83456DF5EA776226B7CC3FBA32F96D468A7F59AB4672182");
        row("no address", "", "E3B0C44298FC1C149AFBF4C8996FB92427AE41E4649B934CA495991B7852B855");
        row("28 characters count", "0123456789012345678901234567-tail",
            "0A07B0BEAC3CD7DE78B63CF65389A0356C8C4B05546A5B91750F6292998A7832");
    }

    void deviceDigest()
    {
        QFETCH(QString, address);
        QFETCH(QString, digest);
        QCOMPARE(::deviceDigest(address), digest);
    }

    void hashVersion1_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("secret");
        QTest::addColumn<QString>("hash");
        row("plain", "cable", "key", "geheim", "d33c3690d434d9c492ab3f3bb2c88abf50ccd31e");
        row("empty", "", "", "", "3e6c06b1a28a035e21aa0a736ef80afadc43122c");
        row("non-ASCII", "тип", "ключ ü\n", "süß", "b4b445f5e940abe9111aa80f53f9187b92dce111");
    }

    void hashVersion1()
    {
        QFETCH(QString, type);
        QFETCH(QString, key);
        QFETCH(QString, secret);
        QFETCH(QString, hash);
        QCOMPARE(::hashVersion1(type, key, secret), hash);
    }

    void secretComesBackWhole() { QCOMPARE(hashSecret(), QString(VESPREL_HASH_SECRET)); }

    void usableAddress_data()
    {
        QTest::addColumn<QStringList>("addresses");
        QTest::addColumn<QString>("expected");
        row("last wins", QStringList{"127.0.0.1", "10.0.0.2", "192.168.1.9", "::1"}, "192.168.1.9");
        row("IPv6 only", QStringList{"fe80::1", "2001:db8::1", "::ffff:10.0.0.1"}, "none");
        row("no addresses", QStringList{}, "none");
        row("other loopback", QStringList{"127.0.0.2"}, "127.0.0.2");
        row("below link-local", QStringList{"169.254.0.255"}, "169.254.0.255");
        row("first link-local", QStringList{"169.254.1.0"}, "none");
        row("last link-local", QStringList{"169.254.254.255"}, "none");
        row("above link-local", QStringList{"169.254.255.0"}, "169.254.255.0");
    }

    void usableAddress()
    {
        QFETCH(QStringList, addresses);
        QFETCH(QString, expected);
        QList<QHostAddress> list;
        for (const QString &address : qAsConst(addresses))
            list.append(QHostAddress(address));
        LogCapture log;
        QCOMPARE(lastUsableAddress(list).value_or("none"), expected);
        const QString record = "UpdateNetconfig : \"" + expected + '"';
        QCOMPARE(log.take().contains(record), expected != "none");
    }

    void addressIsKnownFromTheStart()
    {
        LogCapture log;
        VesprelV2 gSTB;
        const QStringList told = log.take().filter("UpdateNetconfig");
        const auto address = lastUsableAddress(QNetworkInterface::allAddresses());
        QCOMPARE(told.isEmpty(), !address);
    }
};

QTEST_GUILESS_MAIN(TestIdentity)
#include "test_identity.moc"
