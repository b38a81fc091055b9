#include "testsupport/report/resultstream.h"

#include "testsupport/report/reporters.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace Torvix {

namespace {

QString timeText(const QDateTime& time)
{
    return time.toUTC().toString(Qt::ISODateWithMs);
}

QJsonObject attachmentToJson(const Attachment& attachment)
{
    return {{"path", attachment.path},
            {"mimeType", attachment.mimeType},
            {"description", attachment.description}};
}

Attachment attachmentFromJson(const QJsonObject& json)
{
    return {json["path"].toString(), json["mimeType"].toString(), json["description"].toString()};
}

QStringList stringsFromJson(const QJsonValue& json)
{
    QStringList list;
    const QJsonArray array = json.toArray();
    for (const QJsonValue& value : array)
        list += value.toString();
    return list;
}

QJsonObject entryToJson(const ResultEntry& entry)
{
    QJsonObject json{{"type", resultTypeName(entry.type)}, {"message", entry.message}};
    if (!entry.detail.isEmpty())
        json["detail"] = entry.detail;
    if (!entry.file.isEmpty())
        json["file"] = entry.file;
    if (entry.line > 0)
        json["line"] = entry.line;
    if (!entry.sections.isEmpty())
        json["sections"] = QJsonArray::fromStringList(entry.sections);
    if (entry.source.firstLine > 0)
        json["source"] = QJsonObject{{"firstLine", entry.source.firstLine},
                                     {"lines", QJsonArray::fromStringList(entry.source.lines)}};
    QJsonArray attachments;
    for (const Attachment& attachment : entry.attachments)
        attachments.append(attachmentToJson(attachment));
    if (!attachments.isEmpty())
        json["attachments"] = attachments;
    return json;
}

ResultEntry entryFromJson(const QJsonObject& json, ResultType type, const QDateTime& time)
{
    ResultEntry entry;
    entry.type = type;
    entry.time = time;
    entry.message = json["message"].toString();
    entry.detail = json["detail"].toString();
    entry.file = json["file"].toString();
    entry.line = json["line"].toInt();
    entry.sections = stringsFromJson(json["sections"]);
    const QJsonObject source = json["source"].toObject();
    entry.source.firstLine = source["firstLine"].toInt();
    entry.source.lines = stringsFromJson(source["lines"]);
    const QJsonArray attachments = json["attachments"].toArray();
    for (const QJsonValue& attachment : attachments)
        entry.attachments += attachmentFromJson(attachment.toObject());
    return entry;
}

CaseOutcome outcomeFromName(const QString& name)
{
    for (const CaseOutcome outcome :
         {CaseOutcome::Passed, CaseOutcome::Failed, CaseOutcome::Error, CaseOutcome::Skipped}) {
        if (caseOutcomeName(outcome) == name)
            return outcome;
    }
    return CaseOutcome::Interrupted;
}

/** Turns the events of a stream, one after the other, into a report. */
class ReportBuilder
{
public:
    RunReport take() { return std::move(m_report); }

    void problem(int line, const QString& text)
    {
        m_report.problems += QStringLiteral("line %1: %2").arg(line).arg(text);
    }

    /** False when the event is not known or does not fit here. */
    bool add(const QJsonObject& event)
    {
        const QString name = event["event"].toString();
        const QDateTime time = QDateTime::fromString(event["time"].toString(), Qt::ISODateWithMs);
        if (name == "run-started")
            return runStarted(event, time);
        if (name == "case-started")
            return caseStarted(event, time);
        if (name == "run-ended")
            return runEnded(event);
        if (!m_attempt)
            return false;
        if (name == "result")
            return result(event, time);
        if (name == "application-ended")
            return applicationEnded(event);
        if (name == "object-tree")
            m_attempt->objectTree = event["text"].toString();
        else if (name == "case-ended")
            return caseEnded(event);
        else
            return false;
        return true;
    }

private:
    bool runStarted(const QJsonObject& event, const QDateTime& time)
    {
        m_report.name = event["name"].toString();
        m_report.started = time;
        m_report.plannedCases = event["plannedCases"].toInt();
        m_report.environment = event["environment"].toObject();
        return true;
    }

    bool caseStarted(const QJsonObject& event, const QDateTime& time)
    {
        const QString suite = event["suite"].toString();
        const QString name = event["name"].toString();
        // A retry follows its case at once or after others: it belongs to the last entry of that name, of
        // which there are several when cases are repeated.
        auto known = m_report.cases.rend();
        if (event["attempt"].toInt(1) > 1)
            known = std::find_if(m_report.cases.rbegin(), m_report.cases.rend(), [&](const CaseReport& each) {
                return each.suite == suite && each.name == name;
            });
        if (known == m_report.cases.rend()) {
            CaseReport testCase;
            testCase.suite = suite;
            testCase.name = name;
            testCase.path = event["path"].toString();
            testCase.tags = stringsFromJson(event["tags"]);
            m_report.cases += testCase;
            known = m_report.cases.rbegin();
        }
        known->attempts += AttemptReport();
        m_attempt = &known->attempts.last();
        m_attempt->started = time;
        return true;
    }

    bool result(const QJsonObject& event, const QDateTime& time)
    {
        ResultType type;
        if (!resultTypeFromName(event["type"].toString(), &type))
            return false;
        m_attempt->entries += entryFromJson(event, type, time);
        return true;
    }

