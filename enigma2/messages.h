// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/*
 * The one table of the link's messages. The two directions number their messages independently, and
 * irregularly: receivers in the field know exactly these. Whatever lists messages (the enumerations
 * and rows below, signals, descriptions, the console of the desktop receiver) is driven from here.
 *
 * The words describe a message to a person; %1 and %2 stand for what its payload carries.
 */

/** What a payload carries. Integers are 32 bits big-endian, texts have no length of their own. */
enum class PayloadForm {
    Nothing,
    Integer,
    TwoIntegers,
    OnOff, ///< One integer, 1 or 0.
    Area,  ///< Four integers: x, y, width, height; four zeros mean the full screen.
    Latin1,
    Utf8,
    Json, ///< An object, compact, as Latin-1.
};

/** Width of the virtual screen in px that every connection begins with. */
constexpr int initialScreenWidth = 1280;

// clang-format off

/** Commands and requests, sent to the receiver: number, name, form, words. */
#define VESPREL_COMMANDS(COMMAND)                                                       \
    COMMAND(1000, MediaPlay,                 Latin1,      "play %1")                    \
    COMMAND(1001, MediaStop,                 Nothing,     "stop")                       \
    COMMAND(1002, MediaPause,                Nothing,     "pause")                      \
    COMMAND(1003, MediaResume,               Nothing,     "resume")                     \
    COMMAND(1005, MediaSeek,                 Integer,     "seek %1 ms")                 \
    COMMAND(1012, AudioTrack,                Integer,     "audio track %1")             \
    COMMAND(1013, AudioPrimaryLanguage,      Latin1,      "audio language 1: %1")       \
    COMMAND(1014, AudioSecondaryLanguage,    Latin1,      "audio language 2: %1")       \
    COMMAND(1022, SubtitleTrack,             Integer,     "subtitle track %1")          \
    COMMAND(1023, SubtitlePrimaryLanguage,   Latin1,      "subtitle language 1: %1")    \
    COMMAND(1024, SubtitleSecondaryLanguage, Latin1,      "subtitle language 2: %1")    \
    COMMAND(1025, SubtitleOnOff,             OnOff,       "subtitles %1")               \
    COMMAND(1100, VolumeUp,                  Nothing,     "volume up")                  \
    COMMAND(1101, VolumeDown,                Nothing,     "volume down")                \
    COMMAND(1102, Mute,                      Nothing,     "mute")                       \
    COMMAND(1200, VirtualScreen,             Integer,     "virtual screen %1")          \
    COMMAND(1202, ViewPort,                  Area,        "viewport %1")                \
    COMMAND(1203, SetAspect,                 Integer,     "aspect %1")                  \
    COMMAND(1901, Reboot,                    Nothing,     "reboot")                     \
    COMMAND(1902, GetStorageInfo,            Nothing,     "get storage information")    \
    COMMAND(1903, PvrCreateTask,             Json,        "create recording %1")        \
    COMMAND(1904, PvrRemoveTask,             Json,        "remove recording %1")        \
    COMMAND(1905, PvrChangeEndTime,          Json,        "change end of recording %1") \
    COMMAND(1906, PvrGetTaskById,            Json,        "get recording %1")           \
    COMMAND(1907, PvrGetTasksByIds,          Json,        "get recordings %1")          \
    COMMAND(1908, PvrSetMaxRecordingCount,   Json,        "set most recordings %1")     \
    COMMAND(1909, PvrGetAllTasks,            Nothing,     "get all recordings")         \
    COMMAND(1910, RunApp,                    Latin1,      "run application %1")         \
    COMMAND(1911, Standby,                   Nothing,     "standby")                    \
    COMMAND(1999, Exit,                      Nothing,     "exit")

/**
 * Events, received from the receiver: number, name, the signal of Enigma2 and the slot of the same
 * name that the window connects to it, form, words; then words, arguments and help of the console
 * that sends it. An empty text is no event.
 */
#define VESPREL_EVENTS(EVENT)                                                                  \
    EVENT(1000, NewPortal,            OnNewPortal,       Latin1,      "portal %1",             \
          "portal",        "URL",       "open another portal")                                 \
    EVENT(1001, PlayStart,            OnPlayStart,       Nothing,     "play start",            \
          "play start",    "",          "playback started")                                    \
    EVENT(1002, PlayEnd,              OnPlayEnd,         Nothing,     "play end",              \
          "play end",      "",          "playback ended")                                      \
    EVENT(1003, PlayProgressive,      OnPlayProgressive, Nothing,     "play progressive",      \
          "play progress", "",          "the medium is progressive")                           \
    EVENT(1005, PlayTimeStatus,       OnPlayTStatus,     TwoIntegers, "position %2 of %1 ms",  \
          "time",          "TOTAL POS", "length and position in ms")                           \
    EVENT(1010, AudioPids,            OnAudioPids,       Utf8,        "audio tracks %1",       \
          "audio pids",    "JSON",      "list of the audio tracks")                            \
    EVENT(1011, AudioPid,             OnAudioPid,        Integer,     "audio track %1",        \
          "audio pid",     "N",         "current audio track")                                 \
    EVENT(1013, SubtitlePids,         OnSubPids,         Utf8,        "subtitle tracks %1",    \
          "sub pids",      "JSON",      "list of the subtitle tracks")                         \
    EVENT(1014, SubtitlePid,          OnSubPid,          Integer,     "subtitle track %1",     \
          "sub pid",       "N",         "current subtitle track")                              \
    EVENT(1017, UsbMounted,           OnUsbMounted,      Nothing,     "usb mounted",           \
          "usb mount",     "",          "a USB storage was mounted")                           \
    EVENT(1018, UsbUnmounted,         OnUsbUmounted,     Nothing,     "usb unmounted",         \
          "usb unmount",   "",          "it was unmounted")                                    \
    EVENT(1026, PvrRecordingStarted,  OnPvrRecStarted,   Integer,     "recording started %1",  \
          "rec started",   "N",         "recording N started")                                 \
    EVENT(1027, PvrRecordingFinished, OnPvrRecFinished,  Integer,     "recording finished %1", \
          "rec finished",  "N",         "recording N finished")                                \
    EVENT(1028, PvrRecordingError,    OnPvrRecError,     Integer,     "recording error %1",    \
          "rec error",     "N",         "recording N failed")                                  \
    EVENT(1029, PowerOff,             OnPowerOff,        Nothing,     "power off",             \
          "power off",     "",          "the box goes to standby")                             \
    EVENT(1030, PowerOn,              OnPowerOn,         Nothing,     "power on",              \
          "power on",      "",          "the box wakes up")

