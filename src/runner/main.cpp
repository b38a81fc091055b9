#include "runner/runverb.h"

#include <QCoreApplication>

#include <cerrno>
#include <cstdio>
#include <cstring>

using namespace Torvix;

namespace {

int execute(const CommandLine& line)
{
    switch (line.verb) {
    case Verb::Help:
        std::fputs(qUtf8Printable(line.helpText), stdout);
        return ExitPassed;
    case Verb::Version:
        std::puts("torvixrunner " TORVIX_VERSION);
        return ExitPassed;
    case Verb::Run:
        return runVerb(line.run);
    case Verb::List:
        return listVerb(line.run);
    case Verb::Report:
        return reportVerb(line.report);
    case Verb::Inspect:
        return inspectVerb(line.inspect);
    case Verb::Init:
        return initVerb(line.init);
    case Verb::Doctor:
        return doctorVerb(line.doctor);
    }
    return ExitInternal;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QString error;
    const std::optional<CommandLine> line = parseCommandLine(QCoreApplication::arguments().mid(1), &error);
    const int code = line ? execute(*line) : fail(ExitUsage, error);
    // What was printed is lost when the output is a file on a full disk; a reader that has gone is none.
    if (std::fflush(stdout) != 0 && errno != EPIPE && code == ExitPassed)
        return fail(ExitInternal, QStringLiteral("The standard output cannot be written: %1")
                                      .arg(QString::fromLocal8Bit(std::strerror(errno))));
    return code;
}
