#include "launcher/process/processend.h"

#include <QProcess>

#include <cstring>

#include <sys/wait.h>

namespace Torvix {

namespace {

/** "SIGKILL"; what the system says of a signal without a name (the real-time ones). */
QString signalName(int signal)
{
    const char* name = sigabbrev_np(signal);
    return name ? QStringLiteral("SIG") + QLatin1String(name) : QString::fromLocal8Bit(strsignal(signal));
}

} // namespace

ProcessEnd endOfStatus(int status)
{
    if (WIFEXITED(status))
        return {ProcessEnd::Exited, WEXITSTATUS(status)};
    return {ProcessEnd::Killed, WTERMSIG(status)};
}

ProcessEnd endOf(const QProcess& process)
{
    if (process.state() != QProcess::NotRunning)
        return {};
    // Of one that crashed the exit code is the signal.
    return {process.exitStatus() == QProcess::NormalExit ? ProcessEnd::Exited : ProcessEnd::Killed,
            process.exitCode()};
}

QString endText(const ProcessEnd& end)
{
    switch (end.kind) {
    case ProcessEnd::Exited:
        return QStringLiteral("exited with status %1").arg(end.code);
    case ProcessEnd::Killed:
        return QStringLiteral("was killed by signal %1 (%2)").arg(end.code).arg(signalName(end.code));
    case ProcessEnd::Quit:
        return QStringLiteral("quit");
    case ProcessEnd::Gone:
        return QStringLiteral("has gone");
    case ProcessEnd::Running:
        break;
    }
    return QStringLiteral("is running");
}

} // namespace Torvix
