// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/** What GetEnv answers for a setting that was never stored; empty for most. Any thread. */
QString settingDefault(const QString &name);

/**
 * What RDir answers to a "getenv" query for a setting that was never stored; the query's whole text
 * decides. Empty for most. Any thread.
 */
QString queriedSettingDefault(const QString &query);
