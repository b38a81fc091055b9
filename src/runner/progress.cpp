#include "runner/progress.h"

#include "report/texts.h"

#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace Torvix {

namespace {

bool isSet(const char* variable)
{
    return !qEnvironmentVariableIsEmpty(variable);
}

int terminalWidth()
{
    winsize size{};
    constexpr int usual = 80;
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

void show(const QString& text)
{
    std::fputs(text.toUtf8().constData(), stdout);
    std::fflush(stdout);
}

} // namespace

Progress::Progress(int planned, bool quiet) : m_planned(planned), m_quiet(quiet)
{
    const bool isTerminal = isatty(STDOUT_FILENO) && qEnvironmentVariable("TERM") != QLatin1String("dumb");
    m_live = isTerminal && !isSet("CI");
    const QString forced = qEnvironmentVariable("FORCE_COLOR");
    m_colour = forced.isEmpty() ? isTerminal && !isSet("NO_COLOR")
                                : forced != QLatin1String("0") && forced != QLatin1String("false");
}

void Progress::clearLine()
{
    if (m_lineShown)
        show(QStringLiteral("\r\x1b[K"));
    m_lineShown = false;
}

void Progress::caseStarted(const QString& name, int attempt)
{
    if (!m_live)
        return;
    clearLine();
    const QString retry = attempt > 1 ? QStringLiteral(" (attempt %1)").arg(attempt) : QString();
    const QString failed = m_failed > 0 ? QStringLiteral(", %1 failed").arg(m_failed) : QString();
    const QString line =
        QStringLiteral("[%1/%2%3] %4%5")
            .arg(QString::number(m_ended + 1), QString::number(m_planned), failed, name, retry);
    show(line.left(terminalWidth() - 1)); // a line that is broken cannot be taken away
    m_lineShown = true;
}

QString Progress::painted(const QString& text, CaseOutcome outcome) const
{
    if (!m_colour)
        return text;
    const char* code = outcome == CaseOutcome::Passed ? "32" : outcome == CaseOutcome::Skipped ? "33" : "31";
    return QStringLiteral("\x1b[%1m%2\x1b[0m").arg(QLatin1String(code), text);
}

void Progress::caseEnded(const QString& name, CaseOutcome outcome, qint64 durationMs, bool willRetry)
{
    clearLine();
    if (!willRetry) {
        ++m_ended;
        m_failed += isFine(outcome) ? 0 : 1;
    }
    if (m_quiet && isFine(outcome))
        return;
    show(QStringLiteral("%1  %2  %3%4\n")
             .arg(painted(caseOutcomeName(outcome).leftJustified(11), outcome), name,
                  durationText(durationMs), willRetry ? QStringLiteral("  (runs again)") : QString()));
}

void Progress::finish()
{
    clearLine();
}

} // namespace Torvix
