// SPDX-License-Identifier: Apache-2.0
#include "enigma2/struct_codec.h"

#include <QTest>

#include <array>
#include <cstdlib>
#include <functional>
#include <memory>

namespace {

using Buffer = std::array<char, 64>;
using Pack = std::function<int(char *)>;

struct Free
{
    void operator()(char *memory) const { std::free(memory); }
};
using Allocated = std::unique_ptr<char, Free>;

const StructTimestamp moment = {-2, 999, -120, 1};

} // namespace

Q_DECLARE_METATYPE(Pack)

class TestStructCodec : public QObject
{
    Q_OBJECT

private slots:
    void calcsize_data()
    {
        QTest::addColumn<QByteArray>("format");
        QTest::addColumn<int>("size");
        QTest::newRow("empty") << QByteArray("") << 0;
        QTest::newRow("order only") << QByteArray("!<>=") << 0;
        QTest::newRow("frame header") << QByteArray("!III") << 12;
        QTest::newRow("every item") << QByteArray("bBhHiIlLqQfdsot") << 70;
        QTest::newRow("time stamp counts 12") << QByteArray("t") << 12;
        QTest::newRow("repeat") << QByteArray("12H3b") << 27;
        QTest::newRow("repeat zero") << QByteArray("0I2H") << 4;
        QTest::newRow("repeat across an order character") << QByteArray("3!I") << 12;
        QTest::newRow("pending count at the end") << QByteArray("I3") << 4;
        QTest::newRow("blank") << QByteArray("!I x") << -1;
        QTest::newRow("unknown after valid") << QByteArray("IIc") << -1;
        QTest::newRow("high bit") << QByteArray("I\xe9") << -1;
        QTest::newRow("more digits than kept")
            << QByteArray("0000000000000000000000000000000000000000000007I") << 0;
        // The largest 64-bit count, whose size wraps, and which stays for the item behind it.
        QTest::newRow("count out of range") << QByteArray("99999999999999999999I") << -4;
        QTest::newRow("count out of range stays") << QByteArray("99999999999999999999bb") << -2;
        QTest::newRow("longest count") << QByteArray(30, '0') + "2b" << 2;
        QTest::newRow("largest count") << QByteArray("9223372036854775807bb") << 0;
        QTest::newRow("count above 32 bits") << QByteArray("4294967298b") << 2;
    }

    void calcsize()
    {
        QFETCH(QByteArray, format);
        QTEST(struct_calcsize(format.constData()), "size");
    }

    void pack_data()
    {
        QTest::addColumn<Pack>("pack");
        QTest::addColumn<QByteArray>("hex");
        const auto row = [](const char *name, const char *hex, const Pack &pack) {
            QTest::newRow(name) << pack << QByteArray(hex);
        };
        row("empty format", "", [](char *b) { return struct_pack(b, ""); });
        row("!I", "3ade68b1", [](char *b) { return struct_pack(b, "!I", 987654321); });
        row("<I", "b168de3a", [](char *b) { return struct_pack(b, "<I", 987654321); });
        row("I", "b168de3a", [](char *b) { return struct_pack(b, "I", 987654321); });
        row("=I", "b168de3a", [](char *b) { return struct_pack(b, "=I", 987654321); });
        row("!i negative", "fffffffe", [](char *b) { return struct_pack(b, "!i", -2); });
        row(">lL", "0000000100000002", [](char *b) { return struct_pack(b, ">lL", 1, 2); });
        row("order switches", "0000000101000000",
            [](char *b) { return struct_pack(b, "!I<I", 1, 1); });
        row("bytes masked", "34ff", [](char *b) { return struct_pack(b, "bB", 0x1234, -1); });
        row("2H", "00010002", [](char *b) { return struct_pack(b, "!2H", 1, 2); });
        row("h masked", "cdef", [](char *b) { return struct_pack(b, "!h", 0xabcdef); });
        row("0H takes nothing", "0007", [](char *b) { return struct_pack(b, "!0HH", 7); });
        row("!q", "fffffffffffffffe",
            [](char *b) { return struct_pack(b, "!q", std::int64_t{-2}); });
        row("<Q", "0807060504030201",
            [](char *b) { return struct_pack(b, "<Q", std::uint64_t{0x0102030405060708}); });
        row("!f reversed", "0000803f", [](char *b) { return struct_pack(b, "!f", 1.0); });
        row("<f reversed", "3f800000", [](char *b) { return struct_pack(b, "<f", 1.0); });
        row("f reversed", "3f800000", [](char *b) { return struct_pack(b, "f", 1.0); });
        row("!d", "3ff0000000000000", [](char *b) { return struct_pack(b, "!d", 1.0); });
        row("<d", "000000000000f03f", [](char *b) { return struct_pack(b, "<d", 1.0); });
        row("!s", "0000000361626300", [](char *b) { return struct_pack(b, "!s", "abc"); });
        row("!s empty", "00000000", [](char *b) { return struct_pack(b, "!s", ""); });
        row("!s without padding", "0000000461626364",
            [](char *b) { return struct_pack(b, "!s", "abcd"); });
        row("padding counts from the start", "0900000002616200",
            [](char *b) { return struct_pack(b, "!bs", 9, "ab"); });
        row("empty string is not padded", "0900000000",
            [](char *b) { return struct_pack(b, "!bs", 9, ""); });
        row("!o", "00000002ff000000", [](char *b) { return struct_pack(b, "!o", "\xff\x00", 2); });
        row("!o negative length", "00000000",
            [](char *b) { return struct_pack(b, "!o", "ab", -1); });
        row("!t", "fffffffffffffffe03e7ff880001",
            [](char *b) { return struct_pack(b, "!t", &moment); });
    }

