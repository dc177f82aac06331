// SPDX-License-Identifier: Apache-2.0
// A player whose mpv says anything, in any order, between any commands.
#include "desktop/player/mpv_player.h"
#include "fuzz/support/input.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <memory>
#include <utility>

namespace {

/** An mpv that answers with the lines that it is told. */
class ScriptedChannel : public MpvChannel
{
public:
    bool isRunning() const override { return m_running; }
    qint64 processId() const override { return 0; }

    bool start(QString *failure) override
    {
        *failure = "scripted";
        m_running = !m_refusesStart;
        return m_running;
    }

    void kill() override { m_running = false; }

    void command(const QJsonArray &, const Reply &reply) override
    {
        if (m_running && reply)
            m_replies.append(reply);
    }

    void hear(const QByteArray &line)
    {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        if (object.contains("event"))
            emit eventReceived(object);
        else if (!m_replies.isEmpty())
            m_replies.takeFirst()(object);
    }

    void crash(bool refusesStart)
    {
        m_refusesStart = refusesStart;
        m_running = false;
        m_replies.clear();
        emit exited();
    }

private:
    QVector<Reply> m_replies;
    bool m_running = false;
    bool m_refusesStart = false;
};

void act(MpvPlayer &player, int action, const QByteArray &text)
{
    const int number = text.toInt();
    switch (action) {
    case 0: player.play(parsePlayText(QString::fromLatin1(text))); break;
    case 1: player.stop(); break;
    case 2: player.pause(); break;
    case 3: player.resume(); break;
    case 4: player.seek(number); break;
    case 5: player.selectAudioTrack(number); break;
    case 6: player.selectSubtitleTrack(number); break;
    case 7: player.setAudioLanguages({QString::fromLatin1(text)}); break;
    case 8: player.showSubtitles(number != 0); break;
    case 9: player.setAspect(static_cast<Aspect>(number & 0x7F)); break;
    case 10: player.changeVolume(number % 1000); break;
    case 11: player.toggleMute(); break;
    case 14: player.setSubtitleLanguages({QString::fromLatin1(text)}); break;
    case 15: player.setSound(qBound(0, number, 100), text.endsWith('m')); break;
    default: player.setSilent(number != 0); break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);

    auto owned = std::make_unique<ScriptedChannel>();
    ScriptedChannel &channel = *owned;
    MpvPlayer player({}, std::move(owned));
    QObject::connect(&player, &MediaPlayer::progress,
                     [](int total, int position) { FUZZ_CHECK(total >= 0 && position >= 0); });
    Input input(data, size);
    while (!input.atEnd()) {
        const int action = input.byte() % 32;
        const QByteArray line = input.line();
        if (action == 13)
            channel.crash(line.startsWith('x'));
        else if (action < 16)
            act(player, action, line);
        else
            channel.hear(line);
    }
    QCoreApplication::sendPostedEvents();
    return 0;
}
