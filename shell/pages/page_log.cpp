// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/page_log.h"

#include "platform/one_line.h"

#include <QDateTime>
#include <QLoggingCategory>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslError>
#include <QUrl>
#include <QWebElement>
#include <QWebFrame>
#include <QWebPage>

namespace {

#ifdef VESPREL_DESKTOP
constexpr QtMsgType fromLevel = QtDebugMsg;
#else
constexpr QtMsgType fromLevel = QtFatalMsg;
#endif

Q_LOGGING_CATEGORY(pageLog, "vesprel.page", fromLevel)

// More of a page's text than this nobody reads in a log.
constexpr int longestText = 4000;
constexpr int longestAddress = 500;

/** An address to read, without a password that it may hold. */
QString shown(const QUrl &url) { return oneLine(url.toDisplayString(), longestAddress); }

QString place(const QString &source, int line)
{
    // What the engine itself says, of a server that does not let this page in above all.
    if (source.isEmpty() && line == 0)
        return QString();
    // What the box evaluates in a page, to tell it of events above all, belongs to no file.
    if (source.isEmpty() || source == "undefined")
        return " (in a statement of the box)";
    return QString(" (%1:%2)").arg(shown(QUrl(source)), QString::number(line));
}

void warn(const QString &record) { qCWarning(pageLog, "%s", qUtf8Printable(record)); }

const char *levelName(QWebPage::MessageLevel level)
{
    switch (level) {
    case QWebPage::LogMessageLevel: return "log";
    case QWebPage::WarningMessageLevel: return "warn";
    case QWebPage::ErrorMessageLevel: return "error";
    case QWebPage::DebugMessageLevel: return "debug";
    case QWebPage::InfoMessageLevel: return "info";
    }
    return "log";
}

void logConsole(QWebPage::MessageSource source, QWebPage::MessageLevel level, const QString &text,
                int line, const QString &url)
{
    QString origin = QString("page %1: ").arg(levelName(level));
    if (source == QWebPage::JSMessageSource && level == QWebPage::ErrorMessageLevel)
        origin = "script error: ";
    else if (source == QWebPage::ConsoleAPIMessageSource)
        origin = QString("console.%1: ").arg(levelName(level));
    const QString record = origin + oneLine(text, longestText) + place(url, line);
    switch (level) {
    case QWebPage::WarningMessageLevel:
    case QWebPage::ErrorMessageLevel: warn(record); break;
    case QWebPage::DebugMessageLevel: qCDebug(pageLog, "%s", qUtf8Printable(record)); break;
    default: qCInfo(pageLog, "%s", qUtf8Printable(record)); break;
    }
}

void logFailure(const QNetworkReply &reply)
{
    if (reply.error() == QNetworkReply::NoError ||
        reply.error() == QNetworkReply::OperationCanceledError)
        return;
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QString phrase = reply.attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
    const QString reason =
        status >= 400 ? QString("%1 %2").arg(status).arg(phrase) : reply.errorString();
    logRefusal(reply.url(), reason);
}

/** The engine passes over modules without a word, and what bundlers make of a portal is one. */
void logModulesOf(const QWebFrame &frame)
{
    if (!pageLog().isWarningEnabled() || !frame.findFirstElement("script[nomodule]").isNull())
        return;
    const QWebElementCollection modules = frame.findAllElements("script[type=module]");
    for (const QWebElement &module : modules) {
        const QString source = module.attribute("src");
        const QUrl at = source.isEmpty() ? frame.url() : frame.baseUrl().resolved(QUrl(source));
        warn("not run: " + shown(at) + ": a script of type module, which the engine does not know");
    }
}

QString joined(const QStringList &texts) { return oneLine(texts.join(", ")); }

QString utcDay(const QDateTime &time) { return time.toUTC().toString("yyyy-MM-dd hh:mm 'UTC'"); }

} // namespace

QString certificateFault(const QUrl &url, const QSslError &error)
{
    const QSslCertificate certificate = error.certificate();
    QString detail;
    switch (error.error()) {
    case QSslError::CertificateExpired:
        detail = "; it was valid until " + utcDay(certificate.expiryDate());
        break;
    case QSslError::CertificateNotYetValid:
        detail = "; it is valid from " + utcDay(certificate.effectiveDate()) +
                 ", and the clock here says " + utcDay(QDateTime::currentDateTimeUtc());
        break;
    case QSslError::HostNameMismatch: {
        const QStringList names = certificate.subjectAlternativeNames().values();
        detail =
            "; it is for " +
            joined(names.isEmpty() ? certificate.subjectInfo(QSslCertificate::CommonName) : names);
        break;
    }
    case QSslError::UnableToGetLocalIssuerCertificate:
    case QSslError::UnableToVerifyFirstCertificate:
        detail =
            "; it was issued by " + joined(certificate.issuerInfo(QSslCertificate::CommonName));
        break;
    default: break;
    }
    return QString("certificate of %1:%2: %3%4")
        .arg(url.host(), QString::number(url.port(443)), error.errorString(), detail);
}

void logRefusal(const QUrl &url, const QString &reason)
{
    warn("not loaded: " + shown(url) + ": " + oneLine(reason, longestText));
}

void logIgnored(const QString &what) { warn("ignored: " + oneLine(what, longestText)); }

void logConsoleOf(QWebPage *page)
{
    QObject::connect(page, &QWebPage::consoleMessageReceived, page, &logConsole);
    QObject::connect(page, &QWebPage::loadFinished, page,
                     [page] { logModulesOf(*page->mainFrame()); });
}

void logFailuresOf(QNetworkAccessManager *network, QObject *context)
{
    QObject::connect(network, &QNetworkAccessManager::sslErrors, context,
                     [](QNetworkReply *reply, const QList<QSslError> &errors) {
                         for (const QSslError &error : errors)
                             warn(certificateFault(reply->url(), error));
                     });
    QObject::connect(network, &QNetworkAccessManager::finished, context,
                     [](QNetworkReply *reply) { logFailure(*reply); });
}
