#include "report/resultstream.h"

#include "report/jsonline.h"
#include "report/reporters.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace Torvix {

namespace {

QJsonArray attachmentsToJson(const QVector<Attachment>& attachments, const QString& folder)
{
    QJsonArray json;
    for (const Attachment& attachment : attachments)
        json.append(QJsonObject{{"path", relativeTo(folder, attachment.path)},
                                {"mimeType", attachment.mimeType},
                                {"description", attachment.description}});
    return json;
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
    RunReport take()
    {
        // Without an end it lasted as far as the stream tells.
        if (!m_report.complete && m_report.started.isValid() && m_lastTime.isValid())
            m_report.durationMs = qMax<qint64>(0, m_report.started.msecsTo(m_lastTime));
        return std::move(m_report);
    }

    void problem(int line, const QString& text)
    {
        m_report.problems += QStringLiteral("line %1: %2").arg(line).arg(text);
    }

    /** False when the event is not known or does not fit here. */
    bool add(const QJsonObject& event)
    {
        const QString name = event["event"].toString();
        const QDateTime time = QDateTime::fromString(event["time"].toString(), Qt::ISODateWithMs);
        if (time.isValid())
            m_lastTime = time;
        if (name == "run-started")
            return runStarted(event, time);
        if (name == "case-started")
            return caseStarted(event, time);
        if (name == "run-ended")
            return runEnded(event);
        if (!m_attempt)
            return false;
        m_attempt->durationMs = qMax<qint64>(0, m_attempt->started.msecsTo(time)); // until its end says it
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
    QDateTime m_lastTime;
    AttemptReport* m_attempt = nullptr;
};

} // namespace

ResultStreamWriter::ResultStreamWriter(QIODevice* device)
    : m_device(device)
    , m_file(qobject_cast<QFileDevice*>(device))
{
    if (m_file)
        m_folder = QFileInfo(m_file->fileName()).absolutePath();
}

void ResultStreamWriter::write(JsonLine& line)
{
    const QByteArray text = line.end();
    errno = 0;
    bool written = m_device->write(text) == text.size();
    if (m_file)
        written = m_file->flush() && written;
    // The device may know no more than that there was an error.
    if (!written && m_error.isEmpty())
        m_error = errno != 0 ? QString::fromLocal8Bit(std::strerror(errno)) : m_device->errorString();
}

void ResultStreamWriter::runStarted(const QString& name, int plannedCases, const QJsonObject& environment)
{
    write(JsonLine("run-started")
              .add("schema", schemaVersion)
              .add("name", name)
              .add("plannedCases", plannedCases)
              .add("environment", environment));
}

void ResultStreamWriter::caseStarted(const CaseReport& testCase, int attempt)
{
    write(JsonLine("case-started")
              .add("suite", testCase.suite)
              .add("name", testCase.name)
              .add("path", testCase.path)
              .add("tags", testCase.tags)
              .add("attempt", attempt));
}

void ResultStreamWriter::entry(const ResultEntry& entry)
{
    JsonLine line("result", entry.time);
    line.add("type", resultTypeName(entry.type)).add("message", entry.message);
    if (!entry.detail.isEmpty())
        line.add("detail", entry.detail);
    if (!entry.file.isEmpty())
        line.add("file", entry.file);
    if (entry.line > 0)
        line.add("line", entry.line);
    if (!entry.sections.isEmpty())
        line.add("sections", entry.sections);
    if (entry.source.firstLine > 0)
        line.add("source", QJsonObject{{"firstLine", entry.source.firstLine},
                                       {"lines", QJsonArray::fromStringList(entry.source.lines)}});
    if (!entry.attachments.isEmpty())
        line.add("attachments", attachmentsToJson(entry.attachments, m_folder));
    write(line);
}

void ResultStreamWriter::applicationEnded(const ApplicationReport& application)
{
    write(JsonLine("application-ended")
              .add("name", application.name)
              .add("pid", application.pid)
              .add("ending", application.ending)
              .add("output", application.output));
}

void ResultStreamWriter::objectTree(const QString& text)
{
    write(JsonLine("object-tree").add("text", text));
}

void ResultStreamWriter::caseEnded(CaseOutcome outcome, qint64 durationMs)
{
    write(JsonLine("case-ended").add("outcome", caseOutcomeName(outcome)).add("durationMs", durationMs));
}

void ResultStreamWriter::runEnded(bool interrupted, qint64 durationMs)
{
    write(JsonLine("run-ended").add("interrupted", interrupted).add("durationMs", durationMs));
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
