// SPDX-License-Identifier: Apache-2.0
/*
 * How documents are asked; which windows and frames there are is in pages.cpp.
 */
#include "desktop/driver/plugin/pages.h"

#include <QFile>
#include <QJsonDocument>
#include <QPointer>
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

void Pages::inject(QWebFrame *frame)
{
    const QString prefix = QString("%1.%2.").arg(randomText().left(12)).arg(++m_documents);
    static const QString values = resource("page_values.js");
    static const QString script = resource("page_script.js");
    static const QStringList commands = {
        resource("page_visibility.js"), resource("page_commands.js"),
        resource("page_interaction.js"), resource("page_files.js"), resource("page_names.js")};
    frame->evaluateJavaScript(script + '(' + literal(m_property) + ',' + values + '(' +
                              literal(prefix) + "));");
    const QString object = "(window[" + literal(m_property) + "]);";
    for (const QString &command : commands)
        frame->evaluateJavaScript(command + object);
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
    const QString rest = ',' + literal(located) + ',' + QString::number(ticket) + ',' +
                         (async ? "true" : "false") + ')';
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

QJsonObject Pages::takeKept(QWebFrame *frame, int ticket)
{
    const QString answer = ask(frame, QString(".takeKept(%1)").arg(ticket));
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
