// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class SettingsFile;

/**
 * Answer to a portal that asks for settings: args is JSON such as {"varList":["language"]}, the
 * answer {"errCode":0,"errMsg":"","result":{"language":"en"}}. Each name in the list gets its
 * stored text or its default; other elements are skipped. For args of any other shape the result is
 * an empty object, never an error. GUI thread.
 */
QString environmentAnswer(const QString &args, const SettingsFile &settings);

/**
 * Stores each text member of the JSON object in args, in the order of their names and with the
 * content that storing one by one leaves.
 * Other members, and args of any other shape, change nothing. GUI thread.
 */
void storeEnvironment(const QString &args, const SettingsFile &settings);
