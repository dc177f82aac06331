// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/** What kind of page the current view shows; the back keys mean something else in each. */
enum class PageMode { Portal = 0, Application = 1, Settings = 2 };

/** The kind of the page at a URL in fully encoded form. */
PageMode pageModeOf(const QString &encodedUrl);

/** Whether the page at this URL is the video application that the receiver opens itself. */
bool isVideoApplication(const QString &encodedUrl);
