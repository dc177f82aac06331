// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/page_statement.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace PageStatement {

const char firstPlay[] = "if(stb.profile['enable_arrow_keys_setpos'] != 1)"
                         "{stb.profile['enable_arrow_keys_setpos'] = 1; "
                         "_debug('dravnik force to use arrow bttons for FF/FB');}";

const char portalLoaded[] = "if(key.EXIT == 8){key.EXIT = 27;key.BACK = 8;}";

QString recording(Recording code)
{
    return QString("var eventParams=pvrManager.GetEventParams(); "
                   "_debug('eventParams', eventParams); "
                   "stbEvent.onEvent(\"%1\", eventParams);")
        .arg(static_cast<int>(code));
}

QString recordingParameters(int id)
{
    return QJsonDocument(QJsonObject{{"id", id}}).toJson(QJsonDocument::Compact);
}

// Portals have always been asked with exactly this text, blanks included.
const char tellState[] =
    "if(typeof(stb.player.active_time_shift) !== 'undefined' && stb.player.active_time_shift){"
    "gSTB.SetTimeshiftState(1);}else{gSTB.SetTimeshiftState(0);}"
    "                                            "
    "if(typeof(stb.cur_place) === 'string'){gSTB.SetCurrPlace(stb.cur_place);}"
    "                                            "
    "if(typeof(module.tv.dom_obj) !== 'undefined'){"
    "gSTB.SetTVMenuState(module.tv.dom_obj.isHidden());}";

const char focusedBox[] = "GetFocusInputPos();";

QString keyboardPress(QString key, const QString &id)
{
    key.replace("\\", "\\\\");
    // One after the other: a key such as "%2" takes the id's place, as it always did.
    return QString("KeyboardPress('%1', '%2')").arg(key).arg(id); // clazy:exclude=qstring-arg
}

} // namespace PageStatement
