// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class QNetworkAccessManager;
class QObject;
class QSslError;
class QUrl;
class QWebPage;

/*
 * What a portal's developer wants to read of a page: records of the log category "vesprel.page",
 * one line each, which a desktop has on and a box off unless its logging rules ask for them. GUI
 * thread.
 */

/** Writes records of what a page says on its console, and of errors that no script caught. */
void logConsoleOf(QWebPage *page);

/**
 * Writes records of requests that failed, and of what is wrong with certificates, as long as the
 * context lives.
 */
void logFailuresOf(QNetworkAccessManager *network, QObject *context);

/** Writes a record of a document that the engine does not load or show. */
void logRefusal(const QUrl &url, const QString &reason);

/** Writes a record of what a page asked for and a box with a remote does not have. */
void logIgnored(const QString &what);

/** What is wrong with the certificate of a server, in words and with what it says of itself. */
QString certificateFault(const QUrl &url, const QSslError &error);
