// SPDX-License-Identifier: Apache-2.0
#include "desktop/script/live_box.h"

#include "desktop/display/key_symbols.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

constexpr int boxRetryMs = 20;
const char portalHandle[] = "portal"; ///< The name that the plugin gives it.

BoxAnswer failedWith(const QString &text) { return {text, {}, false}; }

QString valueText(const QJsonValue &value)
{
    if (value.isString())
        return value.toString();
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.mid(1, list.size() - 2));
}

bool isTruthy(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Bool: return value.toBool();
    case QJsonValue::Double: return value.toDouble() != 0.0;
    case QJsonValue::String: return !value.toString().isEmpty();
    case QJsonValue::Array:
    case QJsonValue::Object: return true;
    case QJsonValue::Null:
    case QJsonValue::Undefined: break;
    }
    return false;
}

} // namespace

LiveBox::LiveBox(ProgramLink &link, QObject *parent)
    : QObject(parent)
    , m_link(link)
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(boxRetryMs);
    connect(&m_retry, &QTimer::timeout, this, [this] { m_attempt(); });
}

LiveBox::~LiveBox() = default;

void LiveBox::giveUp()
{
    m_retry.stop();
    m_link.giveUp();
}

void LiveBox::attempt(const Attempt &what)
{
    m_attempt = what;
    m_obstacle.clear();
    m_attempt();
}

void LiveBox::waitFor(const QString &obstacle)
{
    m_obstacle = obstacle;
    m_retry.start();
}

bool LiveBox::openDisplay()
{
    if (!m_display)
        m_display = Display::open(qEnvironmentVariable("DISPLAY"), Display::Keyboard::Kept);
    return m_display != nullptr;
}

void LiveBox::askState(const QString &window, const ProgramLink::Answer &answer)
{
    m_obstacle = "the program does not answer; a script of the page may run for ever";
    m_link.ask("state", window, {}, [this, answer](const QJsonObject &state) {
        m_obstacle.clear();
        answer(state.value("value").toObject());
    });
}

void LiveBox::whenLoaded(const std::function<void(const QString &window)> &use)
{
    if (!m_link.isReady()) {
        waitFor(m_link.isListening() ? "the program has not started"
                                     : "the program was started without --control");
        return;
    }
    m_obstacle = "the program does not answer; a script of the page may run for ever";
    m_link.ask("windows", {}, {}, [this, use](const QJsonObject &windows) {
        const QString shown = windows.value("value").toObject().value("shown").toString();
        askState(shown, [this, use, shown](const QJsonObject &state) {
            const QString url = state.value("url").toString();
            m_hasPortal = m_hasPortal || (!url.isEmpty() && url != "about:blank");
            if (!m_hasPortal)
                waitFor("no portal has been loaded");
            else if (state.value("loading").toBool())
                waitFor(url + " is still loading");
            else
                use(shown);
        });
    });
}

void LiveBox::pressKey(const QString &name, const Done &done)
{
    const quint32 symbol = remoteKeySymbol(name).value_or(0);
    if (symbol != 0 && !openDisplay()) {
        done(failedWith("there is no display to press keys on"));
        return;
    }
    attempt([this, symbol, done] {
        whenLoaded([this, symbol, done](const QString &window) {
            if (symbol != 0)
                pressSymbol(symbol, done);
            else
                m_link.ask("pressSettings", window, {},
                           [done](const QJsonObject &) { done(BoxAnswer()); });
        });
    });
}

void LiveBox::pressSymbol(quint32 symbol, const Done &done)
{
    const Display::Focus focus = m_display->focus();
    const bool isOwn =
        focus.windowClass.compare(QCoreApplication::applicationName(), Qt::CaseInsensitive) == 0;
    // A person's other windows must not be typed into.
    if (!isOwn && !focus.windowClass.startsWith("vesprel", Qt::CaseInsensitive)) {
        waitFor(focus.windowClass.isEmpty()
                    ? "no window has the keyboard"
                    : QString("a window of \"%1\" has the keyboard").arg(focus.windowClass));
        return;
    }
    const quint8 code = m_display->keyFor(symbol, false);
    m_display->pressKey(code, true);
    m_display->pressKey(code, false);
    if (isOwn) {
        // Our own screen sees the key in this event loop.
        QTimer::singleShot(boxRetryMs, this, [done] { done(BoxAnswer()); });
        return;
    }
    m_display->mark(focus.window, ++m_mark);
    m_obstacle = "the program has not seen the key; a script of the page may run for ever";
    m_link.ask("waitForMark", {}, {{"number", double(m_mark)}},
               [done](const QJsonObject &) { done(BoxAnswer()); });
}

void LiveBox::evaluate(const QString &expression, const Done &done)
{
    attempt([this, expression, done] {
        whenLoaded([this, expression, done](const QString &window) {
            m_obstacle = "the page has not answered";
            m_link.ask("script", window, {{"body", "return (" + expression + "\n);"}},
                       [this, done](const QJsonObject &answer) { useValue(answer, done); });
        });
    });
}

void LiveBox::useValue(const QJsonObject &answer, const Done &done)
{
    m_obstacle.clear();
    const QString error = answer.value("error").toString();
    if (error == "blocked")
        waitFor("the page shows a dialog");
    else if (error == "loading" || error == "no such window")
        waitFor("the page is still loading");
    else if (!error.isEmpty())
        done(failedWith(answer.value("message").toString()));
    else
        done({{}, valueText(answer.value("value")), isTruthy(answer.value("value"))});
}

void LiveBox::reload(const std::function<void()> &trigger, const Done &done)
{
    attempt([this, trigger, done] {
        whenLoaded([this, trigger, done](const QString &) {
            askState(portalHandle, [this, trigger, done](const QJsonObject &state) {
                const int loads = state.value("loads").toInt();
                trigger();
                attempt([this, loads, done] { watchReload(loads, done); });
            });
        });
    });
}

void LiveBox::watchReload(int loadsBefore, const Done &done)
{
    askState(portalHandle, [this, loadsBefore, done](const QJsonObject &state) {
        if (state.value("loads").toInt() == loadsBefore || state.value("loading").toBool())
            waitFor("the portal is still loading");
        else if (state.value("succeeded").toBool())
            done(BoxAnswer());
        else
            done(failedWith(state.value("url").toString() + " did not load"));
    });
}

BoxAnswer LiveBox::savePicture(const QString &file)
{
    const QByteArray picture = openDisplay() ? m_display->picture() : QByteArray();
    if (picture.isEmpty())
        return failedWith("there is no display to take a picture of");
    QFile output(file);
    // A short write to a full disk is one that failed.
    if (!output.open(QIODevice::WriteOnly) || output.write(picture) != picture.size() ||
        !output.flush())
        return failedWith(QString("%1: %2").arg(file, output.errorString()));
    return {};
}
