// SPDX-License-Identifier: Apache-2.0
#include "objects/placeholders.h"

#include "platform/log_record.h"

int stbSurface::getId() const { return loggedResult(1, "getId", "():"); }
