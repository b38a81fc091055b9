#include "report/reporters.h"

#include <QMap>
#include <QXmlStreamWriter>

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
    lines += entry.message;
    if (!entry.detail.isEmpty())
        lines += entry.detail;
    return lines.join(QLatin1Char('\n'));
}

class JUnitWriter
{
public:
    explicit JUnitWriter(const ReporterOptions& options) : m_options(options), m_xml(&m_bytes)
    {
        m_xml.setAutoFormatting(true);
        m_xml.setAutoFormattingIndent(2);
    }

    QByteArray write(const RunReport& report)
    {
        QVector<QString> order;
        QMap<QString, QVector<const CaseReport*>> suites;
        for (const CaseReport& testCase : report.cases) {
            if (!suites.contains(testCase.suite))
                order += testCase.suite;
            suites[testCase.suite] += &testCase;
        }
        m_xml.writeStartDocument();
        m_xml.writeStartElement("testsuites");
        if (!m_options.strictJUnit) {
            m_xml.writeAttribute("name", xmlText(report.name));
            writeCounts(report.cases.size(), report.count(CaseOutcome::Failed),
                        report.count(CaseOutcome::Error) + report.count(CaseOutcome::Interrupted),
                        report.count(CaseOutcome::Skipped), report.durationMs, false);
        }
        for (const QString& suite : order)
            writeSuite(report, suite, suites[suite]);
        m_xml.writeEndElement();
        m_xml.writeEndDocument();
        return m_bytes;
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

    void writeSuite(const RunReport& report, const QString& name, const QVector<const CaseReport*>& cases)
    {
        int counts[5] = {};
        qint64 durationMs = 0;
        for (const CaseReport* testCase : cases) {
            ++counts[int(testCase->outcome())];
            durationMs += testCase->durationMs();
        }
        m_xml.writeStartElement("testsuite");
        m_xml.writeAttribute("name", xmlText(name));
        writeCounts(cases.size(), counts[int(CaseOutcome::Failed)],
                    counts[int(CaseOutcome::Error)] + counts[int(CaseOutcome::Interrupted)],
                    counts[int(CaseOutcome::Skipped)], durationMs, true);
        m_xml.writeAttribute("timestamp", report.started.toUTC().toString("yyyy-MM-ddTHH:mm:ss"));
        m_xml.writeAttribute("hostname", xmlText(report.environment["host"].toString()));
        m_xml.writeStartElement("properties");
        for (auto it = report.environment.begin(); it != report.environment.end(); ++it) {
            m_xml.writeStartElement("property");
            m_xml.writeAttribute("name", xmlText(it.key()));
            m_xml.writeAttribute("value", xmlText(it.value().toVariant().toString()));
            m_xml.writeEndElement();
        }
        m_xml.writeEndElement();
        for (const CaseReport* testCase : cases)
            writeCase(*testCase);
        m_xml.writeEndElement();
    }

    void writeCase(const CaseReport& testCase)
    {
        m_xml.writeStartElement("testcase");
        m_xml.writeAttribute("classname", xmlText(testCase.suite));
        m_xml.writeAttribute("name", xmlText(testCase.name));
        m_xml.writeAttribute("time", seconds(testCase.durationMs()));
        const AttemptReport last = testCase.attempts.isEmpty() ? AttemptReport() : testCase.attempts.last();
        const ResultEntry* failure = last.firstFailure();
        if (!m_options.strictJUnit && failure && !failure->file.isEmpty()) {
            m_xml.writeAttribute("file", xmlText(relativeTo(m_options.baseFolder, failure->file)));
            m_xml.writeAttribute("line", QString::number(failure->line));
        }
        writeOutcome(last);
        if (!m_options.strictJUnit && testCase.isFlaky())
            writeFlakyFailures(testCase);
        writeOutput(testCase, last);
        m_xml.writeEndElement();
    }

    void writeOutcome(const AttemptReport& attempt)
    {
        switch (attempt.outcome) {
        case CaseOutcome::Passed:
            return;
        case CaseOutcome::Skipped:
            writeSkipped(attempt);
            return;
        case CaseOutcome::Failed:
            writeFailure("failure", attempt);
            return;
        case CaseOutcome::Error:
        case CaseOutcome::Interrupted:
            writeFailure("error", attempt);
            return;
        }
    }

    void writeSkipped(const AttemptReport& attempt)
    {
        m_xml.writeStartElement("skipped");
        for (const ResultEntry& entry : attempt.entries) {
            if (entry.type == ResultType::Skip && !m_options.strictJUnit) {
                m_xml.writeAttribute("message", xmlText(entry.message));
                break;
            }
        }
        m_xml.writeEndElement();
    }

    void writeFailure(const char* element, const AttemptReport& attempt)
    {
        const ResultEntry* failure = attempt.firstFailure();
        m_xml.writeStartElement(element);
        m_xml.writeAttribute("message", xmlText(failure ? failure->message : QStringLiteral("interrupted")));
        m_xml.writeAttribute("type",
                             failure ? resultTypeName(failure->type) : caseOutcomeName(attempt.outcome));
        QStringList texts;
        for (const ResultEntry& entry : attempt.entries) {
            if (isFailure(entry.type))
                texts += failureText(entry);
        }
        m_xml.writeCharacters(xmlText(texts.join(QLatin1String("\n\n"))));
        m_xml.writeEndElement();
    }

    void writeFlakyFailures(const CaseReport& testCase)
    {
        for (int i = 0; i + 1 < testCase.attempts.size(); ++i)
            writeFailure("flakyFailure", testCase.attempts[i]);
    }

    void writeOutput(const CaseReport& testCase, const AttemptReport& attempt)
    {
        QStringList lines;
        if (testCase.isFlaky())
            lines += QStringLiteral("flaky: passed in attempt %1").arg(testCase.attempts.size());
        for (const ResultEntry& entry : attempt.entries)
            lines += QStringLiteral("%1: %2").arg(resultTypeName(entry.type), entry.message);
        for (const ApplicationReport& application : attempt.applications) {
            lines += QStringLiteral("application %1: %2").arg(application.name, application.ending);
            if (!application.output.isEmpty())
                lines += application.output;
        }
        m_xml.writeTextElement("system-out", xmlText(lines.join(QLatin1Char('\n'))));
    }

    const ReporterOptions& m_options;
    QByteArray m_bytes;
    QXmlStreamWriter m_xml;
};

} // namespace

QByteArray renderJUnit(const RunReport& report, const ReporterOptions& options)
{
    return JUnitWriter(options).write(report);
}

} // namespace Torvix
