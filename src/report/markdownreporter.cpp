#include "report/reporters.h"
#include "report/texts.h"

namespace Torvix {

namespace {

/** GitHub shows nothing of a summary that is longer than 1 MiB. */
constexpr qint64 longestReport = 900'000;
constexpr int longestText = 4000;

/** Text between other text: nothing in it is markup. */
QString inlineText(const QString& text)
{
    static const QString special = QStringLiteral("\\`*_{}[]()<>#+-.!|~&@");
    QString escaped;
    for (const QChar c : text) {
        if (special.contains(c))
            escaped += QLatin1Char('\\');
        escaped += c == '\n' || c == '\r' ? QChar(' ') : c;
    }
    return escaped;
}

/** A code block, whose fence is longer than every run of backticks in it (CommonMark 4.5). */
QString codeBlock(const QString& text, const char* language)
{
    QString fence = QStringLiteral("```");
    while (text.contains(fence))
        fence += QLatin1Char('`');
    return QStringLiteral("%1%2\n%3\n%1\n\n").arg(fence, QLatin1String(language), text);
}

/** What made one attempt fail. */
class FailureText : public EventVisitor
{
public:
    explicit FailureText(const ReporterOptions& options) : m_options(options) {}

    void result(const ResultEntry& entry) override
    {
        if (!isFailure(entry.type) || text.size() > 10 * longestText)
            return;
        text += inlineText(cutEnd(headline(entry), longestText));
        if (!entry.file.isEmpty())
            text +=
                QStringLiteral("  \nat %1")
                    .arg(inlineText(positionText(relativeTo(m_options.baseFolder, entry.file), entry.line)));
        text += QLatin1String("\n\n");
        if (!entry.detail.isEmpty())
            text += codeBlock(cutEnd(entry.detail, longestText), "");
        if (!entry.difference.isEmpty())
            text += codeBlock(cutEnd(entry.difference, longestText), "diff");
    }

    QString text;

private:
    const ReporterOptions& m_options;
};

} // namespace

void writeMarkdown(const RecordedRun& run, const ReporterOptions& options, QIODevice* out)
{
    const RunSummary& summary = run.summary();
    TextOutput text(out);
    text << QStringLiteral("### %1 %2\n\n%3 in %4\n\n")
                .arg(summary.failed() ? QStringLiteral("\u274c") : QStringLiteral("\u2705"),
                     inlineText(summary.name), countsText(summary), durationText(summary.durationMs));
    qint64 left = longestReport;
    int leftOut = 0;
    for (const CaseSummary& testCase : summary.cases) {
        if (isFine(testCase.outcome()))
            continue;
        FailureText failure(options);
        run.visit(testCase.lastAttempt(), failure);
        const QByteArray section =
            QStringLiteral("#### %1 %2\n\n%3")
                .arg(inlineText(testCase.fullName()), caseOutcomeName(testCase.outcome()), failure.text)
                .toUtf8();
        left -= section.size();
        if (left > 0)
            text << section;
        else
            ++leftOut;
    }
    if (leftOut > 0)
        text << QStringLiteral("%1 more test cases that did not pass are in the report.\n\n").arg(leftOut);
    for (const CaseSummary& testCase : summary.cases) {
        if (testCase.isFlaky() && (left -= 1000) > 0)
            text << QStringLiteral("- flaky: %1 passed in attempt %2\n")
                        .arg(inlineText(testCase.fullName()), QString::number(testCase.attempts.size()));
    }
}

} // namespace Torvix
