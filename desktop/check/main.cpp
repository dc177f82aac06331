// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/check_options.h"
#include "desktop/check/checks.h"
#include "desktop/check/report.h"
#include "platform/program_version.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSaveFile>

#include <cstdio>

namespace {

constexpr int nothingChecked = 2;

int failWith(const QString &text)
{
    std::fprintf(stderr, "vesprel-receiver-check: %s\n", qPrintable(text));
    return nothingChecked;
}

/** Makes all checks, as long as the receiver and the time are there. */
void runChecks(Walk &walk, TapReport &report)
{
    for (const Check &check : allChecks()) {
        QElapsedTimer timer;
        timer.start();
        ReportLine line = {check.name, check.section, check.run(walk), 0};
        line.milliseconds = timer.elapsed();
        if (walk.isOver()) {
            report.bailOut("The time limit is over.");
            return;
        }
        report.add(line);
        if (!line.result.faults.isEmpty() && !walk.session()) {
            report.bailOut(takesNoConnection);
            return;
        }
    }
}

int check(const CheckOptions &options)
{
    if (!options.junitFile.isEmpty() && !QSaveFile(options.junitFile).open(QIODevice::WriteOnly))
        return failWith("Cannot write " + options.junitFile);
    Walk walk(QFile::encodeName(options.socket), QDeadlineTimer(options.timeLimit));
    // What else is wrong with the connections is for the first check to tell.
    if (const QString fault = walk.restart(); !walk.isReached())
        return failWith(QString("No receiver at %1: %2").arg(options.socket, fault));
    walk.url = options.url;
    walk.sendsAll = options.sendsAll;
    TapReport report(stdout);
    runChecks(walk, report);
    report.finish();
    if (!options.junitFile.isEmpty() &&
        !writeJunit(options.junitFile, report.lines(), report.cutShort()))
        return failWith("Cannot write " + options.junitFile);
    return report.hasFailed() ? 1 : 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QString help;
    const CheckOptions options = parseCheckOptions(QCoreApplication::arguments(), help);
    if (options.wantsHelp) {
        std::printf("%s", qPrintable(help));
        return 0;
    }
    if (options.wantsVersion) {
        std::printf("%s\n", qPrintable(programVersion("vesprel-receiver-check")));
        return 0;
    }
    if (!options.failure.isEmpty())
        return failWith(options.failure + " (see --help)");
    return check(options);
}
