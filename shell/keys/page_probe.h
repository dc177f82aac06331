// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "shell/keys/key_decision.h"

#include <QWebElement>

class QWebFrame;

/*
 * Questions of the key filter to the page. A missing element counts as not shown. GUI thread.
 */

/** Evaluated before a channel key: the portal tells gSTB its place, menu and time shift. */
extern const char portalStateScript[];

/** The element that has the focus, found depth first; a null element if none has it. */
QWebElement focusedElement(const QWebFrame &frame);

/** Whether one of the launcher's visible frames is the one that starts applications. */
bool launcherFrameShown(const QWebFrame &mainFrame);

/** Which of the portal's parts are shown. */
PortalParts portalParts(const QWebFrame &frame);
