// SPDX-License-Identifier: Apache-2.0
#include "objects/window_manager.h"

#include "platform/log_record.h"

void stbWindowMgr::openWebFavorites(const QString &url, int unknown)
{
    emit WebFavor(url, unknown);
}

QString stbWindowMgr::GetFocusedInputInfo()
{
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;
    emit GetFocusPos(x, y, w, h);
    const QString info = QString("{\"result\":{\"x\":%1, \"y\":%2, \"w\":%3, \"h\":%4, "
                                 "\"positionHint\": \"none\"} }")
                             .arg(x)
                             .arg(y)
                             .arg(w)
                             .arg(h);
    return loggedResult(info, "GetFocusedInputInfo", "():");
}
