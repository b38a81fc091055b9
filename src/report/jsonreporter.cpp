#include "report/reporters.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace Torvix {

namespace {

QJsonObject entryJson(const ResultEntry& entry)
{
    QJsonObject json{{"type", resultTypeName(entry.type)},
                     {"time", entry.time.toUTC().toString(Qt::ISODateWithMs)},
                     {"message", entry.message},
                     {"file", entry.file},
                     {"line", entry.line}};
    if (!entry.detail.isEmpty())
        json["detail"] = entry.detail;
    if (!entry.sections.isEmpty())
        json["sections"] = QJsonArray::fromStringList(entry.sections);
    QJsonArray attachments;
    for (const Attachment& attachment : entry.attachments)
        attachments.append(attachment.path);
    if (!attachments.isEmpty())
        json["attachments"] = attachments;
    return json;
}

QJsonObject attemptJson(const AttemptReport& attempt)
{
    QJsonArray entries;
    for (const ResultEntry& entry : attempt.entries)
        entries.append(entryJson(entry));
    QJsonArray applications;
    for (const ApplicationReport& application : attempt.applications)
        applications.append(QJsonObject{{"name", application.name},
                                        {"pid", application.pid},
                                        {"ending", application.ending},
                                        {"output", application.output}});
    return {{"outcome", caseOutcomeName(attempt.outcome)},
            {"started", attempt.started.toUTC().toString(Qt::ISODateWithMs)},
            {"durationMs", attempt.durationMs},
            {"entries", entries},
            {"applications", applications}};
}

} // namespace

QByteArray renderJson(const RunReport& report, const ReporterOptions&)
{
    QJsonArray cases;
    for (const CaseReport& testCase : report.cases) {
        QJsonArray attempts;
        for (const AttemptReport& attempt : testCase.attempts)
            attempts.append(attemptJson(attempt));
        cases.append(QJsonObject{{"suite", testCase.suite},
                                 {"name", testCase.name},
                                 {"path", testCase.path},
                                 {"tags", QJsonArray::fromStringList(testCase.tags)},
                                 {"outcome", caseOutcomeName(testCase.outcome())},
                                 {"flaky", testCase.isFlaky()},
                                 {"attempts", attempts}});
    }
    const QJsonObject counts{{"passed", report.count(CaseOutcome::Passed)},
                             {"failed", report.count(CaseOutcome::Failed)},
                             {"error", report.count(CaseOutcome::Error)},
                             {"skipped", report.count(CaseOutcome::Skipped)},
                             {"interrupted", report.count(CaseOutcome::Interrupted)},
                             {"flaky", report.flakyCount()},
                             {"notRun", report.notRunCount()}};
    return QJsonDocument(QJsonObject{{"name", report.name},
                                     {"started", report.started.toUTC().toString(Qt::ISODateWithMs)},
                                     {"durationMs", report.durationMs},
                                     {"complete", report.complete},
                                     {"interrupted", report.interrupted},
                                     {"environment", report.environment},
                                     {"counts", counts},
                                     {"cases", cases},
                                     {"problems", QJsonArray::fromStringList(report.problems)}})
        .toJson();
}

} // namespace Torvix
