// SPDX-License-Identifier: Apache-2.0
/*
 * What the driver may ask about input, pictures and cookies.
 */
#include "desktop/driver/plugin/command_server.h"
#include "desktop/driver/plugin/cookies.h"
#include "desktop/driver/plugin/printing.h"
#include "desktop/driver/plugin/typing.h"

#include <QApplication>
#include <QBuffer>
#include <QDropEvent>
#include <QImage>
#include <QJsonArray>
#include <QMimeData>
#include <QNetworkAccessManager>
#include <QNetworkCookieJar>
#include <QPainter>
#include <QWebFrame>
#include <QWebView>
#include <QWheelEvent>

#include <algorithm>

// Of QtGui, as QtTest uses it: a key as it comes from the display.
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow *window, QEvent::Type type, int key,
                                    Qt::KeyboardModifiers modifiers, const QString &text,
                                    bool autorepeat, ushort count);

namespace {

QString base64Png(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    // Fast rather than small: it goes no further than this machine.
    image.save(&buffer, "PNG", 80);
    return QString::fromLatin1(bytes.toBase64());
}

} // namespace

CommandServer::Answer CommandServer::place(const Request &request)
{
    // The frame's corner in the view, by way of the elements that hold the frames.
    double x = 0;
    double y = 0;
    for (QWebFrame *frame = request.frame; frame->parentFrame(); frame = frame->parentFrame()) {
        QWebFrame *parent = frame->parentFrame();
        const QJsonObject holder =
            m_pages.call(parent, "frameElement", {parent->childFrames().indexOf(frame)});
        if (!holder.contains("value"))
            return holder;
        const QJsonArray corner =
            m_pages.call(parent, "frameOffset", {holder.value("value")}).value("value").toArray();
        x += corner.at(0).toDouble();
        y += corner.at(1).toDouble();
    }
    const QPoint origin = request.view->mapToGlobal(QPoint(int(x), int(y)));
    const QJsonObject size = m_pages.call(request.frame, "size", {});
    return value(QJsonObject{{"x", origin.x()},
                             {"y", origin.y()},
                             {"size", size.value("value")},
                             {"window", double(request.view->window()->winId())}});
}

CommandServer::Answer CommandServer::type(const Request &request)
{
    request.view->setFocus(Qt::OtherFocusReason);
    typeText(*request.view, request.params.value("text").toString());
    return value({});
}

CommandServer::Answer CommandServer::pressSettings(const Request &request)
{
    QWidget *window = request.view->window();
    for (const QEvent::Type step : {QEvent::KeyPress, QEvent::KeyRelease})
        qt_handleKeyEvent(window->windowHandle(), step, Qt::Key_Settings, Qt::NoModifier, {}, false,
                          1);
    return value({});
}

