#include "report/streamwriter.h"

#include "report/jsonline.h"
#include "report/texts.h"

#include <QFileInfo>
#include <QJsonArray>

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

/** What readers hold in memory at once; nobody reads more of one text. */
QString bounded(const QString& text)
{
    constexpr int longestText = 16 * 1024 * 1024;
    if (text.size() <= longestText)
        return text;
    return text.left(longestText) +
           QStringLiteral("\n[%1 more characters were left out]").arg(text.size() - longestText);
}

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
    QByteArray text = line.end();
    if (m_isTorn)
        text.prepend('\n'); // after what could be written of a line
    errno = 0;
    bool written = m_device->write(text) == text.size();
    if (m_file)
        written = m_file->flush() && written;
    m_isTorn = !written;
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

void ResultStreamWriter::caseStarted(const CaseSummary& testCase, int attempt)
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
    line.add("type", resultTypeName(entry.type)).add("message", bounded(entry.message));
    if (!entry.detail.isEmpty())
        line.add("detail", bounded(entry.detail));
    if (!entry.difference.isEmpty())
        line.add("difference", bounded(entry.difference));
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
              .add("output", bounded(application.output)));
}

void ResultStreamWriter::objectTree(const QString& text)
{
    write(JsonLine("object-tree").add("text", bounded(text)));
}

void ResultStreamWriter::caseEnded(CaseOutcome outcome, qint64 durationMs)
{
    write(JsonLine("case-ended").add("outcome", caseOutcomeName(outcome)).add("durationMs", durationMs));
}

void ResultStreamWriter::runEnded(bool interrupted, qint64 durationMs)
{
    write(JsonLine("run-ended").add("interrupted", interrupted).add("durationMs", durationMs));
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
