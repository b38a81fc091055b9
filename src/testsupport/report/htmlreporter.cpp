#include "htmlpage.h"
#include "testsupport/report/reporters.h"

#include <QUrl>

namespace Torvix {

namespace {

constexpr int outputLimit =
    20'000; ///< characters of an application's output or an object tree that are shown

QString escaped(const QString& text)
{
    return text.toHtmlEscaped();
}

QString shortened(const QString& text)
{
    if (text.size() <= outputLimit)
        return text;
    return QStringLiteral("[%1 characters left out]\n").arg(text.size() - outputLimit) +
           text.right(outputLimit);
}

class HtmlWriter
{
public:
    explicit HtmlWriter(const ReporterOptions& options) : m_options(options) {}

    QByteArray write(const RunReport& report)
    {
        const QString title = report.name.isEmpty() ? QStringLiteral("Torvix report") : report.name;
        m_html += QStringLiteral("<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                                 "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                                 "<title>%1</title>\n<style>%2</style>\n</head>\n<body>\n")
                      .arg(escaped(title), QLatin1String(htmlPageStyle));
        writeOverview(report, title);
        for (const CaseReport& testCase : report.cases)
            writeCase(testCase);
        m_html += QLatin1String("<p id=\"none\" class=\"faint\" hidden>No test case fits.</p>\n");
        writeEnvironment(report);
        m_html +=
            QStringLiteral("<script>%1</script>\n</body>\n</html>\n").arg(QLatin1String(htmlPageScript));
        return m_html.toUtf8();
    }

private:
    void writeOverview(const RunReport& report, const QString& title)
    {
        m_html += QStringLiteral("<h1>%1</h1>\n<p class=\"faint\">%2, %3%4</p>\n")
                      .arg(escaped(title), report.started.toUTC().toString("yyyy-MM-dd HH:mm:ss 'UTC'"),
                           durationText(report.durationMs),
                           report.complete ? QString() : QStringLiteral(", <b>the run has no end</b>"));
        m_html += QLatin1String("<ul class=\"counts\">\n");
        writeCount("all", "all", report.cases.size());
        for (const CaseOutcome outcome : {CaseOutcome::Passed, CaseOutcome::Failed, CaseOutcome::Error,
                                          CaseOutcome::Skipped, CaseOutcome::Interrupted}) {
            if (const int count = report.count(outcome))
                writeCount(caseOutcomeName(outcome), caseOutcomeName(outcome), count);
        }
        if (const int count = report.flakyCount())
            writeCount(QStringLiteral("flaky"), QStringLiteral("flaky"), count);
        m_html += QLatin1String("</ul>\n<input id=\"search\" type=\"search\" placeholder=\"Filter by text\" "
                                "aria-label=\"Filter by text\">\n");
        for (const QString& problem : report.problems)
            m_html += QStringLiteral("<p class=\"warning\">Result stream, %1</p>\n").arg(escaped(problem));
    }

    void writeCount(const QString& outcome, const QString& label, int count)
    {
        m_html += QStringLiteral("<li><button type=\"button\" data-outcome=\"%1\" aria-pressed=\"%2\">"
                                 "<span class=\"%1\">%3</span> %4</button></li>\n")
                      .arg(outcome, outcome == "all" ? "true" : "false", label)
                      .arg(count);
    }

    void writeCase(const CaseReport& testCase)
    {
        const QString outcome = caseOutcomeName(testCase.outcome());
        const bool fine = testCase.outcome() == CaseOutcome::Passed;
        m_html += QStringLiteral("<details class=\"case\" data-outcomes=\"%1%2\"%3>\n<summary>"
                                 "<span class=\"badge %1\">%1</span><span class=\"name\">%4</span>")
                      .arg(outcome, testCase.isFlaky() ? " flaky" : "",
                           fine || testCase.outcome() == CaseOutcome::Skipped ? "" : " open",
                           escaped(testCase.suite.isEmpty() ? testCase.name
                                                            : testCase.suite + " / " + testCase.name));
        if (testCase.isFlaky())
            m_html += QLatin1String("<span class=\"badge flaky\">flaky</span>");
        for (const QString& tag : testCase.tags)
            m_html += QStringLiteral("<span class=\"faint\">%1</span>").arg(escaped(tag));
        m_html += QStringLiteral("<span class=\"faint\">%1</span></summary>\n<div>\n")
                      .arg(durationText(testCase.durationMs()));
        for (int i = 0; i < testCase.attempts.size(); ++i)
            writeAttempt(testCase.attempts[i], testCase.attempts.size() > 1 ? i + 1 : 0);
        m_html += QLatin1String("</div>\n</details>\n");
    }

