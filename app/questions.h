// SPDX-License-Identifier: Apache-2.0
#pragma once

/**
 * Answers "--help" or "--version" on the standard output, if that is the only argument. Otherwise
 * false, and the arguments are the application object's, as the box's start script may give some.
 */
bool answerQuestion(int argc, char **argv);
