// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QEvent>
#include <QObject>

/**
 * Base of every object that a page can reach. The engine's bridge offers each object's
 * deleteLater() to scripts; such an object ignores the deferred delete, so that a page can destroy
 * nothing. Its owner deletes it directly. GUI thread.
 */
class PortalObject : public QObject
{
public:
    using QObject::QObject;

    bool event(QEvent *event) override
    {
        return event->type() == QEvent::DeferredDelete || QObject::event(event);
    }
};
