// SPDX-License-Identifier: Apache-2.0
/*
 * What the driver may ask about windows.
 */
#include "desktop/driver/plugin/command_server.h"

#include <QJsonArray>
#include <QScreen>
#include <QStackedWidget>
#include <QUrl>
#include <QWebView>

#include <algorithm>

namespace {

constexpr int smallest = 64; ///< px: the least size of the window, and the least part to be seen.

QJsonObject error(const char *code, const QString &message)
{
    return {{"error", code}, {"message", message}};
}

QStackedWidget *stackOf(QWebView *view)
{
    return qobject_cast<QStackedWidget *>(view->parentWidget());
}

} // namespace

CommandServer::Answer CommandServer::windows(const Request &)
{
    return value(QJsonObject{{"handles", QJsonArray::fromStringList(m_pages.handles())},
                             {"shown", m_pages.shown()}});
}

CommandServer::Answer CommandServer::openWindow(const Request &request)
{
    QStackedWidget *stack = stackOf(request.view);
    QWidget *before = stack->currentWidget();
    const int count = stack->count();
    // As the box opens its favourites, over those that are there, only that the window of the
    // client stays in front.
    stack->setCurrentIndex(count - 1);
    QMetaObject::invokeMethod(request.view->window(), "WinOpenWebFavorites",
                              Q_ARG(QString, "about:blank"), Q_ARG(int, 0));
    auto *opened = qobject_cast<QWebView *>(stack->widget(count));
    stack->setCurrentWidget(before);
    if (!opened)
        return error("unsupported operation", "The box opened no second window.");
    return value(m_pages.handleOf(opened));
}

CommandServer::Answer CommandServer::closeWindow(const Request &request)
{
    if (m_pages.handles().size() == 1)
        return value(QJsonArray());
    QStackedWidget *stack = stackOf(request.view);
    m_prompts.acceptAll(true);
    if (stack->indexOf(request.view) == 0) {
        // The box cannot be without a portal: it stays, blank, and is no window of the client's.
        request.view->load(QUrl("about:blank"));
        m_pages.close(request.view);
    } else {
        stack->setCurrentWidget(request.view);
        QMetaObject::invokeMethod(request.view->window(), "WinCloseWebFavorites");
    }
    m_prompts.acceptAll(false);
    return value(QJsonArray::fromStringList(m_pages.handles()));
}

CommandServer::Answer CommandServer::selectWindow(const Request &request)
{
    stackOf(request.view)->setCurrentWidget(request.view);
    request.view->setFocus(Qt::OtherFocusReason);
    return value({});
}

CommandServer::Answer CommandServer::arrange(const Request &request)
{
    QWidget *window = request.view->window();
    QWebPage *page = request.view->page();
    if (request.params.value("hide").toBool()) {
        // Nothing on the box's screen shows minimized windows; its pages are told all the same.
        page->setVisibilityState(QWebPage::VisibilityStateHidden);
        window->hide();
        return value({});
    }
    page->setVisibilityState(QWebPage::VisibilityStateVisible);
    const QRect screen = window->screen()->geometry();
    QRect box = request.params.value("fill").toBool() ? screen : window->geometry();
    const auto member = [&request](const char *name, int fallback, int low, int high) {
        // Not toInt(), which knows no fractions.
        const double given = request.params.value(QLatin1String(name)).toDouble(fallback);
        return int(std::min<double>(std::max<double>(given, low), high));
    };
    box.setWidth(member("width", box.width(), smallest, screen.width()));
    box.setHeight(member("height", box.height(), smallest, screen.height()));
    // A part of it stays on the screen.
    box.moveLeft(member("x", box.x(), smallest - box.width(), screen.width() - smallest));
    box.moveTop(member("y", box.y(), smallest - box.height(), screen.height() - smallest));
    window->show();
    window->setGeometry(box);
    // The pane of the pages has a size of its own.
    stackOf(request.view)->parentWidget()->resize(window->size());
    return value({});
}
