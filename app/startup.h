// SPDX-License-Identifier: Apache-2.0
#pragma once

/**
 * Start-up and run of the program, in its fixed order: log switch, environment, home directory,
 * application, window, portal. Returns the value with which the event loop was ended; nothing in
 * the program ends it. Main thread.
 */
int runVesprel(int &argc, char **argv);
