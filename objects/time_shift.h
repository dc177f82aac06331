// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/portal_object.h"

#include <QString>

/** The box has no time-shift buffer; the settings of one are accepted and dropped. */
class stbTimeShift : public PortalObject
{
    Q_OBJECT

public:
    using PortalObject::PortalObject;

public slots:
    void SetSlidingMode(bool) {}
    void SetMaxDuration(int) {}
    void SetTimeShiftFolder(const QString &) {}
};
