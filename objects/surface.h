// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/portal_object.h"

/** The box's single video surface. Kept by the window, published to no page. */
class stbSurface : public PortalObject
{
    Q_OBJECT
    Q_PROPERTY(int id READ getId)

public:
    using PortalObject::PortalObject;

    int getId() const;
};