CommandServer::Answer CommandServer::scroll(const Request &request)
{
    const QPoint global(request.params.value("x").toInt(), request.params.value("y").toInt());
    // A notch of 120 units scrolls so many lines of 20 pixels in the engine.
    const int unitsPerPixel = std::max(1, 120 / (QApplication::wheelScrollLines() * 20));
    const QPoint delta =
        QPoint(-request.params.value("deltaX").toInt(), -request.params.value("deltaY").toInt()) *
        unitsPerPixel;
    for (const QPoint &step : {QPoint(delta.x(), 0), QPoint(0, delta.y())}) {
        if (step.isNull())
            continue;
        QWheelEvent event(request.view->mapFromGlobal(global), global, {}, step, Qt::NoButton,
                          QApplication::keyboardModifiers(), Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(request.view, &event);
    }
    return value({});
}

CommandServer::Answer CommandServer::dropFiles(const Request &request)
{
    const QJsonValue element = request.params.value("element");
    const QJsonArray paths = request.params.value("paths").toArray();
    const QJsonObject centre = m_pages.call(request.frame, "openDrop", {});
    const QJsonObject corner = place(request)->value("value").toObject();
    const QJsonArray offset = centre.value("value").toArray();
    const QPoint where =
        request.view->mapFromGlobal(QPoint(corner.value("x").toInt() + offset.at(0).toInt(),
                                           corner.value("y").toInt() + offset.at(1).toInt()));
    QMimeData files;
    QList<QUrl> urls;
    for (const QJsonValue &path : paths)
        urls += QUrl::fromLocalFile(path.toString());
    files.setUrls(urls);
    QDragEnterEvent enter(where, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(request.view, &enter);
    QDragMoveEvent move(where, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(request.view, &move);
    QDropEvent drop(where, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(request.view, &drop);
    return m_pages.call(request.frame, "takeDrop", {element, paths});
}

CommandServer::Answer CommandServer::touch(const Request &request)
{
    const QString step = request.params.value("step").toString();
    m_touchScreen.touch(
        *request.view, request.params.value("finger").toInt(),
        step == "down"   ? TouchScreen::Step::Down
        : step == "move" ? TouchScreen::Step::Move
                         : TouchScreen::Step::Up,
        QPoint(request.params.value("x").toInt(), request.params.value("y").toInt()));
    return value({});
}

CommandServer::Answer CommandServer::print(const Request &request)
{
    const QByteArray pdf = printToPdf(*request.frame, request.params);
    if (pdf.isEmpty())
        return QJsonObject{{"error", "invalid argument"}, {"message", "The paper has no room."}};
    return value(QString::fromLatin1(pdf.toBase64()));
}

CommandServer::Answer CommandServer::waitForMark(const Request &request)
{
    const int id = request.id;
    m_mark.wait(quint32(request.params.value("number").toDouble()), [this, id] {
        reply(id, {{"value", QJsonValue()}, {"prompt", !m_prompts.open().isEmpty()}});
    });
    return std::nullopt;
}

CommandServer::Answer CommandServer::picture(const Request &request)
{
    const QSize size = request.view->size();
    QRect part({}, size);
    if (request.params.contains("x")) {
        part =
            QRect(request.params.value("x").toInt(), request.params.value("y").toInt(),
                  request.params.value("width").toInt(), request.params.value("height").toInt()) &
            part;
    }
    if (part.isEmpty())
        return QJsonObject{{"error", "unable to capture screen"}, {"message", "Nothing is there."}};
    QImage image(part.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(-part.topLeft());
    request.view->render(&painter, {}, QRegion(QRect({}, size)), QWidget::DrawChildren);
    painter.end();
    return value(base64Png(image));
}

CommandServer::Answer CommandServer::cookies(const Request &request)
{
    const QNetworkAccessManager *network = request.view->page()->networkAccessManager();
    return value(cookiesOf(*network->cookieJar(), request.frame->url()));
}

CommandServer::Answer CommandServer::changeCookies(const Request &request)
{
    QNetworkCookieJar &jar = *request.view->page()->networkAccessManager()->cookieJar();
    const QUrl url = request.frame->url();
    if (request.params.contains("delete")) {
        deleteCookies(jar, url, request.params.value("delete").toString());
        return value({});
    }
    const QJsonObject cookie = request.params.value("cookie").toObject();
    if (url.host().isEmpty() || !url.scheme().startsWith("http"))
        return QJsonObject{{"error", "invalid cookie domain"},
                           {"message", "Documents of this kind have no cookies."}};
    QString domain = cookie.value("domain").toString(url.host());
    if (domain.startsWith('.'))
        domain.remove(0, 1);
    if (url.host() != domain && !url.host().endsWith('.' + domain))
        return QJsonObject{{"error", "invalid cookie domain"},
                           {"message", "The document is not of " + domain + '.'}};
    if (!addCookie(jar, url, cookie))
        return QJsonObject{{"error", "unable to set cookie"}, {"message", "The box refused it."}};
    return value({});
}
