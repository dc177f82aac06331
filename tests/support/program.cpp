// SPDX-License-Identifier: Apache-2.0
#include "tests/support/program.h"

#include "platform/box_paths.h"
#include "tests/support/files.h"

#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTest>
#include <QUrl>

namespace {

QByteArray frame(int type, const QByteArray &payload)
{
    const auto word = [](int value) {
        return QByteArray::number(value, 16).rightJustified(8, '0');
    };
    return "3ade68b1" + word(type) + word(payload.size()) + payload.toHex();
}

QString urlOf(const QString &page) { return QUrl::fromLocalFile(page).toString(); }

} // namespace

QByteArray BareScreen::missing()
{
    for (const char *tool : {"Xvfb", "xdotool"}) {
        if (QStandardPaths::findExecutable(tool).isEmpty())
            return QByteArray("needs ") + tool;
    }
    return QByteArray();
}

BareScreen::BareScreen()
{
    // Without a reset after its last client: one that connects in that moment hangs or is refused.
    m_server.start(
        "Xvfb", {"-displayfd", "1", "-screen", "0", "1280x720x24", "-nolisten", "tcp", "-noreset"});
    QByteArray number;
    while (!number.endsWith('\n') && m_server.waitForReadyRead())
        number += m_server.readAllStandardOutput();
    if (!number.endsWith('\n'))
        qFatal("no X server");
    m_display = ":" + number.trimmed();
}

BareScreen::~BareScreen()
{
    m_server.terminate();
    m_server.waitForFinished();
}

void BareScreen::press(const QString &key) const
{
    QProcess tool;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DISPLAY", m_display);
    tool.setProcessEnvironment(environment);
    tool.start("xdotool", {"key", key});
    if (!tool.waitForFinished() || tool.exitCode() != 0)
        qFatal("no key %s", qPrintable(key));
}

ProgramOnScreen::ProgramOnScreen()
    : receiver(BoxPaths::receiverSocket())
{
}

ProgramOnScreen::~ProgramOnScreen()
{
    m_program.terminate();
    if (!m_program.waitForFinished())
        m_program.kill();
}

void ProgramOnScreen::start(const char *program, const QString &page)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DISPLAY", m_screen.display());
    environment.insert("QT_QPA_PLATFORM", "xcb");
    environment.insert("VESPREL_ROOT", BoxPaths::root());
    environment.insert("Q_VESPREL_PORTAL", urlOf(page));
    m_program.setProcessEnvironment(environment);
    m_program.setProcessChannelMode(QProcess::MergedChannels);
    m_program.start(program, QStringList());
    if (!says("finishLoading true"))
        qFatal("the program does not start:\n%s", m_log.constData());
}

void ProgramOnScreen::announce(const QString &page)
{
    receiver.send(frame(1000, urlOf(page).toUtf8()));
}

bool ProgramOnScreen::says(const QByteArray &text, int timeout)
{
    const bool said = QTest::qWaitFor(
        [&] {
            m_log += m_program.readAll();
            return m_log.contains(text);
        },
        timeout);
    if (said)
        m_log = m_log.mid(m_log.indexOf(text) + text.size());
    return said;
}

bool ProgramOnScreen::isRunning() const { return m_program.state() == QProcess::Running; }

bool ProgramOnScreen::hasLoaded(const QByteArray &library) const
{
    return contentOf(QString("/proc/%1/maps").arg(m_program.processId())).contains(library);
}
