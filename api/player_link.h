// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/**
 * The player that playback events are passed on to. gSTB knows it by this interface only, since
 * the player objects are built on gSTB and not the other way round. GUI thread.
 */
class PlayerLink
{
public:
    virtual void OnPlayStarted() = 0;
    virtual void OnPlayEnded() = 0;
    virtual void OnAudioPids(const QString &list) = 0;
    virtual void OnSubPids(const QString &list) = 0;
    virtual void OnAudioPid(int pid) = 0;
    virtual void OnSubPid(int pid) = 0;

    /** Length and position of the current media in ms. */
    virtual void setMediaProgress(int length, int position) = 0;

protected:
    ~PlayerLink() = default;
};
