// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/driver/process.h"

/**
 * Puts bwrap before a program where bwrap works: what a page makes it do then reaches the files of
 * a folder, and of no one else, with more than reading. Says once, on standard error, where bwrap
 * does not. Any thread.
 */
void confine(ProcessStart &how, const QString &folder);
