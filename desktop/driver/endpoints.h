// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>

class Session;

/** What a request gives to a command. */
struct CommandCall
{
    QString name;                      ///< The last word of the path that is no variable.
    QHash<QString, QString> variables; ///< Parts of the path, by their names.
    QJsonObject parameters;            ///< The body of a POST request.
};

using CommandHandler = QJsonValue (Session::*)(const CommandCall &call);

/** One row of the table of commands. */
struct Endpoint
{
    const char *method;
    const char *path;       ///< Parts in braces are variables.
    CommandHandler handler; ///< None for those that are not for a session.
};

/** What a path and method match. */
struct EndpointMatch
{
    const Endpoint *endpoint = nullptr;
    CommandCall call;
};

/** Finds the row. Throws "unknown command" or "unknown method". The path is still encoded. */
EndpointMatch matchEndpoint(const QString &method, const QString &path);
