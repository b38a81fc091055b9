#include "report/reporters.h"
#include "report/texts.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace Torvix {

namespace {

/** Readers hold the whole document, and a text of half a gigabyte is more than some can. */
constexpr qint64 textBudget = 200'000'000;
/** However many texts there are, so much of each is shown. */
constexpr int leastText = 1000;

QByteArray compact(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/** An object that is not closed yet: more members follow. */
QByteArray opened(const QJsonObject& object)
{
    return compact(object).chopped(1);
}

QJsonObject entryJson(const ResultEntry& entry, int limit)
{
    QJsonObject json{{"type", resultTypeName(entry.type)},
                     {"time", entry.time.toUTC().toString(Qt::ISODateWithMs)},
                     {"message", cutEnd(entry.message, limit)},
                     {"file", entry.file},
                     {"line", entry.line}};
    if (!entry.detail.isEmpty())
        json["detail"] = cutEnd(entry.detail, limit);
    if (!entry.difference.isEmpty())
        json["difference"] = cutEnd(entry.difference, limit);
    if (!entry.sections.isEmpty())
        json["sections"] = QJsonArray::fromStringList(entry.sections);
    return json;
}

/** Writes the attempt's results, one a line. */
class EntryWriter : public EventVisitor
{
public:
    EntryWriter(TextOutput* out, const ReporterOptions& options, int limit)
        : m_out(*out)
        , m_options(options)
        , m_limit(limit)
    {
    }

    void result(const ResultEntry& entry) override
    {
        QJsonObject json = entryJson(entry, m_limit);
        QJsonArray attachments;
        for (const Attachment& attachment : entry.attachments)
            attachments.append(linkTo(attachment, m_options));
        if (!attachments.isEmpty())
            json["attachments"] = attachments;
        m_out << (m_count++ > 0 ? ",\n    " : "\n    ") << compact(json);
    }

    void applicationEnded(const ApplicationReport&) override { hasApplications = true; }

    bool hasApplications = false;

private:
    TextOutput& m_out;
    const ReporterOptions& m_options;
    int m_limit;
    int m_count = 0;
};

class ApplicationWriter : public EventVisitor
{
public:
    ApplicationWriter(TextOutput* out, int limit) : m_out(*out), m_limit(limit) {}

    void applicationEnded(const ApplicationReport& application) override
    {
        m_out << (m_count++ > 0 ? ",\n    " : "\n    ")
              << compact({{"name", application.name},
                          {"pid", application.pid},
                          {"ending", application.ending},
                          {"output", cutBegin(application.output, m_limit)}});
    }

private:
    TextOutput& m_out;
    int m_limit;
    int m_count = 0;
};

class JsonReport
{
public:
    JsonReport(const RecordedRun& run, const ReporterOptions& options, QIODevice* out)
        : m_run(run)
        , m_options(options)
        , m_out(out)
        , m_limit(qMax(leastText, run.summary().texts.limitFor(textBudget)))
    {
    }

    void write()
    {
        const RunSummary& run = m_run.summary();
        m_out << opened({{"name", run.name},
                         {"started", run.started.toUTC().toString(Qt::ISODateWithMs)},
                         {"durationMs", run.durationMs},
                         {"complete", run.complete},
                         {"interrupted", run.interrupted},
                         {"environment", run.environment},
                         {"counts", counts(run)},
                         {"problems", QJsonArray::fromStringList(run.problems)}})
              << ",\n\"cases\":[";
        for (int i = 0; i < run.cases.size(); ++i) {
            m_out << (i > 0 ? ",\n" : "\n");
            writeCase(run.cases[i]);
        }
        m_out << "\n]}\n";
    }

private:
    static QJsonObject counts(const RunSummary& run)
    {
        QJsonObject counts{{"flaky", run.flakyCount()}, {"notRun", run.notRunCount()}};
        for (const CaseOutcome outcome : {CaseOutcome::Passed, CaseOutcome::Failed, CaseOutcome::Error,
                                          CaseOutcome::Skipped, CaseOutcome::Interrupted})
            counts[caseOutcomeName(outcome)] = run.count(outcome);
        return counts;
    }

    void writeCase(const CaseSummary& testCase)
    {
        m_out << opened({{"suite", testCase.suite},
                         {"name", testCase.name},
                         {"path", testCase.path},
                         {"tags", QJsonArray::fromStringList(testCase.tags)},
                         {"outcome", caseOutcomeName(testCase.outcome())},
                         {"flaky", testCase.isFlaky()}})
              << ",\n \"attempts\":[";
        for (int i = 0; i < testCase.attempts.size(); ++i) {
            m_out << (i > 0 ? ",\n  " : "\n  ");
            writeAttempt(testCase.attempts[i]);
        }
        m_out << "]}";
    }

    void writeAttempt(const AttemptSummary& attempt)
    {
        m_out << opened({{"outcome", caseOutcomeName(attempt.outcome)},
                         {"started", attempt.started.toUTC().toString(Qt::ISODateWithMs)},
                         {"durationMs", attempt.durationMs}})
              << ",\n   \"entries\":[";
        EntryWriter entries(&m_out, m_options, m_limit);
        m_run.visit(attempt, entries);
        m_out << "],\n   \"applications\":[";
        ApplicationWriter applications(&m_out, m_limit);
        if (entries.hasApplications)
            m_run.visit(attempt, applications);
        m_out << "]}";
    }

    const RecordedRun& m_run;
    const ReporterOptions& m_options;
    TextOutput m_out;
    int m_limit;
};

} // namespace

void writeJson(const RecordedRun& run, const ReporterOptions& options, QIODevice* out)
{
    JsonReport(run, options, out).write();
}

} // namespace Torvix
