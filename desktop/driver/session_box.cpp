// SPDX-License-Identifier: Apache-2.0
/*
 * The box's own commands: its remote, its receiver, its log and its screen.
 */
#include "desktop/display/key_symbols.h"
#include "desktop/driver/arguments.h"
#include "desktop/driver/session.h"
#include "desktop/driver/webdriver_error.h"

#include <cmath>

namespace {

constexpr int mostPresses = 1000;
constexpr double answerTime = 2000; ///< ms for the receiver to answer a line of its console.

} // namespace

QJsonValue Session::pressRemoteKey(const CommandCall &call)
{
    const QString name = stringMember(call.parameters, "key");
    const int times = int(integerMember(call.parameters, "times", 1, mostPresses).value_or(1));
    const auto symbol = remoteKeySymbol(name);
    if (!symbol)
        failArgument("The remote has no key \"" + name + "\", only " + remoteKeyNames().join(", "));
    handlePrompts();
    if (*symbol == 0) {
        for (int count = 0; count < times; ++count)
            ask("pressSettings");
        return {};
    }
    const Place where = place();
    const quint8 code = m_box.display().keyFor(*symbol, false);
    for (int count = 0; count < times; ++count) {
        m_box.display().pressKey(code, true);
        m_box.display().pressKey(code, false);
        settle(where.window);
    }
    return {};
}

QJsonValue Session::tellReceiver(const CommandCall &call)
{
    const QString line = stringMember(call.parameters, "line");
    if (line.contains('\n') || line.trimmed() == "quit")
        failArgument("\"line\" is to be one line and not the end of the receiver");
    const qint64 before = m_box.records().receiverLineCount();
    if (!m_box.tellReceiver(line, deadlineAfter(answerTime)))
        fail("unknown error",
             "The receiver is gone or does not read.\n" + m_box.records().lastLines(20));
    // Whatever it says first is what came of the line, or of a page that was quicker.
    return m_box.records().waitForReceiver({""}, before, answerTime);
}

QJsonValue Session::takeCommands(const CommandCall &)
{
    QJsonArray commands;
    const auto lines = m_box.records().takeCommands();
    for (const QString &line : lines) {
        const bool own = line.startsWith("sent: ") || line.startsWith("dropped") ||
                         line.startsWith("connection ") || line.startsWith("serving ");
        if (!own)
            commands.append(line);
    }
    return commands;
}

QJsonValue Session::takeLog(const CommandCall &)
{
    return QJsonArray::fromStringList(m_box.records().takeLog());
}

QJsonValue Session::takePageMessages(const CommandCall &)
{
    static const QStringList levels = {"", "log", "warning", "error", "debug", "info"};
    QJsonArray result;
    const auto messages = m_box.records().takePageMessages();
    for (const QJsonValue &value : messages) {
        QJsonObject message = value.toObject();
        message["level"] = levels.value(message.value("level").toInt(), "log");
        // What scripts and the network fail with is not written with the console's functions.
        message["source"] = message.value("source").toInt() == 3 ? "console" : "page";
        result.append(message);
    }
    return result;
}

QJsonValue Session::screenPicture(const CommandCall &)
{
    const QByteArray picture = m_box.display().picture();
    if (picture.isEmpty())
        fail("unable to capture screen", "The display gave no picture.");
    return QString::fromLatin1(picture.toBase64());
}

QJsonValue Session::waitUntilPlaying(const CommandCall &call)
{
    const double time = numberMember(call.parameters, "timeout", 0, 1e9).value_or(10000);
    const qint64 from = m_box.records().receiverLineCount();
    if (!m_box.records().isPlaying() &&
        m_box.records().waitForReceiver({"sent: play start"}, from, time).isNull())
        fail("timeout", "Nothing played in time.");
    return {};
}