    void writeAttempt(const AttemptReport& attempt, int number)
    {
        if (number > 0)
            m_html += QStringLiteral("<p>Attempt %1: <span class=\"badge %2\">%2</span></p>\n")
                          .arg(number)
                          .arg(caseOutcomeName(attempt.outcome));
        m_html += QLatin1String("<ol class=\"steps\">\n");
        QStringList sections;
        for (const ResultEntry& entry : attempt.entries) {
            if (entry.sections != sections && !entry.sections.isEmpty())
                m_html += QStringLiteral("<li><b>%1</b></li>\n")
                              .arg(escaped(entry.sections.join(QStringLiteral(" / "))));
            sections = entry.sections;
            writeEntry(entry, attempt.started);
        }
        m_html += QLatin1String("</ol>\n");
        for (const ApplicationReport& application : attempt.applications)
            writeApplication(application);
        if (!attempt.objectTree.isEmpty())
            m_html += QStringLiteral("<details><summary>Object tree</summary><pre>%1</pre></details>\n")
                          .arg(escaped(shortened(attempt.objectTree)));
    }

    void writeEntry(const ResultEntry& entry, const QDateTime& started)
    {
        m_html += QStringLiteral("<li><span class=\"badge %1\">%1</span> %2")
                      .arg(resultTypeName(entry.type), escaped(entry.message));
        QStringList facts;
        if (!entry.file.isEmpty())
            facts += positionText(escaped(relativeTo(m_options.baseFolder, entry.file)), entry.line);
        if (entry.time.isValid() && started.isValid())
            facts +=
                QStringLiteral("after %1").arg(durationText(qMax<qint64>(0, started.msecsTo(entry.time))));
        if (!facts.isEmpty())
            m_html += QStringLiteral(" <span class=\"faint\">%1</span>").arg(facts.join(", "));
        if (!entry.detail.isEmpty())
            m_html += QStringLiteral("<pre>%1</pre>").arg(escaped(entry.detail));
        if (entry.source.firstLine > 0)
            writeSource(entry);
        for (const Attachment& attachment : entry.attachments)
            writeAttachment(attachment);
        m_html += QLatin1String("</li>\n");
    }

    void writeSource(const ResultEntry& entry)
    {
        m_html += QLatin1String("<pre>");
        int number = entry.source.firstLine;
        for (const QString& line : entry.source.lines) {
            const QString text = QStringLiteral("%1  %2").arg(number, 5).arg(escaped(line));
            m_html += number == entry.line ? QStringLiteral("<mark>%1</mark>\n").arg(text) : text + '\n';
            ++number;
        }
        m_html += QLatin1String("</pre>");
    }

    void writeAttachment(const Attachment& attachment)
    {
        const QString address = escaped(QString::fromLatin1(QUrl::toPercentEncoding(attachment.path, "/")));
        const QString text =
            escaped(attachment.description.isEmpty() ? attachment.path : attachment.description);
        if (attachment.mimeType.startsWith(QLatin1String("image/")))
            m_html += QStringLiteral("<p><a href=\"%1\"><img src=\"%1\" loading=\"lazy\" alt=\"%2\"></a></p>")
                          .arg(address, text);
        else
            m_html += QStringLiteral("<p><a href=\"%1\">%2</a></p>").arg(address, text);
    }

    void writeApplication(const ApplicationReport& application)
    {
        m_html += QStringLiteral("<p class=\"faint\">Application %1 (process %2): %3</p>\n")
                      .arg(escaped(application.name), QString::number(application.pid),
                           escaped(application.ending));
        if (!application.output.isEmpty())
            m_html += QStringLiteral("<details><summary>Output of %1</summary><pre>%2</pre></details>\n")
                          .arg(escaped(application.name), escaped(shortened(application.output)));
    }

    void writeEnvironment(const RunReport& report)
    {
        if (report.environment.isEmpty())
            return;
        m_html += QLatin1String("<details><summary>Environment</summary><table>\n");
        for (auto it = report.environment.begin(); it != report.environment.end(); ++it)
            m_html += QStringLiteral("<tr><td>%1</td><td>%2</td></tr>\n")
                          .arg(escaped(it.key()), escaped(it.value().toVariant().toString()));
        m_html += QLatin1String("</table></details>\n");
    }

    const ReporterOptions& m_options;
    QString m_html;
};

} // namespace

QByteArray renderHtml(const RunReport& report, const ReporterOptions& options)
{
    return HtmlWriter(options).write(report);
}

} // namespace Torvix
