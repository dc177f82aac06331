// SPDX-License-Identifier: Apache-2.0
#include "objects/web_window.h"

#include "platform/log_record.h"

stbWebWindow::stbWebWindow(QObject *parent)
    : PortalObject(parent)
{
    logRecord("stbWebWindow", "()");
}

int stbWebWindow::windowId() { return loggedResult(1, "windowId", "():"); }

void stbWebWindow::SetGeometry(int x, int y, int w, int h)
{
    logRecord("SetGeometry", "():", x, y, w, h);
    emit SetKeyboardPos(x, y, w, h);
}

void stbWebWindow::SendVirtualKeypress(const QString &text, const QString &id)
{
    logRecord("SendVirtualKeypress", "():", text, id);
    emit OnVKey(text, id);
}

void stbWebWindow::messageSend(int id, const QString &key, const QString &value)
{
    logRecord("messageSend", "():", id, key, value);
}

void stbWebWindow::messageSend(int id, const QString &key) { messageSend(id, key, QString()); }

void stbWebWindow::messageSend(int id) { messageSend(id, QString(), QString()); }

void stbWebWindow::close()
{
    logRecord("close", "()");
    emit sClose();
}
