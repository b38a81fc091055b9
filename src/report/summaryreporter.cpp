#include "report/reporters.h"
#include "report/texts.h"

namespace Torvix {

namespace {

constexpr int shownCharacters = 4000;
constexpr int shownFailures = 20; ///< of a test case

/** For a terminal: without what would steer it, and not longer than people read. */
QString forTerminal(const QString& text)
{
    QString shown;
    for (const QChar c : cutEnd(text, shownCharacters)) {
        const bool isControl = (c < ' ' && c != '\n' && c != '\t') || (c >= QChar(0x7f) && c < QChar(0xa0));
        shown +=
            isControl ? QStringLiteral("\\x%1").arg(int(c.unicode()), 2, 16, QLatin1Char('0')) : QString(c);
    }
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

/** Writes what made one attempt fail. */
class FailureWriter : public EventVisitor
{
public:
    FailureWriter(TextOutput* out, const ReporterOptions& options) : m_out(*out), m_options(options) {}

    void result(const ResultEntry& entry) override
    {
        if (!isFailure(entry.type) || ++m_count > shownFailures)
            return;
        m_out << indented(headline(entry), QStringLiteral("   "));
        const QString found = findings(entry);
        if (!found.isEmpty())
            m_out << indented(found, QStringLiteral("     "));
        if (!entry.file.isEmpty())
            m_out << QStringLiteral("   at %1\n")
                         .arg(forTerminal(
                             positionText(relativeTo(m_options.baseFolder, entry.file), entry.line)));
    }

    void applicationEnded(const ApplicationReport& application) override
    {
        m_applications += QStringLiteral("   application %1: %2\n")
                              .arg(forTerminal(application.name), forTerminal(application.ending));
    }

    void end()
    {
        if (m_count > shownFailures)
            m_out << QStringLiteral("   %1 more failures are in the report\n").arg(m_count - shownFailures);
        m_out << m_applications << "\n";
    }

private:
    TextOutput& m_out;
    const ReporterOptions& m_options;
    int m_count = 0;
    QString m_applications;
};

} // namespace

void writeSummary(const RecordedRun& run, const ReporterOptions& options, QIODevice* out)
{
    const Painter paint(options.colour);
    const RunSummary& summary = run.summary();
    TextOutput text(out);
    int number = 0;
    for (const CaseSummary& testCase : summary.cases) {
        if (isFine(testCase.outcome()))
            continue;
        text << QStringLiteral("%1) %2 %3\n")
                    .arg(QString::number(++number), paint.bold(forTerminal(testCase.fullName())),
                         paint.red(caseOutcomeName(testCase.outcome())));
        FailureWriter failure(&text, options);
        run.visit(testCase.lastAttempt(), failure);
        failure.end();
    }
    for (const CaseSummary& testCase : summary.cases) {
        if (testCase.isFlaky())
            text << paint.yellow(
                QStringLiteral("flaky: %1 passed in attempt %2\n")
                    .arg(forTerminal(testCase.fullName()), QString::number(testCase.attempts.size())));
    }
    const QString total = countsText(summary);
    text << (summary.failed() ? paint.red(total) : paint.green(total))
         << QStringLiteral(" in %1\n").arg(durationText(summary.durationMs));
    for (const QString& problem : summary.problems)
        text << QStringLiteral("result stream, %1\n").arg(problem);
}

} // namespace Torvix
