// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/portal_object.h"

#include <QString>

/**
 * Window management as portals know it. The box runs one browser window, so most requests are
 * accepted and dropped; the favourites page and the focused field's place go to the window.
 */
class stbWindowMgr : public PortalObject
{
    Q_OBJECT

public:
    using PortalObject::PortalObject;

signals:
    void WebFavor(QString url, int unknown);

    /** Answered within the emission, so it needs a direct connection. */
    void GetFocusPos(int &x, int &y, int &w, int &h);

public slots:
    void InitWebWindow(const QString &, const QString &) {}
    void raiseWebWindow() {}
    void openWebFace(const QString &) {}
    void openWebWindow(const QString &) {}
    void LoadUrl(const QString &) {}
    void windowHide(int) {}
    void windowShow(int) {}
    void showPortalWindow() {}
    void openWebFavorites(const QString &url, int unknown);
    bool IsWebWindowExist() { return true; }
    QString GetFocusedInputInfo();
};
