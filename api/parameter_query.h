// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <functional>

class SettingsFile;

/** What a portal's box parameter query asks for, as its text was understood. */
struct ParameterQuery
{
    enum class Kind {
        Constant,    ///< The answer is value; empty for a query that means nothing.
        Environment, ///< The environment variable called name.
        IpAddress,
        SerialNumber,
        MacAddress,
        ReadSetting,  ///< The setting called name, with value as its default.
        WriteSetting, ///< Stores value in the setting called name.
        StorageInfo,
        RemoveFile, ///< Deletes the file whose path is name.
    };

    Kind kind = Kind::Constant;
    QString name;
    QString value;
};

/** What a query needs to know of the box; storageInfo is asked only when a query is about it. */
struct BoxValues
{
    QString ipAddress;
    QString serialNumber;
    QString macAddress;
    std::function<QString()> storageInfo;
};

/** Understands a query's text; any text is allowed. Any thread. */
ParameterQuery parseParameterQuery(const QString &par);

/**
 * Carries out a query and gives its answer, which is empty where there is none. Writes the query's
 * records. GUI thread.
 */
QString answerParameterQuery(const QString &par, const BoxValues &box,
                             const SettingsFile &settings);
