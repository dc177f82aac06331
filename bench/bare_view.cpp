// SPDX-License-Identifier: Apache-2.0
// The least that shows a page with the same engine: bench_bare_view URL. What it costs is not ours.
#include <QApplication>
#include <QUrl>
#include <QWebView>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QWebView view;
    view.setUrl(QUrl(application.arguments().value(1)));
    view.showFullScreen();
    return QApplication::exec();
}