    void pack()
    {
        QFETCH(Pack, pack);
        QFETCH(QByteArray, hex);
        Buffer buffer;
        buffer.fill('\x55');
        const int end = pack(buffer.data());
        QCOMPARE(QByteArray(buffer.data(), end).toHex(), hex);
        QCOMPARE(buffer[std::size_t(end)], '\x55');
    }

    void unknownCharacterKeepsWhatWasPacked()
    {
        Buffer buffer = {};
        QCOMPARE(struct_pack(buffer.data(), "!H?H", 0x0102, 0x0304), -1);
        QCOMPARE(QByteArray(buffer.data(), 4).toHex(), QByteArray("01020000"));
        int value = 0;
        QCOMPARE(struct_unpack("\0\0\0\7", "!I x", &value), -1);
        QCOMPARE(value, 7);
    }

    /** What one format packs, the same format reads back. */
    void roundTrip_data()
    {
        QTest::addColumn<QByteArray>("order");
        for (const char *order : {"!", "<", "=", ""})
            QTest::newRow(*order ? order : "none") << QByteArray(order);
    }

    void roundTrip()
    {
        QFETCH(QByteArray, order);
        const QByteArray format = order + "bHiqfdsot";
        std::array<char, 128> buffer;
        const int packed =
            struct_pack(buffer.data(), format.constData(), -3, 65535, -70000,
                        std::int64_t{-5000000000}, 1.5, -2.25, "text", "\0\1\2", 3, &moment);
        std::int8_t byte = 0;
        std::uint16_t half = 0;
        std::int32_t word = 0;
        std::int64_t quad = 0;
        float single = 0;
        double real = 0;
        char *text = nullptr;
        char *block = nullptr;
        int blockLength = 0;
        StructTimestamp time = {};
        QCOMPARE(struct_unpack(buffer.data(), format.constData(), &byte, &half, &word, &quad,
                               &single, &real, &text, &block, &blockLength, &time),
                 packed);
        const Allocated textOwner(text);
        const Allocated blockOwner(block);
        QCOMPARE(int(byte), -3);
        QCOMPARE(int(half), 65535);
        QCOMPARE(word, -70000);
        QCOMPARE(quad, std::int64_t{-5000000000});
        QCOMPARE(single, 1.5f);
        QCOMPARE(real, -2.25);
        QCOMPARE(text, "text");
        QCOMPARE(QByteArray(block, blockLength), QByteArray("\0\1\2", 3));
        QCOMPARE(time.seconds, moment.seconds);
        QCOMPARE(time.milliseconds, moment.milliseconds);
        QCOMPARE(time.timeZoneOffset, moment.timeZoneOffset);
        QCOMPARE(time.daylightSaving, moment.daylightSaving);
    }

    void emptyAndNegativeLengths_data()
    {
        QTest::addColumn<QByteArray>("length");
        QTest::newRow("zero") << QByteArray("00000000");
        QTest::newRow("negative") << QByteArray("ffffffff");
    }

    void emptyAndNegativeLengths()
    {
        QFETCH(QByteArray, length);
        const QByteArray input = QByteArray::fromHex(length + length);
        char *text = nullptr;
        char *block = reinterpret_cast<char *>(1);
        int blockLength = 1;
        QCOMPARE(struct_unpack(input.constData(), "!so", &text, &block, &blockLength), 8);
        const Allocated owner(text);
        QCOMPARE(text, "");
        QVERIFY(!block);
        QCOMPARE(blockLength, length.startsWith('f') ? -1 : 0);
    }
};

QTEST_APPLESS_MAIN(TestStructCodec)
#include "test_struct_codec.moc"
