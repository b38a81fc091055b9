#pragma once

#include "report/recordedrun.h"

#include <QBuffer>
#include <QFile>

#include <algorithm>

namespace Torvix {

/** All that an attempt reported, in memory. */
struct AttemptReport : AttemptSummary
{
    QVector<ResultEntry> entries;
    QVector<ApplicationReport> applications;
    QString objectTree;

    /** The first entry that made the attempt fail, or null. */
    const ResultEntry* firstFailure() const
    {
        const auto entry = std::find_if(entries.begin(), entries.end(),
                                        [](const ResultEntry& each) { return isFailure(each.type); });
        return entry == entries.end() ? nullptr : &*entry;
    }
};

struct CaseReport : CaseSummary
{
    QVector<AttemptReport> attempts;
};

struct RunReport : RunSummary
{
    QVector<CaseReport> cases;
};

/** Keeps all that it is told. */
class AttemptReader : public EventVisitor
{
public:
    explicit AttemptReader(AttemptReport* attempt) : m_attempt(*attempt) {}
    void result(const ResultEntry& entry) override { m_attempt.entries += entry; }
    void applicationEnded(const ApplicationReport& report) override { m_attempt.applications += report; }
    void objectTree(const QString& text) override { m_attempt.objectTree = text; }

private:
    AttemptReport& m_attempt;
};

inline RunReport wholeReport(const RecordedRun& run)
{
    RunReport report;
    static_cast<RunSummary&>(report) = run.summary();
    for (const CaseSummary& summary : run.summary().cases) {
        CaseReport testCase;
        static_cast<CaseSummary&>(testCase) = summary;
        for (const AttemptSummary& each : summary.attempts) {
            AttemptReport attempt;
            static_cast<AttemptSummary&>(attempt) = each;
            AttemptReader reader(&attempt);
            run.visit(each, reader);
            testCase.attempts += attempt;
        }
        report.cases += testCase;
    }
    return report;
}

/** A run in memory, as its stream tells it. */
inline RecordedRun recordedRun(const QByteArray& stream, const QString& folder = QStringLiteral("/results"))
{
    auto buffer = std::make_unique<QBuffer>();
    buffer->setData(stream);
    buffer->open(QIODevice::ReadOnly);
    RecordedRun run;
    QString ignored;
    run.add(std::move(buffer), folder, &ignored);
    return run;
}

/** Of a stream on disk; an empty report when there is none. */
inline RunReport readReportFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly)
               ? wholeReport(recordedRun(file.readAll(), QFileInfo(path).absolutePath()))
               : RunReport();
}

} // namespace Torvix
