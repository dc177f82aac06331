// SPDX-License-Identifier: Apache-2.0
#include "tests/desktop/portal/demo_walker.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QStandardPaths>
#include <QtTest>

namespace {

using Walk = QList<WalkStep>;

} // namespace

Q_DECLARE_METATYPE(WalkStep)

/** A walk with the remote's keys through every page of the demo portal, in a whole box. */
class TestDemoPortal : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void pages_data();
    void pages();
    void keyboardFilters();
    void mediaComeAndGo();
    void recordingIsPlayed();
    void favouritePlaysAtStart();
    void portalIsLeftAndComesBack();
    void fitsAnyScreen();
    void cleanupTestCase();

private:
    void take(const Walk &steps);

    QString m_demo = QUrl::fromLocalFile(PORTAL_DIR "/index.html").toString();
    DriverClient m_client;
    DemoWalker m_walker{m_client};
};

#define WALK(...)                                                                                  \
    take(Walk{__VA_ARGS__});                                                                       \
    if (QTest::currentTestFailed())                                                                \
    return

void TestDemoPortal::take(const Walk &steps)
{
    for (int index = 0; index < steps.size(); ++index) {
        const QString failure = m_walker.walk(steps[index]);
        QVERIFY2(
            failure.isEmpty(),
            qPrintable(QString("step %1 (%2): %3").arg(index + 1).arg(steps[index].keys, failure)));
    }
    const QString errors = m_walker.errors();
    QVERIFY2(errors.isEmpty(), qPrintable(errors));
}

void TestDemoPortal::initTestCase()
{
    if (QStandardPaths::findExecutable("Xvfb").isEmpty())
        QSKIP("Xvfb is not installed, so that no box can be started.");
    QVERIFY(m_client.start());
    QCOMPARE(m_client.begin().status, 200);
    // A box keeps settings for a portal that the receiver has announced.
    m_walker.tellReceiver("portal " + m_demo);
    WALK({"", "", "#entryList .focused", "First light"});
}

