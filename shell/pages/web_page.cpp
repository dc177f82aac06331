// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/web_page.h"

#include "platform/log_record.h"
#include "shell/dialogs/dialog_host.h"
#include "shell/pages/page_log.h"

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

/** Who asks, for the viewer: the host, or nothing for pages of the box itself. */
QString originShown(const QWebFrame *frame) { return frame->securityOrigin().host(); }

} // namespace

ViewerPage::ViewerPage(DialogHost *dialogs, QObject *parent)
    : QWebPage(parent)
    , m_dialogs(dialogs)
{
    connect(this, &QWebPage::featurePermissionRequested, this,
            [this](QWebFrame *frame, Feature feature) {
                setFeaturePermission(frame, feature, PermissionDeniedByUser);
            });
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
        // What the engine refuses by itself never comes to the network.
        if (failure->domain == WebKit)
            logRefusal(failure->url, failure->errorString);
        // "Frame load interrupted by policy change": the engine would have handed it to a download.
        if (failure->domain == WebKit && failure->error == 102)
            return false;
    }
    return QWebPage::extension(extension, option, output);
}

bool ViewerPage::shouldInterruptJavaScript()
{
    logRecord("script ended, it took too long:", mainFrame()->url());
    return true;
}

QString ViewerPage::chooseFile(QWebFrame *, const QString &) { return QString(); }

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
