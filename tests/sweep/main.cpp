#include "sweep/sweep.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>
#include <cstring>

using namespace Torvix::Testing;

static const char* const usage =
    "usage: torvixsweep [--platform NAME] [--stderr] PROGRAM...\n"
    "\n"
    "Starts each program with the agent, reads every property of every object and every class, finds\n"
    "each object by its real name, and ends the program. One line a program, and one for each fault.\n"
    "\n"
    "  --platform NAME  QT_QPA_PLATFORM of the programs (default: offscreen)\n"
    "  --stderr         show what the programs wrote to the standard error stream\n"
    "  --help           this text\n"
    "\n"
    "Exit status: 0 no fault, 1 faults, 4 wrong usage. A program without a Qt 5 window is no fault.\n";

static bool report(const SweepTarget& target, bool showErrors)
{
    QElapsedTimer timer;
    timer.start();
    const SweepResult result = sweep(target);
    const QByteArray name = target.program.toLocal8Bit();
    if (!result.wasStarted) {
        std::printf("NONE %s: %s\n", name.constData(),
                    result.faults.value(0).section(QLatin1Char('\n'), 0, 0).toLocal8Bit().constData());
        std::fflush(stdout);
        return true;
    }
    std::printf("%s %s: %d objects (%d visible), %d properties, %d classes with %d methods, %lld ms\n",
                result.faults.isEmpty() ? "GOOD" : "BAD ", name.constData(), result.objects,
                result.visibleObjects, result.properties, result.classes, result.methods, timer.elapsed());
    for (const QString& fault : result.faults)
        std::printf("     %s\n", fault.toLocal8Bit().constData());
    if (showErrors && !result.errorOutput.isEmpty())
        std::printf("     stderr: %s\n", result.errorOutput.toLocal8Bit().constData());
    std::fflush(stdout);
    return result.faults.isEmpty();
}

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    SweepTarget target;
    bool showErrors = false;
    bool good = true;
    bool any = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0) {
            std::fputs(usage, stdout);
            return 0;
        }
        if (std::strcmp(argv[i], "--stderr") == 0) {
            showErrors = true;
        } else if (std::strcmp(argv[i], "--platform") == 0 && i + 1 < argc) {
            target.platform = QString::fromLocal8Bit(argv[++i]);
        } else if (argv[i][0] == '-') {
            std::fputs(usage, stderr);
            return 4;
        } else {
            any = true;
            target.program = QString::fromLocal8Bit(argv[i]);
            good = report(target, showErrors) && good;
        }
    }
    if (!any) {
        std::fputs(usage, stderr);
        return 4;
    }
    return good ? 0 : 1;
}
