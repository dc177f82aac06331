// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

/*
 * Runs a piece of a test in a child process, forked without a new program, to see what is left when
 * it ends at a bad moment.
 */

/** What the child gives back; a negative number if it did not end by itself. */
int inChild(const std::function<int()> &piece);

/**
 * Runs the piece and kills it at its stop number `last`, counting each beginning and each end of a
 * system call from 0. `seen` is told the number of each call that begins. Returns whether there was
 * such a stop; false if the piece ended before, or if the system allows no tracing at all.
 */
bool killedAtCall(int last, const std::function<void()> &piece,
                  const std::function<void(unsigned long)> &seen = {});

/**
 * Gives the calling process a view of the file system of its own, where it may mount what it likes;
 * false if the system does not allow it. For a child.
 */
bool enterOwnMounts();
