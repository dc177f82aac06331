// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/portal_object.h"

#include <QString>

/*
 * Objects that portals expect to find and behind which the box has nothing: fixed answers, no
 * effect. GUI thread.
 */

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

/** The box keeps no key-value storage; portals that ask find every item empty. */
class stbStorage : public PortalObject
{
    Q_OBJECT

public:
    using PortalObject::PortalObject;

public slots:
    QString getItem(const QString &) { return QString(); }
};

/** The box's single video surface. Promised with the others, yet published to no page. */
class stbSurface : public PortalObject
{
    Q_OBJECT
    Q_PROPERTY(int id READ getId)

public:
    using PortalObject::PortalObject;

    int getId() const;
};
