// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <Qt>

class QWidget;

/**
 * Posts a key press and release to a widget. Posted keys are not spontaneous, so the key filter
 * lets them pass and never translates a key twice. GUI thread.
 */
void postKey(QWidget *receiver, int key, Qt::KeyboardModifiers modifiers,
             const QString &text = QString());

/** Delivers the keys that are still posted to a widget. GUI thread. */
void deliverPostedKeys(QWidget *receiver);
