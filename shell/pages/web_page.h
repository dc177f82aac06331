// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPointer>
#include <QWebPage>

class DialogHost;

/**
 * A page in front of a viewer who has a remote and nothing else: what it asks is asked by the
 * dialog host, and what such a viewer cannot answer has its answer here.
 */
class ViewerPage : public QWebPage
{
    Q_OBJECT

public:
    /** Without a host every dialog is answered at once, as Back would. */
    explicit ViewerPage(DialogHost *dialogs, QObject *parent = nullptr);

    /** There are no files of the viewer's to choose. */
    bool supportsExtension(Extension extension) const override;

    /** What can't be shown, and so would be stored, leaves the page on screen that was there. */
    bool extension(Extension extension, const ExtensionOption *option,
                   ExtensionReturn *output) override;

    /** A script that the engine finds too long ends. */
    bool shouldInterruptJavaScript() override;

protected:
    /** There is one page before the viewer, and so no window for another. */
    bool acceptNavigationRequest(QWebFrame *frame, const QNetworkRequest &request,
                                 NavigationType type) override;
    QWebPage *createWindow(WebWindowType type) override;

    QString chooseFile(QWebFrame *frame, const QString &suggested) override;
    void javaScriptAlert(QWebFrame *frame, const QString &text) override;
    bool javaScriptConfirm(QWebFrame *frame, const QString &text) override;
    bool javaScriptPrompt(QWebFrame *frame, const QString &text, const QString &initial,
                          QString *result) override;

private:
    QPointer<DialogHost> m_dialogs;
};

/** A portal or favourites page: identifies itself as the box that portals know. */
class QWebPagePriv : public ViewerPage
{
    Q_OBJECT

public:
    using ViewerPage::ViewerPage;

    /** The same for every URL: the box's User-Agent, unless it is replaced. */
    QString userAgentForUrl(const QUrl &url) const override;
};

/**
 * Replaces the User-Agent of all portal and favourites pages; an empty text restores the box's
 * own. A leading "User-Agent: " (exactly so) is dropped. GUI thread.
 */
void setUserAgentOverride(const QString &text);
