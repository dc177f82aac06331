// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/portal_object.h"

#include <QString>

/** The window of the on-screen keyboard page, as that page and the portal see it. */
class stbWebWindow : public PortalObject
{
    Q_OBJECT

public:
    explicit stbWebWindow(QObject *parent = nullptr);

signals:
    void OnVKey(QString text, QString id);
    void SetKeyboardPos(int x, int y, int w, int h);
    void VKeyboardHide(); // Emitted by nobody in the box; a page may.
    void sClose();

public slots:
    int windowId();
    void SetGeometry(int x, int y, int w, int h);
    void SendVirtualKeypress(const QString &text, const QString &id);
    void messageSend(int id, const QString &key, const QString &value);
    void messageSend(int id, const QString &key);
    void messageSend(int id);
    void close();
};
