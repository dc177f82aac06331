// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/web_page.h"

#include "platform/log_record.h"
#include "shell/dialogs/dialog_host.h"
#include "shell/pages/page_log.h"

#include <QCoreApplication>
#include <QNetworkRequest>
#include <QWebFrame>
#include <QWebSecurityOrigin>

namespace {

QString &userAgentOverride()
{
    static QString text;
    return text;
}

// Portals recognise the box by this text, to the letter.
const char boxUserAgent[] = "Mozilla/5.0 (Unknown; Linux) AppleWebKit/538.1 (KHTML, like Gecko) "
                            "MAG200 stbapp ver: 4 rev: 734 Mobile Safari/538.1";

const char downloadReason[] = "a download, or of a type that is not shown";

/** The engine gives up a chain of redirections as if a server had answered with status 400. */
bool isRedirectionLimit(const QWebPage::ErrorPageExtensionOption &failure)
{
    return failure.domain == QWebPage::Http && failure.error == 400 &&
           failure.errorString ==
               QCoreApplication::translate("QWebPage", "Redirection limit reached");
}

/** Who asks, for the viewer: the host, or nothing for pages of the box itself. */
QString originShown(const QWebFrame *frame) { return frame->securityOrigin().host(); }

} // namespace

ViewerPage::ViewerPage(DialogHost *dialogs, QObject *parent)
    : QWebPage(parent)
    , m_dialogs(dialogs)
{
    connect(this, &QWebPage::featurePermissionRequested, this,
            [this](QWebFrame *frame, Feature feature) {
                logIgnored(feature == Geolocation ? "a question for the position"
                                                  : "a question for notifications");
                setFeaturePermission(frame, feature, PermissionDeniedByUser);
            });
    connect(this, &QWebPage::printRequested, this, [] { logIgnored("print()"); });
    connect(this, &QWebPage::downloadRequested, this,
            [](const QNetworkRequest &request) { logRefusal(request.url(), downloadReason); });
    if (dialogs) {
        connect(mainFrame(), &QWebFrame::javaScriptWindowObjectCleared, dialogs,
                [this, dialogs] { dialogs->pageArrived(this); });
        connect(this, &QWebPage::loadFinished, dialogs,
                [this, dialogs] { dialogs->pageFinished(this); });
    }
}

bool ViewerPage::supportsExtension(Extension extension) const
{
    return extension != ChooseMultipleFilesExtension && QWebPage::supportsExtension(extension);
}

bool ViewerPage::extension(Extension extension, const ExtensionOption *option,
                           ExtensionReturn *output)
{
    if (extension == ErrorPageExtension && option) {
        const auto *failure = static_cast<const ErrorPageExtensionOption *>(option);
        // "Frame load interrupted by policy change": the engine would have handed it to a download.
        const bool download = failure->domain == WebKit && failure->error == 102;
        // What the engine refuses by itself never comes to the network as a failure.
        if (failure->domain == WebKit || isRedirectionLimit(*failure))
            logRefusal(failure->url, download ? downloadReason : failure->errorString);
        if (download)
            return false;
    }
    return QWebPage::extension(extension, option, output);
}

bool ViewerPage::shouldInterruptJavaScript()
{
    logRecord("script ended, it took too long:", mainFrame()->url());
    return true;
}

bool ViewerPage::acceptNavigationRequest(QWebFrame *frame, const QNetworkRequest &request,
                                         NavigationType type)
{
    if (!frame) {
        logIgnored("a new window for " + request.url().toDisplayString());
        return false;
    }
    return QWebPage::acceptNavigationRequest(frame, request, type);
}

QWebPage *ViewerPage::createWindow(WebWindowType)
{
    logIgnored("window.open()");
    return nullptr;
}

QString ViewerPage::chooseFile(QWebFrame *, const QString &)
{
    logIgnored("a choice of files");
    return QString();
}

void ViewerPage::javaScriptAlert(QWebFrame *frame, const QString &text)
{
    if (m_dialogs)
        m_dialogs->ask({Dialog::Kind::Alert, originShown(frame), text, QString()}, this);
}

bool ViewerPage::javaScriptConfirm(QWebFrame *frame, const QString &text)
{
    return m_dialogs &&
           m_dialogs->ask({Dialog::Kind::Confirm, originShown(frame), text, QString()}, this)
               .accepted;
}

bool ViewerPage::javaScriptPrompt(QWebFrame *frame, const QString &text, const QString &initial,
                                  QString *result)
{
    if (!m_dialogs)
        return false;
    const DialogAnswer answer =
        m_dialogs->ask({Dialog::Kind::Prompt, originShown(frame), text, initial}, this);
    if (answer.accepted && result)
        *result = answer.text;
    return answer.accepted;
}

QString QWebPagePriv::userAgentForUrl(const QUrl &) const
{
    return userAgentOverride().isEmpty() ? QString(boxUserAgent) : userAgentOverride();
}

void setUserAgentOverride(const QString &text)
{
    const QString header = "User-Agent: ";
    userAgentOverride() = text.startsWith(header) ? text.mid(header.size()) : text;
}