void TestDemoPortal::pages_data()
{
    QTest::addColumn<Walk>("steps");
    QTest::newRow("menu") << Walk{
        {"down", "", "#entryList .focused", "Harbour at dusk"},
        {"ok", "play /media/demo/harbour.ts", "#entryList .playing", "Harbour at dusk"},
        {"", "viewport 688,100 544x306", ".preview_caption .now_state", "Playing"},
        {"", "", "#eventRows", "playback started"},
        {"right", "", "#buttonRow .focused", "-10 s"},
        {"right, ok", "pause", ".preview_caption .now_state", "Paused"},
        {"ok", "resume", ".preview_caption .now_state", "Playing"},
        {"right, ok", "seek", ".preview_caption .now_time", "/ 1:00"},
        {"right, ok", "stop", ".preview_hint", "Nothing is playing"},
        {"right, ok", "", "#volumeText", "Volume"},
        {"right, ok", "", "#volumeText", "Volume"},
        {"right, ok", "", "#volumeText", "Sound off"},
        {"`", "", "#volumeText", "Volume"},
        {"+", "", "#volumeText", "Volume"},
        {"-", "", "#volumeText", "Volume"},
        {"up", "", "#entryList .focused", "Harbour at dusk"},
        {"down*5", "", "#tileGrid .focused", "Search"},
        {"right*3", "", "#tileGrid .focused", "Favourites"},
        {"down", "", "#tileGrid .focused", "Keys"},
        {"right", "", "#buttonRow .focused", "Mute"},
    };
    QTest::newRow("full screen") << Walk{
        {"ok", "play /media/demo/first.ts", ".preview_caption .now_state", "Playing"},
        {"ok", "viewport full screen", "#playerBar .now_title", "First light"},
        {"", "", "!#entryList", ""},
        {"", "", "screen", "bars"},
        {"", "", "screen", "moving"},
        {"ok", "pause", "#playerBar .now_state", "Paused"},
        {"", "", "screen", "still"},
        {"play", "resume", "#playerBar .now_state", "Playing"},
        {"pause", "pause", "#playerBar .now_state", "Paused"},
        {"left*6", "seek 0 ms", "#playerBar .now_time", " 0:00 /"},
        {"right", "seek 10000 ms", "#playerBar .now_time", " 0:10 /"},
        {"left", "seek 0 ms", "#playerBar .now_time", " 0:00 /"},
        {"forward", "seek 10000 ms", "#playerBar .now_time", " 0:10 /"},
        {"rewind", "seek 0 ms", "#playerBar .now_time", " 0:00 /"},
        {"up", "play /media/demo/night.mkv", "#playerBar .now_title", "Long night"},
        {"down", "play /media/demo/first.ts", "#playerBar .now_title", "First light"},
        {"channel up", "play /media/demo/harbour.ts", "#playerBar .now_title", "Harbour at dusk"},
        {"channel down", "play /media/demo/first.ts", "#playerBar .now_title", "First light"},
        {"", "", "!#eventLog", ""},
        {"red", "", "#eventLog", "playback started"},
        {"red", "", "!#eventLog", ""},
        {"y", "viewport 688", "#entryList .focused", "First light"},
        {"y", "viewport full screen", "!#entryList", ""},
        {"blue", "viewport 688", "#entryList .focused", "First light"},
        {"blue", "viewport full screen", "!#entryList", ""},
        {"back", "viewport 688", "#entryList .focused", "First light"},
        {"ok, stop", "stop", ".preview_hint", "Nothing is playing"},
    };
    QTest::newRow("live") << Walk{
        {"down*3, ok", "play /media/demo/channel.ts", ".preview_caption .now_state", "Playing"},
        {"", "", ".preview_caption .now_time", " live"},
        {"forward, stop", "!seek", ".preview_hint", "Nothing"},
    };
    QTest::newRow("colour keys") << Walk{
        {"", "", "#eventLog", "Events from the box"},
        {"red", "", "!#eventLog", ""},
        {"red", "", "#eventLog", "Events from the box"},
        {"green", "", "#routeName", "stbPlayer"},
        {"down*2, ok", "play /media/demo/railway.mp4?duration=90 position:20",
         ".preview_caption .now_time", "/ 1:30"},
        {"pause", "pause", ".preview_caption .now_state", "Paused"},
        {"play", "resume", ".preview_caption .now_state", "Playing"},
        {"stop", "stop", ".preview_hint", "Nothing is playing"},
        {"green", "", "#routeName", "gSTB"},
        {"ok", "seek 20000 ms", ".preview_caption .now_state", "Playing"},
        {"yellow", "", "#page_tracks h1", "Audio"},
        {"yellow", "", "#entryList .focused", "railway"},
    };
    QTest::newRow("tracks") << Walk{
        {"l", "", "#audioTracks .focused", "No tracks"},
        {"back, ok", "play", ".preview_caption .now_state", "Playing"},
        {"yellow", "", "#audioTracks .playing", "eng"},
        {"down, ok", "audio track 4353", "#audioTracks .playing", "deu"},
        {"right", "", "#subtitleTracks .focused", "eng"},
        {"down, ok", "subtitle track 4609", "#subtitleTracks .playing", "fra"},
        {"back", "", "#entryList .focused", "First light"},
    };
    QTest::newRow("settings") << Walk{
        {"down*6, down, right, ok", "", "#settingsForm .focused", "English"},
        {"right", "", "#settingsForm .focused", "Deutsch"},
        {"down*2, left", "", "#settingsForm .focused", "24 hours"},
        {"down*3, ok", "", "#settingsState", "Saved and read back"},
        {"", "", "#settingsKept", "Languagede"},
        {"", "", "#settingsKept", "Clock24h"},
        {"back", "", "#clock", ":"},
    };
    QTest::newRow("device") << Walk{
        {"down*7, right*2, ok", "get storage information", "#deviceNetwork", "Gateway192.168.1.1"},
        {"", "", "#deviceIdentifiers", "KV_"},
        {"", "", "#deviceScreen", "1280"},
        {"", "", "#storageBars", "/media/films"},
        {"back", "", "#tileGrid .focused", "Device"},
    };
    QTest::newRow("keys") << Walk{
        {"g", "", "#keyTable", "F1"},
        {"g", "", "#entryList .focused", "First light"},
        {"down*7, right*3, ok", "", "#keyTable", "Page Up"},
        {"back", "", "#tileGrid .focused", "Keys"},
    };
}

