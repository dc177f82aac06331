// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>

#include <optional>

/** How long commands wait, in ms; nothing: for ever. */
struct Timeouts
{
    std::optional<double> script = 30000;
    std::optional<double> pageLoad = 300000;
    std::optional<double> implicit = 0;
};

/** Reads the given members into timeouts; the others stay. Throws "invalid argument". */
void readTimeouts(const QJsonValue &value, Timeouts &timeouts);

QJsonObject timeoutsObject(const Timeouts &timeouts);

/** What is done about a dialog that a command finds open. */
struct PromptHandler
{
    enum class Action { Dismiss, Accept, Ignore };

    Action action = Action::Dismiss;
    bool notify = true; ///< The command that found it fails.
};

/** The handlers by type of dialog, as a client gave them. */
class PromptHandlers
{
public:
    /** A string, or an object of strings by type. Throws "invalid argument". */
    static PromptHandlers read(const QJsonValue &value);

    /** The handler for "alert", "confirm" or "prompt". */
    PromptHandler forType(const QString &type) const;

    /** As the client is told. */
    QJsonValue toJson() const;

private:
    QMap<QString, QString> m_byType; ///< The given names; "fallbackDefault" for a single one.
};
