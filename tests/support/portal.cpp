// SPDX-License-Identifier: Apache-2.0
#include "tests/support/portal.h"

#include "enigma2/enigma2.h"
#include "platform/box_paths.h"
#include "tests/support/files.h"

#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QUrl>
#include <QWebFrame>
#include <QWebView>

const char tracingPage[] =
    "<script>"
    "var trace = [], stb = {profile: {}, player: {}, cur_place: ''}, key = {EXIT: 8, BACK: 0};"
    "function _debug(a, b) { trace.push('debug(' + a + (b ? ',' + b : '') + ')'); }"
    "var stbEvent = {"
    "  onEvent: function (code, params) {"
    "    trace.push('event(' + code + (params ? ',' + params : '') + ')'); },"
    "  onBroadcastMessage: function (id, text) {"
    "    trace.push('broadcast(' + id + ',' + text + ')'); }};"
    "function note(e) {"
    "  trace.push(e.type + '(' + (e.ctrlKey ? 'ctrl+' : '') + (e.altKey ? 'alt+' : '') +"
    "             (e.shiftKey ? 'shift+' : '') + e.keyCode + ')'); }"
    "document.addEventListener('keydown', note); document.addEventListener('keyup', note);"
    "</script>";

TemporaryRoot::TemporaryRoot() { BoxPaths::setRoot(m_folder.path()); }

QString TemporaryRoot::write(const QString &path, const QByteArray &content) const
{
    const QString full = m_folder.filePath(path);
    writeFile(full, content);
    return full;
}

Portal::Portal()
    : receiver(BoxPaths::receiverSocket())
{
    window.show();
    // Requests that a test leaves unanswered shall not cost it seconds.
    window.findChild<Enigma2 *>()->setReplyTimeout(500);
}

bool Portal::reachReceiver()
{
    const bool reached = QTest::qWaitFor([this] { return receiver.isConnected(); });
    receiver.clear();
    return reached;
}

void Portal::load(const QByteArray &body, const QString &name)
{
    const QString path = root.write("pages/" + name, "<!DOCTYPE html><html>" + body);
    QSignalSpy loaded(view(), &QWebView::loadFinished);
    window.setUrl(QUrl::fromLocalFile(path));
    if (!loaded.wait(30000))
        qFatal("the page did not load");
}

QVariant Portal::evaluate(const QString &script) const
{
    return view()->page()->mainFrame()->evaluateJavaScript(script);
}

QWebView *Portal::view() const { return qobject_cast<QWebView *>(stack()->currentWidget()); }

QStackedWidget *Portal::stack() const { return window.findChild<QStackedWidget *>(); }

QString Portal::trace() const { return evaluate("trace.join(' ')").toString(); }

void Portal::clearTrace() const { evaluate("trace = []"); }
