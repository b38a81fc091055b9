#include "report/reporters.h"
#include "report/texts.h"

#include <QHash>
#include <QXmlStreamWriter>

#include <algorithm>
#include <limits>

namespace Torvix {

namespace {

QString seconds(qint64 durationMs)
{
    return QString::number(double(durationMs) / 1000, 'f', 3);
}

/** XML 1.0 has no place for most control characters, not even escaped. */
QString xmlText(const QString& text)
{
    QString clean;
    clean.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            clean += c;
            clean += text[++i];
            continue;
        }
        const bool allowed = c == '\t' || c == '\n' || c == '\r' || (c >= QChar(0x20) && !c.isSurrogate());
        clean += allowed && c.unicode() < 0xfffe ? c : QChar(QChar::ReplacementCharacter);
    }
    return clean;
}

QString failureText(const ResultEntry& entry)
{
    QStringList lines;
    if (!entry.file.isEmpty())
        lines += positionText(entry.file, entry.line);
    lines += headline(entry);
    const QString found = findings(entry);
    if (!found.isEmpty())
        lines += found;
    return lines.join(QLatin1Char('\n'));
}

/** The parser that most readers are built on takes no text of more than ten million bytes. */
constexpr int longestText = 1'000'000;
constexpr int leastText = 10'000;
/** Readers hold all of it in memory. */
constexpr qint64 textBudget = 100'000'000;
constexpr int longestMessage = 10'000;

/** How long the texts of one case may be, so that those of all are not longer than the budget. */
int limitOfCase(const RunSummary& run)
{
    QVector<qint64> lengths;
    for (const CaseSummary& testCase : run.cases) {
        for (const AttemptSummary& attempt : testCase.attempts)
            lengths += attempt.textLength;
    }
    std::sort(lengths.begin(), lengths.end());
    qint64 left = textBudget;
    for (int i = 0; i < lengths.size(); ++i) {
        const qint64 share = left / (lengths.size() - i);
        if (lengths[i] > share)
            return int(qBound<qint64>(leastText, share, longestText));
        left -= lengths[i];
    }
    return longestText;
}

/** The texts of one attempt. */
class AttemptTexts : public EventVisitor
{
public:
    AttemptTexts(const ReporterOptions& options, int limit)
        : failures(limit)
        , output(limit)
        , m_options(options)
    {
    }

    void result(const ResultEntry& entry) override
    {
        if (isFailure(entry.type)) {
            if (!failures.isEmpty())
                failures.addLine(QString());
            failures.addLine(failureText(entry));
        }
        if (entry.type == ResultType::Skip && skipReason.isNull())
            skipReason = entry.message;
        output.addLine(QStringLiteral("%1: %2").arg(resultTypeName(entry.type), entry.message));
        for (const Attachment& attachment : entry.attachments)
            attachments += relativeTo(m_options.baseFolder, attachment.path);
    }

    void applicationEnded(const ApplicationReport& application) override
    {
        output.addLine(QStringLiteral("application %1: %2").arg(application.name, application.ending));
        if (!application.output.isEmpty())
            output.addLine(application.output);
    }

    BoundedText failures;
    BoundedText output;
    QStringList attachments;
    QString skipReason;

private:
    const ReporterOptions& m_options;
};

/** The cases of one suite. */
struct SuiteCases
{
    QString title;
    QVector<const CaseSummary*> cases;
};

/** In the order in which they began. */
QVector<SuiteCases> casesBySuite(const RunSummary& run)
{
    QVector<SuiteCases> suites;
    QHash<QString, int> known;
    for (const CaseSummary& testCase : run.cases) {
        if (!known.contains(testCase.suiteTitle)) {
            known[testCase.suiteTitle] = suites.size();
            suites += {testCase.suiteTitle, {}};
        }
        suites[known[testCase.suiteTitle]].cases += &testCase;
    }
    return suites;
}

class JUnitWriter
{
public:
    JUnitWriter(const RecordedRun& run, const ReporterOptions& options, QIODevice* out)
        : m_run(run)
        , m_options(options)
        , m_limit(limitOfCase(run.summary()))
        , m_xml(out)
    {
        m_xml.setAutoFormatting(true);
        m_xml.setAutoFormattingIndent(2);
    }

    void write()
    {
        const RunSummary& run = m_run.summary();
        m_xml.writeStartDocument();
        m_xml.writeStartElement("testsuites");
        if (!m_options.strictJUnit) {
            m_xml.writeAttribute("name", xmlText(run.name));
            writeCounts(run.cases.size(), run.count(CaseOutcome::Failed),
                        run.count(CaseOutcome::Error) + run.count(CaseOutcome::Interrupted),
                        run.count(CaseOutcome::Skipped), run.durationMs, false);
        }
        for (const SuiteCases& suite : casesBySuite(run))
            writeSuite(suite);
        m_xml.writeEndElement();
        m_xml.writeEndDocument();
    }

private:
    void writeCounts(int tests, int failures, int errors, int skipped, qint64 durationMs, bool withSkipped)
    {
        m_xml.writeAttribute("tests", QString::number(tests));
        m_xml.writeAttribute("failures", QString::number(failures));
        m_xml.writeAttribute("errors", QString::number(errors));
        if (withSkipped)
            m_xml.writeAttribute("skipped", QString::number(skipped));
        m_xml.writeAttribute("time", seconds(durationMs));
    }

