// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/plugin/pages.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QEvent>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QStackedWidget>
#include <QUuid>
#include <QWebFrame>
#include <QWebView>

Pages::Pages(QObject *parent)
    : QObject(parent)
    , m_property("vesprel" + QUuid::createUuid().toString(QUuid::Id128))
    , m_insecure(qEnvironmentVariableIsSet("VESPREL_DRIVER_INSECURE"))
{
    qApp->installEventFilter(this);
}

bool Pages::eventFilter(QObject *watched, QEvent *event)
{
    // Before a view is shown its page has run nothing yet.
    if (event->type() == QEvent::Polish || event->type() == QEvent::Show) {
        if (auto *view = qobject_cast<QWebView *>(watched))
            watchView(view);
    }
    if (event->type() == QEvent::ContextMenu) {
        // The page gets its event, but no menu of the engine's comes up to take the next input.
        auto *view = qobject_cast<QWebView *>(watched);
        if (view && m_names.contains(view)) {
            view->page()->swallowContextMenuEvent(static_cast<QContextMenuEvent *>(event));
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

QVector<QWebView *> Pages::views() const
{
    QVector<QWebView *> result;
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        const auto stacks = window->findChildren<QStackedWidget *>();
        for (const QStackedWidget *stack : stacks) {
            for (int index = 0; index < stack->count(); ++index) {
                auto *view = qobject_cast<QWebView *>(stack->widget(index));
                if (view && !m_closed.contains(view))
                    result += view;
            }
        }
    }
    return result;
}

QStringList Pages::handles()
{
    QStringList result;
    const auto allViews = views();
    for (QWebView *view : allViews)
        result += handleOf(view);
    return result;
}

QString Pages::shown()
{
    const auto allViews = views();
    for (QWebView *view : allViews) {
        const auto *stack = qobject_cast<QStackedWidget *>(view->parentWidget());
        if (stack && stack->currentWidget() == view)
            return handleOf(view);
    }
    return {};
}

QWebView *Pages::view(const QString &handle)
{
    const auto allViews = views();
    for (QWebView *view : allViews) {
        if (handleOf(view) == handle)
            return view;
    }
    return nullptr;
}

QString Pages::handleOf(QWebView *view)
{
    watchView(view);
    return m_names.value(view);
}

void Pages::watchView(QWebView *view)
{
    if (m_names.contains(view) || !qobject_cast<QStackedWidget *>(view->parentWidget()))
        return;
    const auto *stack = static_cast<QStackedWidget *>(view->parentWidget());
    m_names[view] = stack->indexOf(view) == 0 ? QString("portal")
                                              : QString("favourites-%1").arg(++m_favourites);
    connect(view, &QObject::destroyed, this, [this](QObject *gone) {
        m_names.remove(gone);
        m_loads.remove(gone);
    });
    QWebPage *page = view->page();
    QWebFrame *mainFrame = page->mainFrame();
    connect(page, &QWebPage::frameCreated, this, &Pages::watchFrame);
    connect(page, &QWebPage::consoleMessageReceived, this,
            [this, view](QWebPage::MessageSource source, QWebPage::MessageLevel level,
                         const QString &text, int line, const QString &url) {
                emit consoleMessage({{"window", m_names.value(view)},
                                     {"source", int(source)},
                                     {"level", int(level)},
                                     {"text", text},
                                     {"line", line},
                                     {"url", url}});
            });
    connect(mainFrame, &QWebFrame::loadStarted, this, [this, view] {
        Load &load = m_loads[view];
        load.running = true;
        load.committed = false;
        ++load.count;
    });
    connect(mainFrame, &QWebFrame::urlChanged, this,
            [this, view] { m_loads[view].committed = true; });
    connect(mainFrame, &QWebFrame::loadFinished, this, [this, view](bool ok) {
        Load &load = m_loads[view];
        load.running = false;
        load.committed = true;
        load.succeeded = ok;
    });
    if (m_insecure) {
        connect(page->networkAccessManager(), &QNetworkAccessManager::sslErrors, this,
                [](QNetworkReply *reply) { reply->ignoreSslErrors(); });
    }
    watchFrame(mainFrame);
    const auto children = mainFrame->childFrames();
    for (QWebFrame *child : children)
        watchFrame(child);
}

void Pages::watchFrame(QWebFrame *frame)
{
    connect(frame, &QWebFrame::javaScriptWindowObjectCleared, this,
            [this, frame] { inject(frame); });
    connect(frame, &QObject::destroyed, this, [this](QObject *gone) {
        m_names.remove(gone);
        m_seen.remove(gone);
    });
}

QWebFrame *Pages::frame(const QString &window, const QString &name)
{
    QWebView *owner = view(window);
    if (!owner)
        return nullptr;
    if (name.isEmpty())
        return owner->page()->mainFrame();
    QList<QWebFrame *> open = {owner->page()->mainFrame()};
    while (!open.isEmpty()) {
        QWebFrame *frame = open.takeFirst();
        if (m_names.value(frame) == name)
            return frame;
        open += frame->childFrames();
    }
    return nullptr;
}

QString Pages::nameOf(QWebFrame *frame)
{
    if (!frame->parentFrame())
        return {};
    QString &name = m_names[frame];
    if (name.isEmpty())
        name = QString("frame-%1").arg(++m_frames);
    return name;
}

bool Pages::isLoading(QWebView *view, bool eager) const
{
    const Load load = m_loads.value(view);
    return eager ? !load.committed : load.running;
}

bool Pages::lastLoadSucceeded(QWebView *view) const { return m_loads.value(view).succeeded; }

int Pages::loadCount(QWebView *view) const { return m_loads.value(view).count; }
