// SPDX-License-Identifier: Apache-2.0
/*
 * The commands that wait for no answer, one by one, and playback.
 */
#include "desktop/check/checks.h"
#include "desktop/link/payload.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace {

constexpr int startMs = 10000;
constexpr int seekMs = 1000;
constexpr int seekPosition = 1000;
// Shorter media end before it can be seen that a seek has gone nowhere.
constexpr int shortestToSeek = 20000;

bool changesTheScreen(Command command)
{
    switch (command) {
    case Command::Reboot:
    case Command::Standby:
    case Command::RunApp:
    case Command::Exit: return true;
    default: return false;
    }
}

/** A payload as portals cause it, which does no harm. */
QByteArray commandPayload(Command command)
{
    switch (command) {
    case Command::MediaPlay: return "auto http://127.0.0.1:9/vesprel-receiver-check position:1";
    case Command::MediaSeek: return integerPayload(seekPosition);
    case Command::AudioTrack:
    case Command::SubtitleTrack: return integerPayload(4352);
    case Command::AudioPrimaryLanguage:
    case Command::SubtitlePrimaryLanguage: return "eng";
    case Command::AudioSecondaryLanguage:
    case Command::SubtitleSecondaryLanguage: return "deu";
    case Command::SubtitleOnOff: return integerPayload(0);
    case Command::VirtualScreen: return integerPayload(initialScreenWidth);
    case Command::ViewPort: return integerPayload(0, 0) + integerPayload(0, 0);
    case Command::SetAspect: return integerPayload(0x10);
    case Command::RunApp: return "apps";
    default: return {};
    }
}

CheckResult checkCommand(Walk &walk, Command command)
{
    if (changesTheScreen(command) && !walk.sendsAll)
        return CheckResult::skip("It changes what a viewer sees; --all sends it.");
    if (!walk.hasProbe())
        return CheckResult::skip(noProbe);
    // The second stand-by ends the first; the second mute, too.
    const int times = command == Command::Standby || command == Command::Mute ? 2 : 1;
    Session *session = walk.session();
    for (int time = 0; session && time < times; ++time)
        session->send(command, commandPayload(command));
    Reply reply = walk.probe();
    // It may have closed the connection behind the answer.
    if (reply)
        reply = walk.probe();
    if (!reply)
        walk.endSession();
    return CheckResult::of(reply ? QString() : "After the command: " + reply.fault);
}

bool isEvent(const SeenFrame &frame, Event event) { return frame.type == static_cast<int>(event); }

/** The last length that was told, in ms; 0 when none was, or for what has no end. */
int toldLength(const std::vector<SeenFrame> &events)
{
    const auto told = std::find_if(events.rbegin(), events.rend(), [](const SeenFrame &frame) {
        return isEvent(frame, Event::PlayTimeStatus) && integerAt(frame.payload, 0) > 0;
    });
    return told == events.rend() ? 0 : integerAt(told->payload, 0);
}

CheckResult checkStart(Walk &walk)
{
    if (walk.url.isEmpty())
        return CheckResult::skip("No --url was given.");
    if (const QString fault = walk.restart(); !fault.isEmpty())
        return CheckResult::of(fault);
    Session *session = walk.session();
    session->send(Command::MediaPlay, "auto " + walk.url.toLatin1());
    Event last = Event::PlayEnd;
    const bool cameOut = session->listen(startMs, [&last](Event event) {
        last = event;
        return event == Event::PlayStart || event == Event::PlayEnd;
    });
    walk.isPlaying = cameOut && last == Event::PlayStart;
    if (!walk.isPlaying)
        walk.endSession();
    if (!cameOut)
        return CheckResult::of("Neither 1001 nor 1002 came within 10 s of the play command.");
    if (last == Event::PlayEnd)
        return CheckResult::of("Playback ended (1002) without a start; is the URL right?");
    const auto &events = session->events();
    if (std::none_of(events.begin(), events.end(),
                     [](const SeenFrame &frame) { return isEvent(frame, Event::PlayTimeStatus); }))
        return CheckResult::of("1001 came without 1005 before it.");
    return {};
}

CheckResult checkSeek(Walk &walk)
{
    if (!walk.isPlaying)
        return CheckResult::skip("Nothing plays.");
    Session *session = walk.session();
    if (!session)
        return CheckResult::of(takesNoConnection);
    const int length = toldLength(session->events());
    const int target = length < shortestToSeek ? seekPosition : length / 2;
    // Players jump to a picture that stands for itself, which may be seconds before.
    const int nearest = length < shortestToSeek ? 0 : length / 4;
    std::optional<int> position;
    session->send(Command::MediaSeek, integerPayload(target));
    const bool came = session->listen(seekMs, [&](Event event) {
        if (event == Event::PlayTimeStatus && !session->events().empty())
            position = integerAt(session->events().back().payload, 1);
        return position.value_or(-1) >= nearest;
    });
    session->send(Command::MediaStop);
    if (came)
        return {};
    return CheckResult::of(
        position ? QString("In the second after a seek to %1 ms 1005 told %2 ms as the position.")
                       .arg(target)
                       .arg(*position)
                 : QString("No 1005 came within a second of the seek."));
}

} // namespace

Checks commandChecks()
{
    Checks checks;
    for (const CommandRow &row : commandRows) {
        if (findAnswerTo(row.command))
            continue;
        const Command command = row.command;
        checks.push_back({QString("goes on after %1, %2")
                              .arg(static_cast<int>(command))
                              .arg(QString(row.words).replace("%1", "...")),
                          "Commands: Vesprel to receiver",
                          [command](Walk &walk) { return checkCommand(walk, command); }});
    }
    return checks;
}

Checks playbackChecks()
{
    return {{"tells the length and the start of playback", "Playback", checkStart},
            {"tells the position after a seek", "Playback", checkSeek}};
}
