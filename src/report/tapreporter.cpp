#include "report/reporters.h"
#include "report/texts.h"

namespace Torvix {

namespace {

/** Readers take a file line by line, and a diagnostic is one. */
constexpr int longestText = 100'000;

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
QString description(const QString& text)
{
    return cutEnd(text, longestText)
        .replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('#'), QLatin1String("\\#"))
        .replace(QLatin1Char('\n'), QLatin1Char(' '));
}

QString diagnostics(const AttemptSummary& attempt, const std::optional<ResultEntry>& failure)
{
    QString yaml = QStringLiteral("  ---\n  outcome: %1\n  duration_ms: %2\n")
                       .arg(caseOutcomeName(attempt.outcome))
                       .arg(attempt.durationMs);
    const auto add = [&yaml](const char* key, const QString& text) {
        if (!text.isEmpty())
            yaml +=
                QStringLiteral("  %1: %2\n").arg(QLatin1String(key), yamlString(cutEnd(text, longestText)));
    };
    if (failure) {
        add("message", headline(*failure));
        add("detail", findings(*failure));
        if (!failure->file.isEmpty())
            yaml += QStringLiteral("  at:\n    file: %1\n    line: %2\n")
                        .arg(yamlString(failure->file), QString::number(failure->line));
    }
    return yaml + QStringLiteral("  ...\n");
}

/** Why an attempt was skipped. */
class SkipReason : public EventVisitor
{
public:
    void result(const ResultEntry& entry) override
    {
        if (entry.type == ResultType::Skip && text.isNull())
            text = entry.message;
    }
    QString text;
};

} // namespace

void writeTap(const RecordedRun& run, const ReporterOptions&, QIODevice* out)
{
    TextOutput tap(out);
    const RunSummary& summary = run.summary();
    tap << QStringLiteral("TAP version 14\n1..%1\n").arg(summary.cases.size());
    int number = 0;
    for (const CaseSummary& testCase : summary.cases) {
        const AttemptSummary attempt = testCase.lastAttempt();
        tap << (isFine(attempt.outcome) ? "ok " : "not ok ") << QByteArray::number(++number) << " - "
            << description(testCase.fullName());
        if (attempt.outcome == CaseOutcome::Skipped) {
            SkipReason reason;
            run.visit(attempt, reason);
            tap << " # SKIP " << description(reason.text);
        }
        tap << "\n";
        if (testCase.isFlaky())
            tap << QStringLiteral("# flaky: passed in attempt %1\n").arg(testCase.attempts.size());
        if (!isFine(attempt.outcome))
            tap << diagnostics(attempt, run.decisiveFailure(attempt));
    }
    if (!summary.complete)
        tap << "Bail out! The run has no end.\n";
}

} // namespace Torvix
