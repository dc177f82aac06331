// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/portal_origins.h"

#include <QUrl>
#include <QWebSecurityOrigin>

namespace {

int ownPort(const QString &scheme)
{
    if (scheme == "http")
        return 80;
    return scheme == "https" ? 443 : 0;
}

/** The origin that an entry of the list is; empty if it says more or less than an origin. */
QString entryOrigin(const QString &entry)
{
    const QUrl url(entry, QUrl::StrictMode);
    const bool onlyOrigin = url.isValid() && url.userInfo().isEmpty() && !url.hasQuery() &&
                            !url.hasFragment() && (url.path().isEmpty() || url.path() == "/");
    // Anything that starts like a file but names a host would never match.
    return onlyOrigin && entry.contains("://") ? originText(url) : QString();
}

} // namespace

PortalOrigins::PortalOrigins(const QString &list)
    : m_limited(!list.trimmed().isEmpty())
{
    const QStringList entries = list.simplified().split(' ', Qt::SkipEmptyParts);
    for (const QString &entry : entries) {
        const QString origin = entryOrigin(entry);
        if (origin.isEmpty())
            m_ignored.append(entry);
        else
            m_origins.insert(origin);
    }
}

QString originText(const QString &scheme, const QString &host, int port)
{
    // QUrl gives a host its one spelling, of IPv6 addresses as well.
    QUrl url;
    url.setScheme(scheme);
    if (url.scheme() == "file")
        return host.isEmpty() ? "file://" : QString();
    url.setHost(host);
    const QString name = url.host(QUrl::FullyEncoded);
    if (url.scheme().isEmpty() || name.isEmpty())
        return QString();
    const QString text = url.scheme() + "://" + (name.contains(':') ? '[' + name + ']' : name);
    // The zone of an IPv6 address takes any character: with a bracket the text names another host.
    if (QUrl(text).host(QUrl::FullyEncoded) != name)
        return QString();
    return port <= 0 || port == ownPort(url.scheme()) ? text : text + ':' + QString::number(port);
}

QString originText(const QUrl &url) { return originText(url.scheme(), url.host(), url.port()); }

QString originText(const QWebSecurityOrigin &origin)
{
    return originText(origin.scheme(), origin.host(), origin.port());
}
