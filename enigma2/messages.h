// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/*
 * The message types of the receiver link. The two directions number their messages independently,
 * and irregularly: receivers in the field know exactly these.
 */

/** Commands and requests, sent to the receiver. */
enum class Command : std::int32_t {
    MediaPlay = 1000,
    MediaStop = 1001,
    MediaPause = 1002,
    MediaResume = 1003,
    MediaSeek = 1005,
    AudioTrack = 1012,
    AudioPrimaryLanguage = 1013,
    AudioSecondaryLanguage = 1014,
    SubtitleTrack = 1022,
    SubtitlePrimaryLanguage = 1023,
    SubtitleSecondaryLanguage = 1024,
    SubtitleOnOff = 1025,
    VolumeUp = 1100,
    VolumeDown = 1101,
    Mute = 1102,
    VirtualScreen = 1200,
    ViewPort = 1202,
    SetAspect = 1203,
    Reboot = 1901,
    GetStorageInfo = 1902,
    PvrCreateTask = 1903,
    PvrRemoveTask = 1904,
    PvrChangeEndTime = 1905,
    PvrGetTaskById = 1906,
    PvrGetTasksByIds = 1907,
    PvrSetMaxRecordingCount = 1908,
    PvrGetAllTasks = 1909,
    RunApp = 1910,
    Standby = 1911,
    Exit = 1999,
};

/** Events and answers, received from the receiver. */
enum class Event : std::int32_t {
    NewPortal = 1000,
    PlayStart = 1001,
    PlayEnd = 1002,
    PlayProgressive = 1003,
    PlayTimeStatus = 1005,
    AudioPids = 1010,
    AudioPid = 1011,
    SubtitlePids = 1013,
    SubtitlePid = 1014,
    StorageInfo = 1016,
    UsbMounted = 1017,
    UsbUnmounted = 1018,
    PvrTaskCreated = 1019,
    PvrTaskRemoved = 1020,
    PvrEndTimeChanged = 1021,
    PvrTaskById = 1022,
    PvrTasksByIds = 1023,
    PvrMaxRecordingCountSet = 1024,
    PvrAllTasks = 1025,
    PvrRecordingStarted = 1026,
    PvrRecordingFinished = 1027,
    PvrRecordingError = 1028,
    PowerOff = 1029,
    PowerOn = 1030,
};
