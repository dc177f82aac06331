// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/portal_object.h"

#include <QString>

/** The box keeps no key-value storage; portals that ask find every item empty. */
class stbStorage : public PortalObject
{
    Q_OBJECT

public:
    using PortalObject::PortalObject;

public slots:
    QString getItem(const QString &) { return QString(); }
};
