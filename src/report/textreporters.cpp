#include "report/reporters.h"

namespace Torvix {

namespace {

QString fullName(const CaseReport& testCase)
{
    return testCase.suite.isEmpty() ? testCase.name : testCase.suite + QLatin1Char('/') + testCase.name;
}

/** The last attempt, or an interrupted one for a case that never had any. */
AttemptReport lastAttempt(const CaseReport& testCase)
{
    return testCase.attempts.isEmpty() ? AttemptReport() : testCase.attempts.last();
}

/** A YAML 1.1 double-quoted scalar. */
QString yamlString(const QString& text)
{
    QString quoted = QStringLiteral("\"");
    for (const QChar c : text) {
        if (c == '"' || c == '\\')
            quoted += QLatin1Char('\\');
        if (c == '\n')
            quoted += QLatin1String("\\n");
        else if (c < ' ')
            quoted += QStringLiteral("\\x%1").arg(int(c.unicode()), 2, 16, QLatin1Char('0'));
        else
            quoted += c;
    }
    return quoted + QLatin1Char('"');
}

/** A description must not hold what TAP reads as a directive, nor a line end. */
QString tapDescription(QString text)
{
    return text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('#'), QLatin1String("\\#"))
        .replace(QLatin1Char('\n'), QLatin1Char(' '));
}

QString gitHubText(QString text)
{
    return text.replace(QLatin1Char('%'), QLatin1String("%25"))
        .replace(QLatin1Char('\r'), QLatin1String("%0D"))
        .replace(QLatin1Char('\n'), QLatin1String("%0A"));
}

QString gitHubProperty(const QString& text)
{
    return gitHubText(text)
        .replace(QLatin1Char(':'), QLatin1String("%3A"))
        .replace(QLatin1Char(','), QLatin1String("%2C"));
}

QString skipReason(const AttemptReport& attempt)
{
    for (const ResultEntry& entry : attempt.entries) {
        if (entry.type == ResultType::Skip)
            return entry.message;
    }
    return {};
}

QString tapDiagnostics(const AttemptReport& attempt)
{
    QString yaml = QStringLiteral("  ---\n  outcome: %1\n  duration_ms: %2\n")
                       .arg(caseOutcomeName(attempt.outcome))
                       .arg(attempt.durationMs);
    if (const ResultEntry* failure = attempt.firstFailure()) {
        yaml += QStringLiteral("  message: %1\n").arg(yamlString(failure->message));
        if (!failure->detail.isEmpty())
            yaml += QStringLiteral("  detail: %1\n").arg(yamlString(failure->detail));
        if (!failure->file.isEmpty())
            yaml += QStringLiteral("  at:\n    file: %1\n    line: %2\n")
                        .arg(yamlString(failure->file), QString::number(failure->line));
    }
    return yaml + QStringLiteral("  ...\n");
}

constexpr int shownCharacters = 4000;

/** For a terminal: without what would steer it, and not longer than people read. */
QString forTerminal(const QString& text)
{
    QString shown;
    for (const QChar c : text.left(shownCharacters)) {
        const bool isControl = (c < ' ' && c != '\n' && c != '\t') || (c >= QChar(0x7f) && c < QChar(0xa0));
        shown +=
            isControl ? QStringLiteral("\\x%1").arg(int(c.unicode()), 2, 16, QLatin1Char('0')) : QString(c);
    }
    if (text.size() > shownCharacters)
        shown += QStringLiteral("\n[%1 more characters are in the result stream]")
                     .arg(text.size() - shownCharacters);
    return shown;
}

QString indented(const QString& text, const QString& indent)
{
    return indent + forTerminal(text).replace(QLatin1Char('\n'), QLatin1Char('\n') + indent) +
           QLatin1Char('\n');
}

class Painter
{
public:
    explicit Painter(bool colour) : m_colour(colour) {}
    QString red(const QString& text) const { return paint("31", text); }
    QString green(const QString& text) const { return paint("32", text); }
    QString yellow(const QString& text) const { return paint("33", text); }
    QString bold(const QString& text) const { return paint("1", text); }

private:
    QString paint(const char* code, const QString& text) const
    {
        return m_colour ? QStringLiteral("\x1b[%1m%2\x1b[0m").arg(QLatin1String(code), text) : text;
    }
    bool m_colour;
};

QString summarisedFailure(const CaseReport& testCase, int number, const Painter& paint,
                          const ReporterOptions& options)
{
    const AttemptReport attempt = lastAttempt(testCase);
    QString text = QStringLiteral("%1) %2 %3\n")
                       .arg(QString::number(number), paint.bold(fullName(testCase)),
                            paint.red(caseOutcomeName(attempt.outcome)));
    for (const ResultEntry& entry : attempt.entries) {
        if (!isFailure(entry.type))
            continue;
        text += indented(entry.message, QStringLiteral("   "));
        if (!entry.detail.isEmpty())
            text += indented(entry.detail, QStringLiteral("     "));
        if (!entry.file.isEmpty())
            text += QStringLiteral("   at %1\n")
                        .arg(positionText(relativeTo(options.baseFolder, entry.file), entry.line));
    }
    for (const ApplicationReport& application : attempt.applications)
        text += QStringLiteral("   application %1: %2\n")
                    .arg(forTerminal(application.name), forTerminal(application.ending));
    return text + QLatin1Char('\n');
}

} // namespace

