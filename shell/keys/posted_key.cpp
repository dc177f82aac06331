// SPDX-License-Identifier: Apache-2.0
#include "shell/keys/posted_key.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

void postKey(QWidget *receiver, int key, Qt::KeyboardModifiers modifiers, const QString &text)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
        QCoreApplication::postEvent(receiver, new QKeyEvent(type, key, modifiers, text));
}

void deliverPostedKeys(QWidget *receiver)
{
    // Of all types, since one type after the other would part presses from their releases.
    QCoreApplication::sendPostedEvents(receiver, 0);
}
