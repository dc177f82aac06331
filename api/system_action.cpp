// SPDX-License-Identifier: Apache-2.0
#include "api/system_action.h"

#include <QLatin1String>
#include <QProcess>
#include <QRegularExpression>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

using Kind = SystemAction::Kind;

struct ActionPrefix
{
    const char *prefix;
    Kind kind;
};

// The ignored ones must not reach the box's script, which would carry them out.
constexpr ActionPrefix actionPrefixes[] = {
    {"graphicres", Kind::ScreenMode}, {"RebootDHCP", Kind::Ignored}, {"UpdateSW", Kind::Ignored},
    {"front_panel", Kind::Ignored},   {"tvsystem", Kind::Ignored},   {"reboot", Kind::Reboot},
};

// "graphicres" and one separator, whatever that is.
constexpr int screenModeStart = 11;

/** A process in a session of its own, so that one signal reaches the shell's children too. */
class SessionProcess : public QProcess
{
public:
    void killSession()
    {
        const auto group = static_cast<pid_t>(processId());
        if (group > 0)
            ::kill(-group, SIGKILL);
        kill();
        waitForFinished();
    }

protected:
    void setupChildProcess() override
    {
        ::setsid();
        // A front end that ends meanwhile takes the shell with it.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    }
};

} // namespace

SystemAction parseSystemAction(const QString &action)
{
    SystemAction result;
    for (const ActionPrefix &row : actionPrefixes) {
        if (!action.startsWith(QLatin1String(row.prefix)))
            continue;
        result.kind = row.kind;
        if (row.kind == Kind::ScreenMode) {
            result.screenModeText = action.mid(screenModeStart);
            result.screenMode = result.screenModeText.toInt();
        }
        break;
    }
    return result;
}

QString shellWord(const QString &path)
{
    static const QRegularExpression plain("^[A-Za-z0-9/._-]+$");
    if (plain.match(path).hasMatch())
        return path;
    return '\'' + QString(path).replace('\'', "'\\''") + '\'';
}

void runActionScript(const QString &script, const QString &action, int timeoutMs)
{
    SessionProcess process;
    // Nobody wants the output. Over a pipe, a flood of it would pile up in memory and could keep
    // the wait from noticing its time-out.
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    // The action stands where this shell takes its own name ($0); the script that it runs has its
    // path there and learns nothing of the action. Box scripts count on getting no argument.
    process.start("/bin/sh", {"-c", script, action}, QIODevice::ReadWrite);
    if (!process.waitForFinished(timeoutMs) && process.state() != QProcess::NotRunning)
        process.killSession();
}