QByteArray renderTap(const RunReport& report, const ReporterOptions&)
{
    QString tap = QStringLiteral("TAP version 14\n1..%1\n").arg(report.cases.size());
    int number = 0;
    for (const CaseReport& testCase : report.cases) {
        const AttemptReport attempt = lastAttempt(testCase);
        const bool fine = attempt.outcome == CaseOutcome::Passed || attempt.outcome == CaseOutcome::Skipped;
        tap += QStringLiteral("%1 %2 - %3")
                   .arg(fine ? QStringLiteral("ok") : QStringLiteral("not ok"))
                   .arg(++number)
                   .arg(tapDescription(fullName(testCase)));
        if (attempt.outcome == CaseOutcome::Skipped)
            tap += QStringLiteral(" # SKIP ") + tapDescription(skipReason(attempt));
        tap += QLatin1Char('\n');
        if (testCase.isFlaky())
            tap += QStringLiteral("# flaky: passed in attempt %1\n").arg(testCase.attempts.size());
        if (!fine)
            tap += tapDiagnostics(attempt);
    }
    if (!report.complete)
        tap += QStringLiteral("Bail out! The run has no end.\n");
    return tap.toUtf8();
}

QByteArray renderGitHub(const RunReport& report, const ReporterOptions& options)
{
    QString text;
    const auto annotate = [&](const char* level, const CaseReport& testCase, const ResultEntry& entry) {
        QStringList properties;
        if (!entry.file.isEmpty()) {
            properties +=
                QStringLiteral("file=") + gitHubProperty(relativeTo(options.baseFolder, entry.file));
            if (entry.line > 0)
                properties += QStringLiteral("line=%1").arg(entry.line);
        }
        properties += QStringLiteral("title=") + gitHubProperty(fullName(testCase));
        const QString message =
            entry.detail.isEmpty() ? entry.message : entry.message + QLatin1Char('\n') + entry.detail;
        text += QStringLiteral("::%1 %2::%3\n")
                    .arg(QLatin1String(level), properties.join(QLatin1Char(',')), gitHubText(message));
    };
    for (const CaseReport& testCase : report.cases) {
        const bool flaky = testCase.isFlaky();
        for (const AttemptReport& attempt : testCase.attempts) {
            // What a retry mended is shown, but does not look like a failure.
            const bool superseded = &attempt != &testCase.attempts.last();
            for (const ResultEntry& entry : attempt.entries) {
                if (isFailure(entry.type) && (!superseded || flaky))
                    annotate(superseded ? "warning" : "error", testCase, entry);
                else if (entry.type == ResultType::Warning && !superseded)
                    annotate("warning", testCase, entry);
            }
            if (attempt.outcome == CaseOutcome::Interrupted && !superseded && !attempt.firstFailure()) {
                ResultEntry end;
                end.message = QStringLiteral("The run ended before this test case did.");
                annotate("error", testCase, end);
            }
        }
    }
    return text.toUtf8();
}

QByteArray renderSummary(const RunReport& report, const ReporterOptions& options)
{
    const Painter paint(options.colour);
    QString text;
    int number = 0;
    for (const CaseReport& testCase : report.cases) {
        const CaseOutcome outcome = testCase.outcome();
        if (outcome != CaseOutcome::Passed && outcome != CaseOutcome::Skipped)
            text += summarisedFailure(testCase, ++number, paint, options);
    }
    for (const CaseReport& testCase : report.cases) {
        if (testCase.isFlaky())
            text += paint.yellow(QStringLiteral("flaky: %1 passed in attempt %2\n")
                                     .arg(fullName(testCase), QString::number(testCase.attempts.size())));
    }
    QStringList counts;
    const auto add = [&counts](int count, const char* what) {
        if (count > 0)
            counts += QStringLiteral("%1 %2").arg(count).arg(QLatin1String(what));
    };
    add(report.count(CaseOutcome::Passed), "passed");
    add(report.count(CaseOutcome::Failed), "failed");
    add(report.count(CaseOutcome::Error), "with errors");
    add(report.count(CaseOutcome::Skipped), "skipped");
    add(report.count(CaseOutcome::Interrupted), "interrupted");
    add(report.flakyCount(), "flaky");
    add(report.notRunCount(), "not run");
    if (counts.isEmpty())
        counts += QStringLiteral("no test cases");
    const QString total = counts.join(QLatin1String(", "));
    text += report.failed() ? paint.red(total) : paint.green(total);
    text += QStringLiteral(" in %1\n").arg(durationText(report.durationMs));
    for (const QString& problem : report.problems)
        text += QStringLiteral("result stream, %1\n").arg(problem);
    return text.toUtf8();
}

} // namespace Torvix