    bool applicationEnded(const QJsonObject& event)
    {
        ApplicationReport application;
        application.name = event["name"].toString();
        application.pid = qint64(event["pid"].toDouble());
        application.ending = event["ending"].toString();
        application.output = event["output"].toString();
        m_attempt->applications += application;
        return true;
    }

    bool caseEnded(const QJsonObject& event)
    {
        m_attempt->outcome = outcomeFromName(event["outcome"].toString());
        m_attempt->durationMs = qint64(event["durationMs"].toDouble());
        m_attempt = nullptr;
        return true;
    }

    bool runEnded(const QJsonObject& event)
    {
        m_report.complete = true;
        m_report.interrupted = event["interrupted"].toBool();
        m_report.durationMs = qint64(event["durationMs"].toDouble());
        return true;
    }

    RunReport m_report;
    AttemptReport* m_attempt = nullptr;
};

} // namespace

ResultStreamWriter::ResultStreamWriter(QIODevice* device) : m_device(device)
{
    if (const auto* file = qobject_cast<QFile*>(device))
        m_folder = QFileInfo(file->fileName()).absolutePath();
}

void ResultStreamWriter::write(const char* event, QJsonObject fields)
{
    fields["event"] = event;
    if (!fields.contains("time"))
        fields["time"] = timeText(QDateTime::currentDateTimeUtc());
    const QByteArray line = QJsonDocument(fields).toJson(QJsonDocument::Compact) + '\n';
    errno = 0;
    bool written = m_device->write(line) == line.size();
    if (auto* file = qobject_cast<QFileDevice*>(m_device))
        written = file->flush() && written;
    // The device may know no more than that there was an error.
    if (!written && m_error.isEmpty())
        m_error = errno != 0 ? QString::fromLocal8Bit(std::strerror(errno)) : m_device->errorString();
}

void ResultStreamWriter::runStarted(const QString& name, int plannedCases, const QJsonObject& environment)
{
    write("run-started", {{"schema", schemaVersion},
                          {"name", name},
                          {"plannedCases", plannedCases},
                          {"environment", environment}});
}

void ResultStreamWriter::caseStarted(const CaseReport& testCase, int attempt)
{
    write("case-started", {{"suite", testCase.suite},
                           {"name", testCase.name},
                           {"path", testCase.path},
                           {"tags", QJsonArray::fromStringList(testCase.tags)},
                           {"attempt", attempt}});
}

void ResultStreamWriter::entry(const ResultEntry& given)
{
    ResultEntry entry = given;
    for (Attachment& attachment : entry.attachments)
        attachment.path = relativeTo(m_folder, attachment.path);
    QJsonObject json = entryToJson(entry);
    if (entry.time.isValid())
        json["time"] = timeText(entry.time);
    write("result", json);
}

void ResultStreamWriter::applicationEnded(const ApplicationReport& application)
{
    write("application-ended", {{"name", application.name},
                                {"pid", application.pid},
                                {"ending", application.ending},
                                {"output", application.output}});
}

void ResultStreamWriter::objectTree(const QString& text)
{
    write("object-tree", {{"text", text}});
}

void ResultStreamWriter::caseEnded(CaseOutcome outcome, qint64 durationMs)
{
    write("case-ended", {{"outcome", caseOutcomeName(outcome)}, {"durationMs", durationMs}});
}

void ResultStreamWriter::runEnded(bool interrupted, qint64 durationMs)
{
    write("run-ended", {{"interrupted", interrupted}, {"durationMs", durationMs}});
}

RunReport readResultStream(QIODevice& device)
{
    ReportBuilder builder;
    for (int number = 1; !device.atEnd(); ++number) {
        const QByteArray line = device.readLine();
        if (line.trimmed().isEmpty())
            continue;
        QJsonParseError error;
        const QJsonDocument event = QJsonDocument::fromJson(line, &error);
        if (!event.isObject())
            builder.problem(number, line.endsWith('\n') ? error.errorString()
                                                        : QStringLiteral("cut off before its end"));
        else if (!builder.add(event.object()))
            builder.problem(number,
                            QStringLiteral("unexpected event '%1'").arg(event.object()["event"].toString()));
    }
    return builder.take();
}

RunReport mergeReports(const QVector<RunReport>& parts)
{
    if (parts.isEmpty())
        return {};
    RunReport whole = parts.first();
    for (int i = 1; i < parts.size(); ++i) {
        const RunReport& part = parts[i];
        whole.cases += part.cases;
        whole.plannedCases += part.plannedCases;
        whole.problems += part.problems;
        whole.complete = whole.complete && part.complete;
        whole.interrupted = whole.interrupted || part.interrupted;
        // Parts run side by side, so the whole lasts as long as the slowest.
        whole.durationMs = qMax(whole.durationMs, part.durationMs);
        if (part.started < whole.started)
            whole.started = part.started;
    }
    return whole;
}

SourceExcerpt readSourceExcerpt(const QString& file, int line, int linesAround)
{
    QFile source(file);
    if (line < 1 || !source.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    const int first = qMax(1, line - linesAround);
    SourceExcerpt excerpt;
    for (int number = 1; number <= line + linesAround && !source.atEnd(); ++number) {
        const QByteArray text = source.readLine();
        if (number >= first)
            excerpt.lines += QString::fromUtf8(text.endsWith('\n') ? text.chopped(1) : text);
    }
    if (excerpt.lines.size() <= line - first)
        return {};
    excerpt.firstLine = first;
    return excerpt;
}

} // namespace Torvix
