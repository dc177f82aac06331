// SPDX-License-Identifier: Apache-2.0
#include "enigma2/frame.h"

#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using TypedPayload = std::pair<int, std::string>;

std::string bytes(const char *hex) { return QByteArray::fromHex(hex).toStdString(); }

std::vector<TypedPayload> takeAll(FrameSplitter &splitter)
{
    std::vector<TypedPayload> frames;
    Frame frame;
    while (splitter.next(frame))
        frames.emplace_back(frame.type, std::string(frame.payload));
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

    void hugeLengthWaitsForItsBytes()
    {
        FrameSplitter splitter;
        splitter.feed(bytes("3ade68b1 000003e9 7fffffff 0102"));
        Frame frame;
        QVERIFY(!splitter.next(frame));
        splitter.feed(std::string(100000, 'x'));
        QVERIFY(!splitter.next(frame));
    }

    /** Receivers never cut a header; should one, the previous type repeats and nothing is lost. */
    void loneHeaderPieceRepeatsPreviousType()
    {
        FrameSplitter splitter;
        splitter.feed(bytes("3ade68b1 000003e9 00000000 3ade68"));
        Frame frame;
        QVERIFY(splitter.next(frame));
        for (int i = 0; i < 3; ++i) {
            QVERIFY(splitter.next(frame));
            QCOMPARE(frame.type, 1001);
            QVERIFY(frame.payload.empty());
        }
        splitter.feed(bytes("b1 000003ea 00000000"));
        QVERIFY(splitter.next(frame));
        QCOMPARE(frame.type, 1002);
        QVERIFY(!splitter.next(frame));
    }

    /** Ten times the frames in one read must not cost a hundred times the time. */
    void cuttingIsLinear()
    {
        const auto nanoseconds = [](int count) {
            std::string stream;
            for (int i = 0; i < count; ++i)
                stream += bytes("3ade68b1 000003f3 00000004 00000007");
            qint64 best = std::numeric_limits<qint64>::max();
            for (int run = 0; run < 3; ++run) {
                FrameSplitter splitter;
                QElapsedTimer timer;
                timer.start();
                splitter.feed(stream);
                Frame frame;
                while (splitter.next(frame)) {
                }
                best = std::min(best, timer.nsecsElapsed());
            }
            return best;
        };
        const qint64 small = nanoseconds(20000);
        const qint64 large = nanoseconds(200000);
        QVERIFY2(large < 40 * small, qPrintable(QString("%1 ns, %2 ns").arg(small).arg(large)));
    }
};

QTEST_APPLESS_MAIN(TestFrame)
#include "test_frame.moc"
