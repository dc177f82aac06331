// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QSize>

class QWidget;

/*
 * How large the window is. A box shows it maximised, where nothing else is on the screen. On a
 * desktop it covers panels and has no frame, unless VESPREL_WINDOW names a size for an ordinary
 * window that is smaller than the screen. GUI thread.
 */

/** The size (px) to build the window in; on a desktop a line in the log if what is set is wrong. */
QSize initialWindowSize();

/** Shows the window so; one that is visible stays where and as large as a person has made it. */
void showInPlace(QWidget &window);
