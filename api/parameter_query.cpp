// SPDX-License-Identifier: Apache-2.0
#include "api/parameter_query.h"

#include "api/setting_defaults.h"
#include "api/settings_file.h"
#include "api/text_file.h"
#include "platform/environment.h"
#include "platform/log_record.h"

#include <QFile>
#include <QStringList>

namespace {

using Kind = ParameterQuery::Kind;

struct FixedName
{
    const char *par;
    Kind kind;
    const char *text; ///< The answer, or the name of an environment variable.
};

constexpr FixedName fixedNames[] = {
    {"vmode", Kind::Constant, "720"},
    {"IPAddress", Kind::IpAddress, ""},
    {"SerialNumber", Kind::SerialNumber, ""},
    {"Model", Kind::Environment, Environment::model},
    {"ImageDescription", Kind::Environment, Environment::imageDescription},
    {"ImageVersion", Kind::Environment, Environment::imageVersion},
    {"ImageDate", Kind::Environment, Environment::imageDate},
    {"HardwareVersion", Kind::Environment, Environment::hardwareVersion},
    {"Img_Ver", Kind::Environment, Environment::softwareVersion},
    {"gmode", Kind::Constant, "720"},
    {"MACAddress", Kind::MacAddress, ""},
};

QString withoutQuotes(const QString &path)
{
    const bool quoted = path.startsWith('"') && path.endsWith('"');
    return quoted ? path.mid(1, path.size() - 2) : path;
}

QString removeFile(const QString &path)
{
    logRecord("RDir", "try delete file ", path);
    return !path.contains(QChar(0)) && QFile::remove(diskPath(path)) ? "Ok" : "Fail";
}

QString readSetting(const ParameterQuery &query, const SettingsFile &settings)
{
    const QString answer = settings.read(query.name, query.value);
    logRecord("RDir", "getenv key:", query.name, "value:", answer);
    return answer;
}

void writeSetting(const ParameterQuery &query, const SettingsFile &settings)
{
    settings.write({{query.name, query.value}});
    logRecord("RDir", "setenv key:", query.name, "value:", query.value);
}

QString answerOf(const ParameterQuery &query, const BoxValues &box, const SettingsFile &settings)
{
    switch (query.kind) {
    case Kind::Constant: return query.value;
    case Kind::Environment: return Environment::textOf(query.name.toLatin1().constData());
    case Kind::IpAddress: return box.ipAddress;
    case Kind::SerialNumber: return box.serialNumber;
    case Kind::MacAddress: return box.macAddress;
    case Kind::ReadSetting: return readSetting(query, settings);
    case Kind::WriteSetting: writeSetting(query, settings); break;
    case Kind::StorageInfo: return box.storageInfo ? box.storageInfo() : QString();
    case Kind::RemoveFile: return removeFile(query.name);
    }
    return QString();
}

} // namespace

ParameterQuery parseParameterQuery(const QString &par)
{
    for (const FixedName &row : fixedNames) {
        if (par == QLatin1String(row.par)) {
            const QString text = QLatin1String(row.text);
            return row.kind == Kind::Constant ? ParameterQuery{row.kind, {}, text}
                                              : ParameterQuery{row.kind, text, {}};
        }
    }
    // A word counts wherever it stands, and two blanks in a row make an empty piece.
    const QStringList pieces = par.split(' ');
    if (par.contains("getenv")) {
        if (pieces.size() == 2)
            return {Kind::ReadSetting, pieces[1], queriedSettingDefault(par)};
    } else if (par.contains("setenv")) {
        if (pieces.size() == 3)
            return {Kind::WriteSetting, pieces[1], pieces[2]};
    } else if (par.contains("get_storage_info") || par.contains("get_hdd_info")) {
        return {Kind::StorageInfo, {}, {}};
    } else if (par.contains("get_crc_count")) {
        return {Kind::Constant, {}, "0"};
    } else if (par.contains("RemoveFile")) {
        if (pieces.size() == 2)
            return {Kind::RemoveFile, withoutQuotes(pieces[1]), {}};
    }
    return {};
}

QString answerParameterQuery(const QString &par, const BoxValues &box, const SettingsFile &settings)
{
    const QString answer = answerOf(parseParameterQuery(par), box, settings);
    logRecord("RDir", par, answer);
    return answer;
}
