// SPDX-License-Identifier: Apache-2.0
#include "enigma2/frame.h"

#include <QTest>

#include <string>
#include <utility>
#include <vector>

namespace {

using TypedPayload = std::pair<int, std::string>;

std::string bytes(const char *hex) { return QByteArray::fromHex(hex).toStdString(); }

std::vector<TypedPayload> takeAll(FrameSplitter &splitter)
{
    std::vector<TypedPayload> frames;
    while (const auto frame = splitter.next())
        frames.emplace_back(frame->type, std::string(frame->payload));
    return frames;
}

// Types 1005 (two integers), 1001 (empty) and 1010 (text), as a receiver writes them.
const char threeFrames[] = "3ade68b1 000003ed 00000008 0000ea60 000003e8"
                           "3ade68b1 000003e9 00000000"
                           "3ade68b1 000003f2 00000002 5b5d";

const std::vector<TypedPayload> threeFramesTaken = {
    {1005, bytes("0000ea60000003e8")}, {1001, ""}, {1010, "[]"}};

} // namespace

class TestFrame : public QObject
{
    Q_OBJECT

private slots:
    void headerBytes()
    {
        const auto header = packFrameHeader(1005, 4);
        QCOMPARE(QByteArray(header.data(), int(header.size())).toHex(' '),
                 QByteArray("3a de 68 b1 00 00 03 ed 00 00 00 04"));
    }

    void severalFramesInOneRead()
    {
        FrameSplitter splitter;
        QVERIFY(!splitter.next());
        splitter.feed(bytes(threeFrames));
        QVERIFY(takeAll(splitter) == threeFramesTaken);
    }

    /** Cuts the stream in two at every byte that is not inside a header. */
    void splitAtEveryPayloadByte()
    {
        const std::string stream = bytes(threeFrames);
        for (const std::size_t cut : {12u, 13u, 16u, 19u, 20u, 32u, 44u, 45u}) {
            FrameSplitter splitter;
            splitter.feed(std::string_view(stream).substr(0, cut));
            std::vector<TypedPayload> frames = takeAll(splitter);
            splitter.feed(std::string_view(stream).substr(cut));
            for (auto &frame : takeAll(splitter))
                frames.push_back(frame);
            QVERIFY2(frames == threeFramesTaken, qPrintable(QString("cut at %1").arg(cut)));
        }
    }

    void unusualHeaders_data()
    {
        QTest::addColumn<QByteArray>("hex");
        QTest::addColumn<int>("type");
        QTest::newRow("wrong magic") << QByteArray("00000000 000003e9 00000000") << 1001;
        QTest::newRow("negative type") << QByteArray("3ade68b1 ffffffff 00000000") << -1;
        QTest::newRow("length -1") << QByteArray("3ade68b1 000003e9 ffffffff") << 1001;
        QTest::newRow("most negative length") << QByteArray("3ade68b1 000003e9 80000000") << 1001;
    }

    /** Each gives one frame with an empty payload, and the stream goes on behind it. */
    void unusualHeaders()
    {
        QFETCH(QByteArray, hex);
        QFETCH(int, type);
        FrameSplitter splitter;
        splitter.feed(bytes(hex.constData()) + bytes("3ade68b1 000003f3 00000001 07"));
        const std::vector<TypedPayload> expected = {{type, ""}, {1011, "\x07"}};
        QVERIFY(takeAll(splitter) == expected);
    }

    void payloadOfTheLargestSizeIsKept()
    {
        FrameSplitter splitter;
        splitter.feed(bytes("3ade68b1 000003e9 01000000"));
        splitter.feed(std::string(largestPayload - 1, 'x'));
        QVERIFY(!splitter.next());
        splitter.feed("y");
        const auto frame = splitter.next();
        QVERIFY(frame && frame->payload.size() == largestPayload && frame->payload.back() == 'y');
    }

    void largerPayloadIsSkipped_data()
    {
        QTest::addColumn<int>("piece");
        // A piece that ends with the payload, one within the next header, and one read for all.
        for (const int piece : {1 << 20, 1000003, 1 << 25})
            QTest::newRow(qPrintable(QString::number(piece))) << piece;
    }

    /** The frames around it come through, and of itself nothing is kept. */
    void largerPayloadIsSkipped()
    {
        QFETCH(int, piece);
        std::vector<std::pair<int, std::size_t>> skipped;
        FrameSplitter splitter(
            [&](int type, std::size_t length) { skipped.emplace_back(type, length); });
        const std::string stream = bytes("3ade68b1 000003e9 00000000 3ade68b1 000003f2 01000001") +
                                   std::string(largestPayload + 1, 'x') +
                                   bytes("3ade68b1 000003f3 00000001 07");
        std::vector<TypedPayload> frames;
        for (std::size_t i = 0; i < stream.size(); i += std::size_t(piece)) {
            splitter.feed(std::string_view(stream).substr(i, std::size_t(piece)));
            while (!splitter.hasLoneHeaderPiece()) {
                const auto frame = splitter.next();
                if (!frame)
                    break;
                frames.emplace_back(frame->type, std::string(frame->payload));
            }
        }
        const std::vector<TypedPayload> expected = {{1001, ""}, {1011, "\x07"}};
        QVERIFY(frames == expected);
        QVERIFY(skipped == decltype(skipped)({{1010, largestPayload + 1}}));
    }

    /** Receivers never cut a header; should one, the previous type repeats and nothing is lost. */
    void loneHeaderPieceRepeatsPreviousType()
    {
        FrameSplitter splitter;
        splitter.feed(bytes("3ade68b1 000003e9 00000000 3ade68"));
        QVERIFY(splitter.next() && splitter.hasLoneHeaderPiece());
        for (int i = 0; i < 3; ++i) {
            const auto frame = splitter.next();
            QVERIFY(frame && frame->type == 1001 && frame->payload.empty());
        }
        splitter.feed(bytes("b1 000003ea 00000000"));
        QVERIFY(takeAll(splitter) == std::vector<TypedPayload>({{1002, ""}}));
    }

    /** However many frames one read brings, none is moved to make the next one the first. */
    void cuttingMovesNoBytes()
    {
        constexpr int count = 1000;
        std::string stream;
        for (int i = 0; i < count; ++i)
            stream += bytes("3ade68b1 000003f3 00000004 00000007");
        FrameSplitter splitter;
        splitter.feed(stream);
        const char *const first = splitter.next()->payload.data();
        for (int i = 1; i < count; ++i)
            QCOMPARE(splitter.next()->payload.data() - first, 16 * i);
    }
};

QTEST_APPLESS_MAIN(TestFrame)
#include "test_frame.moc"