/** Answers, received from the receiver: number, name, the request, form, words. */
#define VESPREL_ANSWERS(ANSWER)                                                                             \
    ANSWER(1016, StorageInfo,             GetStorageInfo,          Utf8,    "storage information %1")       \
    ANSWER(1019, PvrTaskCreated,          PvrCreateTask,           Integer, "recording created: %1")        \
    ANSWER(1020, PvrTaskRemoved,          PvrRemoveTask,           Integer, "recording removed: %1")        \
    ANSWER(1021, PvrEndTimeChanged,       PvrChangeEndTime,        Integer, "end of recording changed: %1") \
    ANSWER(1022, PvrTaskById,             PvrGetTaskById,          Utf8,    "recording %1")                 \
    ANSWER(1023, PvrTasksByIds,           PvrGetTasksByIds,        Utf8,    "recordings %1")                \
    ANSWER(1024, PvrMaxRecordingCountSet, PvrSetMaxRecordingCount, Integer, "most recordings set: %1")      \
    ANSWER(1025, PvrAllTasks,             PvrGetAllTasks,          Utf8,    "all recordings %1")

// clang-format on

/** Commands and requests to the receiver; the value is the number on the wire. */
enum class Command : std::int32_t {
#define COMMAND_NUMBER(number, name, ...) name = number,
    VESPREL_COMMANDS(COMMAND_NUMBER)
#undef COMMAND_NUMBER
};

/** Events and answers of the receiver; the value is the number on the wire. */
enum class Event : std::int32_t {
#define EVENT_NUMBER(number, name, ...) name = number,
    VESPREL_EVENTS(EVENT_NUMBER) VESPREL_ANSWERS(EVENT_NUMBER)
#undef EVENT_NUMBER
};

/** What is known of a command; %1 and on stand for its payload in the words for a person. */
struct CommandRow
{
    Command command;
    PayloadForm form;
    const char *words;
};

/** What is known of an event, and how the desktop's console raises it; null where it doesn't. */
struct EventRow
{
    Event event;
    PayloadForm form;
    const char *words;
    const char *consoleWords;
    const char *consoleArguments;
    const char *consoleHelp;
};

/** What is known of an answer, and the request that waits for it. */
struct AnswerRow
{
    Event event;
    Command request;
    PayloadForm form;
    const char *words;
};

constexpr CommandRow commandRows[] = {
#define COMMAND_ROW(number, name, form, words) {Command::name, PayloadForm::form, words},
    VESPREL_COMMANDS(COMMAND_ROW)
#undef COMMAND_ROW
};

constexpr EventRow eventRows[] = {
#define EVENT_ROW(number, name, signal, form, words, console, arguments, help)                     \
    {Event::name, PayloadForm::form, words, console, arguments, help},
    VESPREL_EVENTS(EVENT_ROW)
#undef EVENT_ROW
};

constexpr AnswerRow answerRows[] = {
#define ANSWER_ROW(number, name, request, form, words)                                             \
    {Event::name, Command::request, PayloadForm::form, words},
    VESPREL_ANSWERS(ANSWER_ROW)
#undef ANSWER_ROW
};

/** The row of a number of this direction, null for a number that names nothing there. */
constexpr const CommandRow *findCommand(std::int32_t number)
{
    for (const CommandRow &row : commandRows) {
        if (static_cast<std::int32_t>(row.command) == number)
            return &row;
    }
    return nullptr;
}

constexpr const EventRow *findEvent(std::int32_t number)
{
    for (const EventRow &row : eventRows) {
        if (static_cast<std::int32_t>(row.event) == number)
            return &row;
    }
    return nullptr;
}

constexpr const AnswerRow *findAnswer(std::int32_t number)
{
    for (const AnswerRow &row : answerRows) {
        if (static_cast<std::int32_t>(row.event) == number)
            return &row;
    }
    return nullptr;
}

/** The answer that a request waits for; null for a command that waits for none. */
constexpr const AnswerRow *findAnswerTo(Command request)
{
    for (const AnswerRow &row : answerRows) {
        if (row.request == request)
            return &row;
    }
    return nullptr;
}
