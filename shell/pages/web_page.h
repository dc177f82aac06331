// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWebPage>

/** A portal or favourites page: identifies itself as the box that portals know. */
class QWebPagePriv : public QWebPage
{
    Q_OBJECT

public:
    using QWebPage::QWebPage;

    /** The same for every URL: the box's User-Agent, unless it is replaced. */
    QString userAgentForUrl(const QUrl &url) const override;
};

/**
 * Replaces the User-Agent of all portal and favourites pages; an empty text restores the box's
 * own. A leading "User-Agent: " (exactly so) is dropped. GUI thread.
 */
void setUserAgentOverride(const QString &text);
