#include "report/htmlcase.h"

#include <QUrl>

#include <algorithm>

namespace Torvix {

namespace {

QString begun(const QString& text, int limit)
{
    if (text.size() <= limit)
        return text;
    return text.left(limit) + QStringLiteral("\n[%1 characters left out]").arg(text.size() - limit);
}

QString ended(const QString& text, int limit)
{
    if (text.size() <= limit)
        return text;
    return QStringLiteral("[%1 characters left out]\n").arg(text.size() - limit) + text.right(limit);
}

/** A detail with a difference has its lines marked: what was there, and what was to be. */
QString detailHtml(const QString& detail)
{
    const QStringList lines = detail.split(QLatin1Char('\n'));
    const auto any = [&lines](const char* mark) {
        return std::any_of(lines.begin(), lines.end(),
                           [mark](const QString& line) { return line.startsWith(QLatin1String(mark)); });
    };
    if (!any("- ") || !any("+ "))
        return htmlText(detail);
    QString html;
    for (const QString& line : lines) {
        const char* element = line.startsWith(QLatin1String("- "))   ? "del"
                              : line.startsWith(QLatin1String("+ ")) ? "ins"
                                                                     : "span";
        html += QStringLiteral("<%1>%2</%1>").arg(QLatin1String(element), htmlText(line));
    }
    return html;
}

class BodyWriter
{
public:
    BodyWriter(const ReporterOptions& options, const HtmlLimits& limits)
        : m_options(options)
        , m_limits(limits)
    {
    }

    QString write(const CaseReport& testCase)
    {
        for (int i = 0; i < testCase.attempts.size(); ++i) {
            if (testCase.attempts.size() > 1)
                m_html += QStringLiteral("<h3>Attempt %1 <span class=\"%2\">%2</span></h3>\n")
                              .arg(i + 1)
                              .arg(caseOutcomeName(testCase.attempts[i].outcome));
            writeAttempt(testCase.attempts[i]);
        }
        return std::move(m_html);
    }

private:
    void writeAttempt(const AttemptReport& attempt)
    {
        if (attempt.outcome == CaseOutcome::Interrupted)
            m_html +=
                QLatin1String("<p class=\"interrupted\">The run ended before this test case did.</p>\n");
        m_html += QLatin1String("<ol class=\"steps\">\n");
        QStringList sections;
        int left = m_limits.steps;
        int leftOut = 0;
        for (const ResultEntry& entry : attempt.entries) {
            if (--left < 0 && !isFailure(entry.type)) {
                ++leftOut;
                continue;
            }
            if (entry.sections != sections && !entry.sections.isEmpty())
                m_html += QStringLiteral("<li class=\"section\">%1</li>\n")
                              .arg(htmlText(entry.sections.join(QStringLiteral(" \u203a "))));
            sections = entry.sections;
            writeEntry(entry, attempt.started);
        }
        if (leftOut > 0)
            m_html += QStringLiteral("<li class=\"section\">%1 more steps, none of them a failure, are left "
                                     "out</li>\n")
                          .arg(leftOut);
        m_html += QLatin1String("</ol>\n");
        const bool isFine = attempt.outcome == CaseOutcome::Passed || attempt.outcome == CaseOutcome::Skipped;
        const int outputLimit = isFine ? m_limits.fineOutput : m_limits.output;
        for (const ApplicationReport& application : attempt.applications)
            writeApplication(application, outputLimit);
        if (!attempt.objectTree.isEmpty())
            writeFold(QStringLiteral("Object tree at the failure"), attempt.objectTree, outputLimit);
    }

    void writeEntry(const ResultEntry& entry, const QDateTime& started)
    {
        m_html += QStringLiteral("<li><b class=\"%1\">%1</b><div><div class=\"message\">%2</div>")
                      .arg(resultTypeName(entry.type), htmlText(begun(entry.message, m_limits.text)));
        if (!entry.detail.isEmpty())
            m_html += QStringLiteral("<pre class=\"detail\" tabindex=\"0\">%1</pre>")
                          .arg(detailHtml(begun(entry.detail, m_limits.text)));
        if (entry.source.firstLine > 0)
            writeSource(entry);
        for (const Attachment& attachment : entry.attachments)
            writeAttachment(attachment);
        m_html += QLatin1String("</div>");
        QStringList facts;
        if (!entry.file.isEmpty())
            facts += htmlText(positionText(relativeTo(m_options.baseFolder, entry.file), entry.line));
        if (entry.time.isValid() && started.isValid())
            facts += QStringLiteral("+%1").arg(durationText(qMax<qint64>(0, started.msecsTo(entry.time))));
        m_html += QStringLiteral("<small>%1</small></li>\n").arg(facts.join(QLatin1String("<br>")));
    }

    void writeSource(const ResultEntry& entry)
    {
        m_html += QLatin1String("<pre class=\"source\" tabindex=\"0\">");
        int number = entry.source.firstLine;
        for (const QString& line : entry.source.lines) {
            m_html += QStringLiteral("<%1><i>%2</i> %3</%1>")
                          .arg(number == entry.line ? "mark" : "span")
                          .arg(number, 5)
                          .arg(htmlText(begun(line, 500)));
            ++number;
        }
        m_html += QLatin1String("</pre>");
    }

    void writeAttachment(const Attachment& attachment)
    {
        const QString address = htmlText(QString::fromLatin1(QUrl::toPercentEncoding(attachment.path, "/")));
        const QString text =
            htmlText(attachment.description.isEmpty() ? attachment.path : attachment.description);
        const char* form = "<p><a href=\"%1\">%2</a></p>";
        if (attachment.mimeType.startsWith(QLatin1String("image/")))
            form = "<figure><a href=\"%1\"><img src=\"%1\" loading=\"lazy\" alt=\"%2\"></a>"
                   "<figcaption>%2</figcaption></figure>";
        else if (attachment.mimeType.startsWith(QLatin1String("video/")))
            form = "<figure><video src=\"%1\" controls preload=\"none\" aria-label=\"%2\"></video>"
                   "<figcaption><a href=\"%1\">%2</a></figcaption></figure>";
        m_html += QString::fromLatin1(form).arg(address, text);
    }

    void writeApplication(const ApplicationReport& application, int outputLimit)
    {
        const QString head = QStringLiteral("Application %1 (process %2): %3")
                                 .arg(application.name, QString::number(application.pid), application.ending);
        if (application.output.isEmpty())
            m_html += QStringLiteral("<p class=\"faint\">%1</p>\n").arg(htmlText(head));
        else
            writeFold(head, application.output, outputLimit);
    }

    void writeFold(const QString& title, const QString& text, int limit)
    {
        m_html += QStringLiteral("<details class=\"fold\"><summary>%1</summary><pre tabindex=\"0\">%2</pre>"
                                 "</details>\n")
                      .arg(htmlText(title), htmlText(ended(text, limit)));
    }

    const ReporterOptions& m_options;
    const HtmlLimits& m_limits;
    QString m_html;
};

} // namespace

QString htmlText(const QString& text)
{
    QString visible = text.toHtmlEscaped();
    for (QChar& c : visible) {
        constexpr ushort controlPictures = 0x2400;
        if (c < ' ' && c != '\n' && c != '\t')
            c = QChar(controlPictures + c.unicode());
        else if (c >= QChar(0x7f) && c < QChar(0xa0))
            c = QChar(QChar::ReplacementCharacter);
    }
    return visible;
}

QString htmlCaseBody(const CaseReport& testCase, const ReporterOptions& options, const HtmlLimits& limits)
{
    return BodyWriter(options, limits).write(testCase);
}

} // namespace Torvix
