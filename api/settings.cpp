// SPDX-License-Identifier: Apache-2.0
/*
 * The portal's own settings and files, and the box's parameters.
 */
#include "api/environment_settings.h"
#include "api/parameter_query.h"
#include "api/settings_file.h"
#include "api/user_data.h"
#include "api/vesprelv2.h"
#include "platform/log_record.h"

QString VesprelV2::GetEnv(const QString &args)
{
    logRecord("GetEnv", "():", args);
    return loggedResult(environmentAnswer(args, SettingsFile::ofCurrentPortal()), "GetEnv", "():");
}

bool VesprelV2::SetEnv(const QString &args)
{
    logRecord("SetEnv", "():", args);
    storeEnvironment(args, SettingsFile::ofCurrentPortal());
    return true;
}

QString VesprelV2::LoadUserData(const QString &file)
{
    logRecord("LoadUserData", "():", file);
    return loadUserData(file);
}

void VesprelV2::SaveUserData(const QString &file, const QString &data)
{
    logRecord("SaveUserData", "():", file, data);
    saveUserData(file, data);
}

QString VesprelV2::ReadCFG()
{
    logRecord("ReadCFG", "()");
    const auto parameters = readBoxParameters();
    if (!parameters)
        logRecord("Could not open file for Reading");
    return parameters.value_or(QString());
}

void VesprelV2::WriteCFG(const QString &cfg)
{
    logRecord("WriteCFG", "():", cfg);
    switch (writeBoxParameters(cfg)) {
    case Replacement::Done: break;
    case Replacement::NotOpened: logRecord("Could not open file for Writing"); break;
    case Replacement::NotWritten: logRecord("Could not write file, it stays as it was"); break;
    }
}

QString VesprelV2::RDir(const QString &par)
{
    const BoxValues box = {m_ipAddress, m_serialNumber, m_macAddress,
                           [this] { return emit sGetStorageInfo(); }};
    return answerParameterQuery(par, box, SettingsFile::ofCurrentPortal());
}
