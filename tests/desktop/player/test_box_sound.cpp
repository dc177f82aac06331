// SPDX-License-Identifier: Apache-2.0
#include "desktop/player/box_sound.h"
#include "platform/box_paths.h"
#include "platform/desktop_sound.h"
#include "platform/sound.h"
#include "tests/support/files.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

/** From the box's sound functions in the program to the receiver that follows. */
class TestBoxSound : public QObject
{
    Q_OBJECT

private:
    static void setVolume(int gain)
    {
        const HI_UNF_SND_GAIN_ATTR_S attributes = {1, gain};
        HI_UNF_SND_SetVolume(HI_UNF_SND_0, HI_UNF_SND_OUTPUTPORT_ALL, &attributes);
    }

    static void open()
    {
        const HI_UNF_SND_ATTR_S attributes = {};
        HI_UNF_SND_Init();
        HI_UNF_SND_Open(HI_UNF_SND_0, &attributes);
    }

private slots:
    void cleanup()
    {
        HI_UNF_SND_Close(HI_UNF_SND_0);
        HI_UNF_SND_DeInit();
    }

    void follows()
    {
        const QTemporaryDir root;
        BoxPaths::setRoot(root.path());
        QVERIFY(QDir(root.path()).mkpath("home"));
        BoxSound sound;
        QSignalSpy changed(&sound, &BoxSound::changed);
        sound.start();
        QCOMPARE(changed.count(), 0);
        open();
        QTRY_VERIFY(changed.contains({100, false}));
        setVolume(7);
        QTRY_COMPARE(changed.last(), QVariantList({7, false}));
        HI_UNF_SND_SetAllTrackMute(HI_UNF_SND_0, 1);
        QTRY_COMPARE(changed.last(), QVariantList({7, true}));
        HI_UNF_SND_SetAllTrackMute(HI_UNF_SND_0, 0);
        setVolume(-5);
        QTRY_COMPARE(changed.last(), QVariantList({0, false}));
        // Each change opens the file anew, and leaves nothing open.
        const uint before = QDir("/proc/self/fd").count();
        setVolume(1);
        setVolume(0);
        QCOMPARE(QDir("/proc/self/fd").count(), before);
        // A receiver that starts later finds what was set.
        BoxSound second;
        QSignalSpy found(&second, &BoxSound::changed);
        second.start();
        QCOMPARE(found.value(0), QVariantList({0, false}));
        setVolume(100);
    }

    /** In the order of a real device, and in no other. */
    void refusedOutOfTurn()
    {
        const QTemporaryDir root;
        BoxPaths::setRoot(root.path());
        HI_UNF_SND_ATTR_S attributes = {};
        HI_UNF_SND_GAIN_ATTR_S gain = {1, 40};
        HI_BOOL mute = 0;
        const auto answers = [&] {
            const auto all = HI_UNF_SND_OUTPUTPORT_ALL;
            return QList<bool>{HI_UNF_SND_GetDefaultOpenAttr(HI_UNF_SND_0, &attributes) == 0,
                               HI_UNF_SND_SetVolume(HI_UNF_SND_0, all, &gain) == 0,
                               HI_UNF_SND_GetVolume(HI_UNF_SND_0, all, &gain) == 0,
                               HI_UNF_SND_SetAllTrackMute(HI_UNF_SND_0, 1) == 0,
                               HI_UNF_SND_GetAllTrackMute(HI_UNF_SND_0, &mute) == 0};
        };
        QVERIFY(HI_UNF_SND_DeInit() != 0);
        QVERIFY(HI_UNF_SND_Open(HI_UNF_SND_0, &attributes) != 0);
        QCOMPARE(answers(), QList<bool>({false, false, false, false, false}));
        QCOMPARE(HI_UNF_SND_Init(), 0);
        QCOMPARE(answers(), QList<bool>({true, false, false, false, false}));
        QCOMPARE(HI_UNF_SND_Open(HI_UNF_SND_0, &attributes), 0);
        QVERIFY(HI_UNF_SND_DeInit() != 0);
        QCOMPARE(answers(), QList<bool>({true, true, true, true, true}));
        HI_UNF_SND_SetAllTrackMute(HI_UNF_SND_0, 0);
        HI_UNF_SND_Close(HI_UNF_SND_0);
        QCOMPARE(answers(), QList<bool>({true, false, false, false, false}));
        QCOMPARE(HI_UNF_SND_DeInit(), 0);
    }

    void unreadable_data()
    {
        QTest::addColumn<QByteArray>("content");
        for (const char *content : {"", "muted", "ten muted", "\xff\xfe", "99999999999999999999"})
            QTest::newRow(content) << QByteArray(content);
    }

    void unreadable()
    {
        QFETCH(QByteArray, content);
        const QTemporaryDir root;
        BoxPaths::setRoot(root.path());
        QVERIFY(!readDesktopSound());
        writeFile(desktopSoundFile(), content);
        QVERIFY(!readDesktopSound());
    }

    /** Where there is no folder, or another user's link, nothing is written and nothing happens. */
    void nowhere()
    {
        const QTemporaryDir root;
        BoxPaths::setRoot(root.path());
        open();
        setVolume(100);
        QVERIFY(QDir(root.path()).isEmpty());
        QVERIFY(QDir(root.path()).mkpath("home"));
        writeFile(root.path() + "/mine", "mine");
        QVERIFY(QFile::link(root.path() + "/mine", desktopSoundFile()));
        QVERIFY(!writeDesktopSound({50, false}));
        QCOMPARE(contentOf(root.path() + "/mine"), QByteArray("mine"));
    }
};

QTEST_GUILESS_MAIN(TestBoxSound)
#include "test_box_sound.moc"
