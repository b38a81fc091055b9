#include "report/reporters.h"
#include "report/texts.h"

namespace Torvix {

namespace {

/** GitHub takes 64 KiB of a message, and escapes take room. */
constexpr int longestMessage = 20'000;

QString escapedText(QString text)
{
    return text.replace(QLatin1Char('%'), QLatin1String("%25"))
        .replace(QLatin1Char('\r'), QLatin1String("%0D"))
        .replace(QLatin1Char('\n'), QLatin1String("%0A"));
}

QString escapedProperty(const QString& text)
{
    return escapedText(text)
        .replace(QLatin1Char(':'), QLatin1String("%3A"))
        .replace(QLatin1Char(','), QLatin1String("%2C"));
}

/** Annotates what one attempt reported. */
class Annotator : public EventVisitor
{
public:
    Annotator(TextOutput* out, const ReporterOptions& options, const CaseSummary& testCase)
        : m_out(*out)
        , m_options(options)
        , m_case(testCase)
    {
    }

    /** What a retry mended is shown, but does not look like a failure. */
    void setSuperseded(bool isSuperseded) { m_isSuperseded = isSuperseded; }

    void result(const ResultEntry& entry) override
    {
        if (isFailure(entry.type) && (!m_isSuperseded || m_case.isFlaky()))
            annotate(m_isSuperseded ? "warning" : "error", entry);
        else if (entry.type == ResultType::Warning && !m_isSuperseded)
            annotate("warning", entry);
    }

    void annotate(const char* level, const ResultEntry& entry)
    {
        QStringList properties;
        if (!entry.file.isEmpty()) {
            properties +=
                QStringLiteral("file=") + escapedProperty(relativeTo(m_options.baseFolder, entry.file));
            if (entry.line > 0)
                properties += QStringLiteral("line=%1").arg(entry.line);
        }
        properties += QStringLiteral("title=") + escapedProperty(m_case.fullName());
        const QString found = findings(entry);
        const QString message =
            found.isEmpty() ? headline(entry) : headline(entry) + QLatin1Char('\n') + found;
        m_out << QStringLiteral("::%1 %2::%3\n")
                     .arg(QLatin1String(level), properties.join(QLatin1Char(',')),
                          escapedText(cutEnd(message, longestMessage)));
    }

private:
    TextOutput& m_out;
    const ReporterOptions& m_options;
    const CaseSummary& m_case;
    bool m_isSuperseded = false;
};

} // namespace

void writeGitHub(const RecordedRun& run, const ReporterOptions& options, QIODevice* out)
{
    TextOutput text(out);
    for (const CaseSummary& testCase : run.summary().cases) {
        Annotator annotator(&text, options, testCase);
        for (int i = 0; i < testCase.attempts.size(); ++i) {
            annotator.setSuperseded(i + 1 < testCase.attempts.size());
            run.visit(testCase.attempts[i], annotator);
        }
        const AttemptSummary last = testCase.lastAttempt();
        if (last.outcome == CaseOutcome::Interrupted && last.decisiveResult < 0) {
            ResultEntry end;
            end.message = QStringLiteral("The run ended before this test case did.");
            annotator.annotate("error", end);
        }
    }
}

} // namespace Torvix