    void writeSuite(const SuiteCases& suite)
    {
        const RunSummary& run = m_run.summary();
        int counts[5] = {};
        qint64 durationMs = 0;
        for (const CaseSummary* testCase : suite.cases) {
            ++counts[int(testCase->outcome())];
            durationMs += testCase->durationMs();
        }
        m_xml.writeStartElement("testsuite");
        m_xml.writeAttribute("name", xmlText(suite.title));
        writeCounts(suite.cases.size(), counts[int(CaseOutcome::Failed)],
                    counts[int(CaseOutcome::Error)] + counts[int(CaseOutcome::Interrupted)],
                    counts[int(CaseOutcome::Skipped)], durationMs, true);
        m_xml.writeAttribute("timestamp", run.started.toUTC().toString("yyyy-MM-ddTHH:mm:ss"));
        m_xml.writeAttribute("hostname", xmlText(run.environment["host"].toString()));
        m_xml.writeStartElement("properties");
        for (auto it = run.environment.begin(); it != run.environment.end(); ++it) {
            m_xml.writeStartElement("property");
            m_xml.writeAttribute("name", xmlText(it.key()));
            m_xml.writeAttribute("value", xmlText(it.value().toVariant().toString()));
            m_xml.writeEndElement();
        }
        m_xml.writeEndElement();
        for (const CaseSummary* testCase : suite.cases)
            writeCase(*testCase);
        m_xml.writeEndElement();
    }

    void writeCase(const CaseSummary& testCase)
    {
        m_xml.writeStartElement("testcase");
        m_xml.writeAttribute("classname", xmlText(testCase.suiteTitle));
        m_xml.writeAttribute("name", xmlText(testCase.name));
        m_xml.writeAttribute("time", seconds(testCase.durationMs()));
        const AttemptSummary last = testCase.lastAttempt();
        const std::optional<ResultEntry> failure = m_run.decisiveFailure(last);
        if (!m_options.strictJUnit && failure && !failure->file.isEmpty()) {
            m_xml.writeAttribute("file", xmlText(relativeTo(m_options.baseFolder, failure->file)));
            m_xml.writeAttribute("line", QString::number(failure->line));
        }
        AttemptTexts texts(m_options, m_limit);
        if (!testCase.attempts.isEmpty())
            m_run.visit(last, texts);
        if (last.outcome == CaseOutcome::Skipped)
            writeSkipped(texts.skipReason);
        else if (!isFine(last.outcome))
            writeFailure(QLatin1String(elementOf(last.outcome)), last, texts, false);
        if (!m_options.strictJUnit)
            writeEarlierAttempts(testCase);
        writeOutput(testCase, texts);
        m_xml.writeEndElement();
    }

    static const char* elementOf(CaseOutcome outcome)
    {
        return outcome == CaseOutcome::Failed ? "failure" : "error";
    }

    void writeSkipped(const QString& reason)
    {
        m_xml.writeStartElement("skipped");
        if (!m_options.strictJUnit && !reason.isEmpty())
            m_xml.writeAttribute("message", xmlText(cutEnd(reason, longestMessage)));
        m_xml.writeEndElement();
    }

    void writeFailure(const QString& element, const AttemptSummary& attempt, const AttemptTexts& texts,
                      bool isEarlier)
    {
        const std::optional<ResultEntry> failure = m_run.decisiveFailure(attempt);
        m_xml.writeStartElement(element);
        m_xml.writeAttribute("message", failure ? xmlText(cutEnd(headline(*failure), longestMessage))
                                                : QStringLiteral("interrupted"));
        m_xml.writeAttribute("type",
                             failure ? resultTypeName(failure->type) : caseOutcomeName(attempt.outcome));
        const QString text = xmlText(texts.failures.text());
        if (isEarlier)
            m_xml.writeTextElement("stackTrace", text);
        else
            m_xml.writeCharacters(text);
        m_xml.writeEndElement();
    }

    /** As Maven's Surefire tells them: of a case that passed in the end, and of one that never did. */
    void writeEarlierAttempts(const CaseSummary& testCase)
    {
        for (int i = 0; i + 1 < testCase.attempts.size(); ++i) {
            const AttemptSummary& attempt = testCase.attempts[i];
            const bool failed = attempt.outcome == CaseOutcome::Failed;
            const char* element = testCase.isFlaky() ? (failed ? "flakyFailure" : "flakyError")
                                                     : (failed ? "rerunFailure" : "rerunError");
            AttemptTexts texts(m_options, m_limit);
            m_run.visit(attempt, texts);
            writeFailure(QLatin1String(element), attempt, texts, true);
        }
    }

    void writeOutput(const CaseSummary& testCase, const AttemptTexts& texts)
    {
        QString text = texts.output.text();
        if (testCase.isFlaky())
            text.prepend(QStringLiteral("flaky: passed in attempt %1\n").arg(testCase.attempts.size()));
        // What build servers look for to show files beside the case.
        for (const QString& path : texts.attachments)
            text += QStringLiteral("\n[[ATTACHMENT|%1]]").arg(path);
        m_xml.writeTextElement("system-out", xmlText(text));
    }

    const RecordedRun& m_run;
    const ReporterOptions& m_options;
    int m_limit;
    QXmlStreamWriter m_xml;
};

} // namespace

void writeJUnit(const RecordedRun& run, const ReporterOptions& options, QIODevice* out)
{
    JUnitWriter(run, options, out).write();
}

} // namespace Torvix
