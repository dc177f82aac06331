// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QUrl>

class QNetworkCookieJar;

/** The cookies of a document, HttpOnly ones included, in the form that clients read. */
QJsonArray cookiesOf(const QNetworkCookieJar &jar, const QUrl &url);

/** Stores a cookie whose members are complete and of their types. False if the jar refuses it. */
bool addCookie(QNetworkCookieJar &jar, const QUrl &url, const QJsonObject &cookie);

/** Deletes the document's cookies of a name, or all of them for a null name. */
void deleteCookies(QNetworkCookieJar &jar, const QUrl &url, const QString &name);
