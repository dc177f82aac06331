// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/page_kind.h"

PageMode pageModeOf(const QString &encodedUrl)
{
    if (encodedUrl.contains("vesprel_apps") || isVideoApplication(encodedUrl))
        return PageMode::Application;
    return encodedUrl.contains("external/settings") ? PageMode::Settings : PageMode::Portal;
}

bool isVideoApplication(const QString &encodedUrl)
{
    return encodedUrl.contains("external/youtube");
}

bool isLauncher(const QString &url)
{
    return url.contains("vesprel_launcher_apps/magcore-core-ministra");
}
