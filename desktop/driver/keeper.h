// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/*
 * Every box has a keeper, a small process of its own that outlives the driver's sudden death. It
 * waits on its standard input, whose other end only the driver holds: when that is closed, by
 * whatever end of the driver, the keeper ends the box's processes and removes its files.
 */

/** The first argument that makes this program a keeper; the second is the box's folder. */
constexpr char keeperOption[] = "--keep";

/**
 * The keeper's work. The first line of its input is the process group of the box. Returns the exit
 * code when all is gone.
 */
int keepBox(const QString &folder);
