// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class QWidget;

/**
 * Types a text into the focused field of a view: press and release of every character, at once.
 * Characters from U+E000 on are keys (Enter, arrows, Shift that stays held, ...). The events go to
 * the view itself and not through the display, so that the remote's translation, which would turn
 * letters into something else, leaves them alone.
 */
void typeText(QWidget &view, const QString &text);
