// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

class QUrl;
class QWebSecurityOrigin;

/**
 * The origins whose pages get the box's objects, as a box maker lists them: scheme://host:port,
 * separated by blanks; the scheme's own port may be left out; "file://" stands for local files. An
 * empty list sets no limit. Values; any thread.
 */
class PortalOrigins
{
public:
    explicit PortalOrigins(const QString &list);

    /** Whether only listed origins get the objects. True also where no entry was understood. */
    bool areLimited() const { return m_limited; }

    /** Whether a page of this origin gets the objects. Opaque origins are never listed. */
    bool allow(const QString &origin) const { return !m_limited || m_origins.contains(origin); }

    /** Entries that are no origin: with a path, a user, without a scheme, ... */
    QStringList ignored() const { return m_ignored; }

private:
    bool m_limited;
    QSet<QString> m_origins;
    QStringList m_ignored;
};

/**
 * An origin in one spelling: lower case, ASCII, no port that the scheme has anyway (0 and -1 are
 * such), "file://" for files. Empty for an opaque origin, one without a scheme or, files apart,
 * without a host that its text names.
 */
QString originText(const QString &scheme, const QString &host, int port);

/** The same of a URL, whatever its user, path and query. */
QString originText(const QUrl &url);

/** The same of a document. */
QString originText(const QWebSecurityOrigin &origin);