void TestDemoPortal::pages()
{
    QFETCH(Walk, steps);
    QVERIFY(QDir(m_client.boxRoot()).mkpath("media/films"));
    m_walker.open(m_demo);
    take(steps);
}

void TestDemoPortal::keyboardFilters()
{
    m_walker.open(m_demo);
    WALK({"down*6, ok", "", "#searchCount", "16 of 16 titles"}, {"ok"});
    QVERIFY(m_walker.waitForLog("keyboard finishLoading true"));
    // The keyboard begins at "h".
    WALK({"ok", "", "#searchField input", " h"}, {"", "", "#searchCount", "10 of 16 titles"},
         {"back", "", "#searchResults .focused", "First light"},
         {"down", "", "#searchResults .focused", "Demo channel"},
         {"ok", "play /media/demo/channel.ts", "#playerBar .now_title", "Demo channel"},
         {"back", "", "#searchResults .focused", "Demo channel"},
         {"back", "", "#tileGrid .focused", "Search"});
}

void TestDemoPortal::mediaComeAndGo()
{
    QVERIFY(QDir(m_client.boxRoot()).mkpath("media/films"));
    // A name that is script where a portal runs what the box answers.
    const QByteArray name = R"("}];window.ran=1;var z=[{"a":"clip #1.ts)";
    const QByteArray row = name + "3 kB";
    const QByteArray play = "play /media/films/" + name;
    QFile clip(m_client.boxRoot() + "/media/films/" + name);
    QVERIFY(clip.open(QIODevice::WriteOnly) && clip.write(QByteArray(2500, ' ')) == 2500);
    clip.close();
    m_walker.open(m_demo);
    WALK({"down*6, right, ok", "", "#mediaState", "1 folder, 0 files"});
    m_walker.tellReceiver("usb mount stick");
    WALK({"", "", "#mediaState", "2 folders"}, {"down", "", "#mediaList .focused", "stick"});
    m_walker.tellReceiver("usb unmount stick");
    WALK({"", "", "#mediaState", "1 folder"}, {"ok", "", "#mediaPath", "/media/films/"},
         {"", "", "#mediaList .focused", row.constData()},
         {"ok", play.constData(), "#playerBar .now_title", name.constData()},
         {"back", "", "#mediaState", "0 folders, 1 file"},
         {"left", "", "#mediaList .focused", "films"}, {"back", "", "#tileGrid .focused", "Media"});
    QCOMPARE(m_client.script("return typeof window.ran").value.toString(), QString("undefined"));
}

void TestDemoPortal::recordingIsPlayed()
{
    m_walker.open(m_demo);
    WALK({"down*6, right*2, ok", "set most recordings {\"maxCnt\":2}", "#recordingCount", "No rec"},
         {"down*3, ok", "create recording", "#recordingTasks", "First-light_"},
         {"", "", "#recordingCount", "1 recording"}, {"down", "", "#recordingForm .focused", "2"},
         {"right", "set most recordings {\"maxCnt\":5}", "#recordingState",
          "5 recordings at a time"},
         {"down*2, ok", "", "#recordingState", "nothing yet"});
    m_walker.tellReceiver("rec started 1");
    WALK(
        {"", "", "#recordingState", "Task 1 has begun."}, {"", "", "#recordingTasks", "recording"},
        {"ok", "play /media/recordings/First-light_", "#playerBar .now_title", "First-light_"},
        {"back", "", "#taskActions .focused", "Play"},
        {"right, ok", "change end of recording", "#recordingState", "Task 1 now ends"},
        {"right, ok", "change end of recording", "#recordingState", "Task 1 now ends"},
        {"right, ok", "remove recording {\"id\":1,\"removeType\":1}", "#recordingState", "removed"},
        {"", "", "#recordingForm .focused", "At most"},
        {"up, ok", "create recording", "#recordingTasks", "task 2"},
        {"down*3, right*4, ok", "remove recording {\"id\":2,\"removeType\":3}", "#recordingCount",
         "No"},
        {"back", "", "#tileGrid .focused", "Recordings"});
}

void TestDemoPortal::favouritePlaysAtStart()
{
    m_walker.open(m_demo);
    WALK({"favourites"});
    m_walker.switchTo("favourites");
    WALK({"", "", "#favouriteForm", "Favourite"}, {"ok, down, ok", "", "#state", "Saved."},
         {"down, ok"});
    // Events come to the page on top.
    m_walker.tellReceiver("rec started 5");
    const QString events = "return document.getElementById('eventRows').textContent";
    QTRY_VERIFY(m_client.script(events).value.toString().contains("recording started, task 5"));
    QCOMPARE(m_client
                 .script("return document.getElementById('favourite').value + "
                         "document.getElementById('autostart').checked")
                 .value.toString(),
             QString("Harbour_at_dusktrue"));
    WALK({"favourites"});
    m_walker.switchTo("portal");
    WALK({"", "", "#entryList .focused", "First light"});
    m_client.post("refresh");
    WALK({"", "play /media/demo/harbour.ts", "#playerBar .now_title", "Harbour at dusk"});
    // And back to a portal that starts with its menu.
    WALK({"back", "", "#tileGrid", "Favourites"}, {"down*6, right*3, ok"});
    m_walker.switchTo("favourites");
    WALK({"down, ok", "", "#state", "Saved."}, {"down, ok"});
    m_walker.switchTo("portal");
    WALK({"", "", "#tileGrid .focused", "Favourites"});
}

void TestDemoPortal::portalIsLeftAndComesBack()
{
    m_walker.open(m_demo);
    WALK({"ok, ok", "viewport full screen", "screen", "bars"},
         {"power", "standby", "screen", "black"}, {"power", "standby", "screen", "bars"},
         {"back, back", "exit", "", ""});
    const QString isThere = "return !!document.getElementById('entryList')";
    QTRY_VERIFY(!m_client.script(isThere).value.toBool());
    // Any key brings it back, once the receiver's own screen is there to take one.
    QTRY_VERIFY((m_walker.walk({"5"}), m_client.script(isThere).value.toBool()));
    WALK({"", "", "#entryList .focused", "First light"}, {"", "", ".preview_hint", "Nothing"});
}

void TestDemoPortal::fitsAnyScreen()
{
    m_client.end();
    const QJsonObject options{{"player", "simulated"}, {"screen", "1024x768"}};
    QCOMPARE(m_client.begin({{"vesprel:options", options}}).status, 200);
    m_walker.open(m_demo);
    // As wide as the screen, in the middle of its height; and so is the video.
    WALK({"ok", "viewport 688,220 544x306", "#tileGrid", "Keys"});
    QCOMPARE(m_client
                 .script("var stage = document.getElementById('stage').getBoundingClientRect();"
                         "return [stage.left, stage.top, stage.right, stage.bottom].join()")
                 .value.toString(),
             QString("0,96,1024,672"));
}

void TestDemoPortal::cleanupTestCase()
{
    m_client.end();
    m_client.process().kill();
    QVERIFY(m_client.process().waitForFinished());
}

QTEST_GUILESS_MAIN(TestDemoPortal)
#include "test_demo_portal.moc"
