// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/plugin/pages.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QEvent>
#include <QFile>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QStackedWidget>
#include <QUuid>
#include <QWebFrame>
#include <QWebView>

namespace {

const char frameKey[] = "frame-075b-4da1-b6ba-e579c2d3230a";
const char windowKey[] = "window-fcc6-11e5-b4f8-330a88ab9d7f";

QString randomText() { return QUuid::createUuid().toString(QUuid::Id128); }

QString resource(const char *name)
{
    QFile file(QString(":/vesprel-driver/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("The driver's plugin lacks %s", name);
    return QString::fromUtf8(file.readAll());
}

/** A text as a JavaScript literal. */
QString literal(const QString &text)
{
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    QString result = QString::fromUtf8(list.mid(1, list.size() - 2));
    // Line ends for JavaScript, but not for JSON.
    result.replace(QChar(0x2028), "\\u2028");
    return result.replace(QChar(0x2029), "\\u2029");
}

QString literal(const QJsonArray &list)
{
    return literal(QString::fromUtf8(QJsonDocument(list).toJson(QJsonDocument::Compact)));
}

QWebFrame *frameAt(QWebFrame *mainFrame, const QJsonArray &path)
{
    QWebFrame *frame = mainFrame;
    for (const QJsonValue &index : path)
        frame = frame ? frame->childFrames().value(index.toInt()) : nullptr;
    return frame;
}

QJsonArray pathTo(QWebFrame *frame)
{
    QJsonArray path;
    for (; frame->parentFrame(); frame = frame->parentFrame())
        path.prepend(frame->parentFrame()->childFrames().indexOf(frame));
    return path;
}

QJsonObject failureOf(const char *code, const QString &message)
{
    return {{"error", code}, {"message", message}};
}

} // namespace

Pages::Pages(QObject *parent)
    : QObject(parent)
    , m_property("vesprel" + randomText())
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
                if (auto *view = qobject_cast<QWebView *>(stack->widget(index)))
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

void Pages::inject(QWebFrame *frame)
{
    const QString prefix = QString("%1.%2.").arg(randomText().left(12)).arg(++m_documents);
    static const QString script = resource("page_script.js");
    static const QString commands = resource("page_commands.js");
    static const QString interaction = resource("page_interaction.js");
    frame->evaluateJavaScript(script + "(" + literal(m_property) + "," + literal(prefix) + ");");
    const QString object = "(window[" + literal(m_property) + "]);";
    frame->evaluateJavaScript(commands + object);
    frame->evaluateJavaScript(interaction + object);
}

QString Pages::ask(QWebFrame *frame, const QString &expression)
{
    const QString object = "window[" + literal(m_property) + "]";
    const QString text = object + "?" + object + expression + ":null";
    const QPointer<QWebFrame> guard(frame);
    QVariant answer = frame->evaluateJavaScript(text);
    // A script may remove the frame that it runs in.
    if (guard && answer.type() != QVariant::String) {
        // The document is one whose window object was not cleared under our eyes.
        inject(frame);
        answer = frame->evaluateJavaScript(text);
    }
    return answer.toString();
}

QJsonObject Pages::call(QWebFrame *frame, const QString &command, const QJsonArray &arguments)
{
    QJsonObject failure;
    const QJsonArray located = locateWindows(frame, arguments, failure).toArray();
    if (!failure.isEmpty())
        return failure;
    const QPointer<QWebFrame> guard(frame);
    const QString answer = ask(frame, ".call(" + literal(command) + "," + literal(located) + ")");
    return guard ? read(frame, answer) : failureOf("no such window", "The frame is gone.");
}

QJsonObject Pages::run(QWebFrame *frame, const QString &body, const QJsonArray &arguments,
                       int ticket, bool async)
{
    QJsonObject failure;
    const QJsonArray located = locateWindows(frame, arguments, failure).toArray();
    if (!failure.isEmpty())
        return failure;
    const QString rest =
        QString(",%1,%2,%3)").arg(literal(located)).arg(ticket).arg(async ? "true" : "false");
    const QPointer<QWebFrame> guard(frame);
    QString answer = ask(frame, ".run(" + literal(body) + rest);
    if (guard && answer.startsWith("{\"error\":\"needs function\"")) {
        // The page's policy forbids functions made of texts, but not what the engine is given.
        answer = ask(frame, ".run(function(){" + body + "\n}" + rest);
    }
    if (!guard)
        return failureOf("javascript error", "The document was left while the script ran.");
    return answer.isEmpty() ? QJsonObject() : read(frame, answer);
}

QJsonObject Pages::poll(QWebFrame *frame, int ticket)
{
    const QString answer = ask(frame, QString(".poll(%1)").arg(ticket));
    return answer.isEmpty() ? QJsonObject() : read(frame, answer);
}

QJsonObject Pages::read(QWebFrame *frame, const QString &answer)
{
    QJsonParseError error = {};
    QJsonObject result = QJsonDocument::fromJson(answer.toUtf8(), &error).object();
    if (error.error != QJsonParseError::NoError)
        return failureOf("javascript error", "The page gave no value: " + error.errorString());
    QSet<QString> &seen = m_seen[frame];
    const auto ids = result.take("ids").toArray();
    for (const QJsonValue &id : ids)
        seen.insert(id.toString());
    if (result.value("error") == QLatin1String("missing node")) {
        return seen.contains(result.value("message").toString())
                   ? failureOf("stale element reference", "The element's document is gone.")
                   : failureOf("no such element", "No element of this page has that reference.");
    }
    if (result.contains("value"))
        result["value"] = nameWindows(frame, result.value("value"));
    return result;
}

QJsonValue Pages::nameWindows(QWebFrame *frame, const QJsonValue &value)
{
    if (value.isArray()) {
        QJsonArray list = value.toArray();
        for (int index = 0; index < list.size(); ++index) {
            if (list[index].isObject() || list[index].isArray())
                list[index] = nameWindows(frame, list[index]);
        }
        return list;
    }
    if (!value.isObject())
        return value;
    QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        const bool reference = member.key() == frameKey || member.key() == windowKey;
        if (reference && member.value().isObject()) {
            QWebFrame *target = frameAt(frame->page()->mainFrame(),
                                        member.value().toObject().value("path").toArray());
            auto *view = qobject_cast<QWebView *>(frame->page()->view());
            if (target)
                member.value() = target->parentFrame() ? nameOf(target) : handleOf(view);
        } else if (member.value().isObject() || member.value().isArray()) {
            member.value() = nameWindows(frame, member.value());
        }
    }
    return object;
}

QJsonValue Pages::locateWindows(QWebFrame *frame, const QJsonValue &value, QJsonObject &failure)
{
    if (value.isArray()) {
        QJsonArray list;
        const QJsonArray items = value.toArray();
        for (const QJsonValue &item : items)
            list.append(locateWindows(frame, item, failure));
        return list;
    }
    if (!value.isObject())
        return value;
    QJsonObject object = value.toObject();
    auto *view = qobject_cast<QWebView *>(frame->page()->view());
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (member.key() == frameKey) {
            QWebFrame *target = this->frame(handleOf(view), member.value().toString());
            if (!target || !target->parentFrame())
                failure = failureOf("no such frame", "No frame has that reference.");
            else
                member.value() = QJsonObject{{"path", pathTo(target)}};
        } else if (member.key() == windowKey) {
            if (member.value().toString() != handleOf(view))
                failure = failureOf("no such window", "No window that this page sees is that one.");
            else
                member.value() = QJsonObject{{"path", QJsonArray()}};
        } else {
            member.value() = locateWindows(frame, member.value(), failure);
        }
    }
    return object;
}
