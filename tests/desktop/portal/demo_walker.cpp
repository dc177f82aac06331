// SPDX-License-Identifier: Apache-2.0
#include "tests/desktop/portal/demo_walker.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QTest>

namespace {

constexpr int patience = 5000; ///< ms for anything to come.
constexpr int pause = 30;      ///< ms between two looks.
constexpr int stillTime = 400; ///< ms in which a moving picture has moved.
constexpr double lightRow =
    0.43; ///< Where the test picture's light runs, as a share of the height.
constexpr double barsRow = 0.60;

QByteArray json(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/** Calls a test until it is true or the time is over. */
template <typename Test>
bool comes(const Test &test)
{
    QElapsedTimer timer;
    timer.start();
    while (!test()) {
        if (timer.elapsed() > patience)
            return false;
        QTest::qSleep(pause);
    }
    return true;
}

bool isBlack(const QImage &screen)
{
    for (int y = 0; y < screen.height(); y += 16) {
        for (int x = 0; x < screen.width(); x += 16) {
            if (qGray(screen.pixel(x, y)) > 8)
                return false;
        }
    }
    return true;
}

/** The left bar is grey, the right one blue. */
bool hasBars(const QImage &screen)
{
    const int y = int(screen.height() * barsRow);
    const QColor left = screen.pixelColor(screen.width() / 50, y);
    const QColor right = screen.pixelColor(screen.width() - screen.width() / 50, y);
    return left.red() > 150 && left.blue() > 150 && right.red() < 50 && right.blue() > 150;
}

QImage lightOf(const QImage &screen)
{
    return screen.copy(0, int(screen.height() * lightRow), screen.width(), 1);
}

} // namespace

void DemoWalker::open(const QString &url)
{
    m_client.script("gSTB.Stop()");
    m_client.post("url", json({{"url", url}}));
    m_client.get("vesprel/commands");
    m_client.get("vesprel/messages");
    m_commands.clear();
}

void DemoWalker::press(const QString &key, int times)
{
    if (key.size() > 1 || key.at(0).isDigit()) {
        m_client.post("vesprel/key", json({{"key", key}, {"times", times}}));
        return;
    }
    const QJsonObject down{{"type", "keyDown"}, {"value", key}};
    const QJsonObject up{{"type", "keyUp"}, {"value", key}};
    const QJsonObject keyboard{
        {"type", "key"}, {"id", "keyboard"}, {"actions", QJsonArray{down, up}}};
    for (int count = 0; count < times; ++count)
        m_client.post("actions", json({{"actions", QJsonArray{keyboard}}}));
}

bool DemoWalker::isTold(const QString &text)
{
    const QJsonArray commands = m_client.get("vesprel/commands").value.toArray();
    for (const QJsonValue &command : commands)
        m_commands += command.toString();
    for (const QString &command : qAsConst(m_commands)) {
        if (command.startsWith(text))
            return true;
    }
    return false;
}

/** The text of the first element that a viewer sees; null if there is none. */
QString DemoWalker::textAt(const QString &selector)
{
    const QString script = R"(
        var found = document.querySelectorAll(')" +
                           selector + R"('), i, box, top;
        for (i = 0; i < found.length; i++) {
            box = found[i].getBoundingClientRect();
            top = box.width && box.height && document.elementFromPoint(
                (box.left + box.right) / 2, Math.min((box.top + box.bottom) / 2, innerHeight - 1));
            if (top && (found[i].contains(top) || top.contains(found[i]) && getComputedStyle(found[i]).visibility !== 'hidden'))
                return ' ' + found[i].textContent + ' ' + (found[i].value || '');
        }
        return null;)";
    return m_client.script(script).value.toString();
}

QImage DemoWalker::screen()
{
    const QByteArray picture = m_client.get("vesprel/screen").value.toString().toLatin1();
    return QImage::fromData(QByteArray::fromBase64(picture));
}

QString DemoWalker::judgeScreen(const QString &kind)
{
    // Without a compositor nothing of the video is seen.
    if (kind != "black" && QStandardPaths::findExecutable("picom").isEmpty())
        return {};
    bool isRight = false;
    if (kind == "black")
        isRight = comes([this] { return isBlack(screen()); });
    if (kind == "bars")
        isRight = comes([this] { return hasBars(screen()); });
    const QImage before = lightOf(screen());
    if (kind == "moving")
        isRight = comes([this, &before] { return lightOf(screen()) != before; });
    if (kind == "still") {
        QTest::qSleep(stillTime);
        isRight = lightOf(screen()) == before;
    }
    return isRight ? QString() : "the screen is not " + kind;
}

QString DemoWalker::walk(const WalkStep &step)
{
    const QStringList keys = QString(step.keys).split(", ", Qt::SkipEmptyParts);
    if (!keys.isEmpty()) {
        m_client.get("vesprel/commands");
        m_commands.clear();
    }
    for (const QString &key : keys)
        press(key.section('*', 0, 0), qMax(1, key.section('*', 1).toInt()));

    const QString told = step.told;
    if (!told.isEmpty() && !told.startsWith('!') && !comes([&] { return isTold(told); }))
        return "the receiver got no \"" + told + "\", but: " + m_commands.join(", ");
    const QString where = step.where;
    const QString shows = step.shows;
    QString seen;
    if (where == "screen")
        seen = judgeScreen(shows);
    else if (where.startsWith('!') && !comes([&] { return textAt(where.mid(1)).isNull(); }))
        seen = where.mid(1) + " is seen";
    else if (!where.isEmpty() && !where.startsWith('!')) {
        QString text;
        if (!comes([&] { return (text = textAt(where)).contains(shows) && !text.isNull(); }))
            seen = where + " shows: " + text;
    }
    if (seen.isEmpty() && told.startsWith('!') && isTold(told.mid(1)))
        return "the receiver got: " + m_commands.join(", ");
    return seen;
}

void DemoWalker::tellReceiver(const QString &line)
{
    m_client.post("vesprel/receiver", json({{"line", line}}));
}

void DemoWalker::switchTo(const QString &kind)
{
    comes([&] {
        const QJsonArray windows = m_client.get("window/handles").value.toArray();
        for (const QJsonValue &window : windows) {
            if (window.toString().startsWith(kind))
                return m_client.post("window", json({{"handle", window}})).status == 200;
        }
        return false;
    });
}

bool DemoWalker::waitForLog(const QString &record)
{
    return comes([&] {
        return QJsonDocument(m_client.get("vesprel/log").value.toArray())
            .toJson()
            .contains(record.toUtf8());
    });
}

QString DemoWalker::errors()
{
    QStringList result;
    const QJsonArray messages = m_client.get("vesprel/messages").value.toArray();
    for (const QJsonValue &message : messages) {
        if (message.toObject().value("level") == QLatin1String("error"))
            result += message.toObject().value("text").toString();
    }
    return result.join("; ");
}
