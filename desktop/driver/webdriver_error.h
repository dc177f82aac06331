// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QJsonObject>
#include <QString>

/**
 * A command that failed, as the client is told. Commands throw it, since most of them can fail at
 * every step; the front turns it into the answer. Never thrown through an event loop.
 */
struct WebDriverError
{
    QString code; ///< One of the protocol's names, such as "no such element".
    QString message;
    QJsonObject data; ///< Left out of the answer where empty.
    QString stack;    ///< Of a script that failed.
};

/** The HTTP status that goes with an error's code; 500 for codes that are not in the protocol. */
int statusOf(const QString &code);

/** The body that tells a client of an error. */
QJsonObject bodyOf(const WebDriverError &error);

/** The error of an answer of the program. */
WebDriverError errorOf(const QJsonObject &answer);

[[noreturn]] void fail(const char *code, const QString &message);
[[noreturn]] void failArgument(const QString &message);
