// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

/** Keeps every message that is logged while it lives, from any thread; one at a time. */
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();

    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    /** The messages since the start or the last call, oldest first. */
    QStringList take();
};
