// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/plugin/cookies.h"

#include <QDateTime>
#include <QHostAddress>
#include <QNetworkCookie>
#include <QNetworkCookieJar>

QJsonArray cookiesOf(const QNetworkCookieJar &jar, const QUrl &url)
{
    QJsonArray result;
    const QList<QNetworkCookie> cookies = jar.cookiesForUrl(url);
    for (const QNetworkCookie &cookie : cookies) {
        QJsonObject object{{"name", QString::fromUtf8(cookie.name())},
                           {"value", QString::fromUtf8(cookie.value())},
                           {"path", cookie.path()},
                           {"domain", cookie.domain()},
                           {"secure", cookie.isSecure()},
                           {"httpOnly", cookie.isHttpOnly()}};
        if (!cookie.isSessionCookie())
            object["expiry"] = cookie.expirationDate().toSecsSinceEpoch();
        result.append(object);
    }
    return result;
}

bool addCookie(QNetworkCookieJar &jar, const QUrl &url, const QJsonObject &cookie)
{
    QNetworkCookie result(cookie.value("name").toString().toUtf8(),
                          cookie.value("value").toString().toUtf8());
    result.setPath(cookie.value("path").toString("/"));
    result.setSecure(cookie.value("secure").toBool());
    result.setHttpOnly(cookie.value("httpOnly").toBool());
    if (cookie.contains("expiry"))
        result.setExpirationDate(
            QDateTime::fromSecsSinceEpoch(qint64(cookie.value("expiry").toDouble()), Qt::UTC));
    QString domain = cookie.value("domain").toString(url.host());
    // A domain that a client names is for the hosts below it too; one that it leaves out is not,
    // and an address has none.
    const bool isAddress = !QHostAddress(url.host()).isNull();
    if (cookie.contains("domain") && !isAddress && !domain.startsWith('.'))
        domain.prepend('.');
    result.setDomain(domain);
    return jar.insertCookie(result) || !result.isSessionCookie();
}

void deleteCookies(QNetworkCookieJar &jar, const QUrl &url, const QString &name)
{
    const QList<QNetworkCookie> cookies = jar.cookiesForUrl(url);
    for (const QNetworkCookie &cookie : cookies) {
        if (name.isNull() || cookie.name() == name.toUtf8())
            jar.deleteCookie(cookie);
    }
}
