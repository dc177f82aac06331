// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/*
 * What a page is, told by its URL alone (case-sensitive). Any thread.
 */

/** What kind of page the current view shows; the back keys mean something else in each. */
enum class PageMode { Portal = 0, Application = 1, Settings = 2 };

/** The kind of the page at a URL in fully encoded form. */
PageMode pageModeOf(const QString &encodedUrl);

/** Whether the page at this URL (fully encoded) is the video application that the receiver opens.
 */
bool isVideoApplication(const QString &encodedUrl);

/** Whether a page is the launcher, which manages applications in frames of its own. */
bool isLauncher(const QString &url);
