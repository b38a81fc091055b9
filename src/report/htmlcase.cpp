#include "report/htmlcase.h"

#include "report/texts.h"

#include <QUrl>

#include <algorithm>

namespace Torvix {

namespace {

/** Of a line of source: a bundled script has lines of a megabyte. */
constexpr int longestSourceLine = 500;
/** Steps before a failure that stand open; when there are many more, those are folded. */
constexpr int stepsBeforeFailure = 3;
constexpr int fewSteps = 8;

QString percentEncoded(const QString& path)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(path, "/"));
}

QString fold(const QString& title, const QString& content)
{
    return QStringLiteral("<details class=\"fold\"><summary>%1</summary>").arg(htmlText(title)) + content +
           QStringLiteral("</details>\n");
}

QString foldedText(const QString& title, const QString& text, int limit)
{
    return fold(title, QStringLiteral("<pre tabindex=\"0\">") + htmlText(cutBegin(text, limit)) +
                           QStringLiteral("</pre>"));
}

QString sourceHtml(const ResultEntry& entry, const QString& place)
{
    QString html =
        QStringLiteral("<p class=\"place\">%1</p><pre class=\"source\" tabindex=\"0\">").arg(htmlText(place));
    int number = entry.source.firstLine;
    for (const QString& line : entry.source.lines) {
        html += QStringLiteral("<%1><i>%2</i> ")
                    .arg(QLatin1String(number == entry.line ? "mark" : "span"))
                    .arg(number, 5) +
                htmlText(cutEnd(line, longestSourceLine)) +
                QLatin1String(number == entry.line ? "</mark>" : "</span>");
        ++number;
    }
    return html + QStringLiteral("</pre>");
}

/** A step of a list, with the sections in which it is. */
struct Step
{
    QString html;
    QStringList sections;
};

QString stepsHtml(const QVector<Step>& steps, QStringList sections = {})
{
    QString html;
    for (const Step& step : steps) {
        if (step.sections != sections && !step.sections.isEmpty())
            html += QStringLiteral("<li class=\"section\">%1</li>\n")
                        .arg(htmlText(step.sections.join(QStringLiteral(" \u203a "))));
        sections = step.sections;
        html += step.html;
    }
    return html;
}

class AttemptWriter : public EventVisitor
{
public:
    AttemptWriter(const AttemptSummary& attempt, const ReporterOptions& options, const HtmlLimits& limits,
                  HtmlPictures* pictures)
        : m_attempt(attempt)
        , m_options(options)
        , m_limits(limits)
        , m_pictures(*pictures)
    {
    }

    void result(const ResultEntry& entry) override
    {
        const bool failed = isFailure(entry.type);
        int& left = failed ? m_failuresLeft : m_stepsLeft;
        if (--left < 0) {
            ++(failed ? m_failuresLeftOut : m_stepsLeftOut);
            return;
        }
        if (failed)
            showSteps(true);
        m_steps += {stepHtml(entry), entry.sections};
        if (failed)
            showSteps(false);
    }

    void applicationEnded(const ApplicationReport& application) override
    {
        const QString head = QStringLiteral("Application %1 (process %2): %3")
                                 .arg(application.name, QString::number(application.pid), application.ending);
        m_behind += application.output.isEmpty()
                        ? QStringLiteral("<p class=\"faint\">%1</p>\n").arg(htmlText(head))
                        : foldedText(head, application.output, outputLimit());
    }

    void objectTree(const QString& text) override
    {
        m_behind += foldedText(QStringLiteral("Object tree at the failure"), text, outputLimit());
    }

    QString take()
    {
        showSteps(false);
        showLeftOut(m_failuresLeftOut, "more failures");
        showLeftOut(m_stepsLeftOut, "more steps, none of them a failure,");
        const QString end =
            m_attempt.outcome == CaseOutcome::Interrupted
                ? QStringLiteral("<p class=\"interrupted\">The run ended before this test case did.</p>\n")
                : QString();
        const QString list =
            m_html.isEmpty() ? QString()
                             : QStringLiteral("<ol class=\"steps\">\n") + m_html + QStringLiteral("</ol>\n");
        return end + list + m_behind;
    }

private:
    int outputLimit() const { return isFine(m_attempt.outcome) ? m_limits.fineOutput : m_limits.output; }

    /** Writes the steps that wait; long before a failure, folded. */
    void showSteps(bool isBeforeFailure)
    {
        if (isBeforeFailure && m_steps.size() > fewSteps) {
            const int count = m_steps.size() - stepsBeforeFailure;
            m_html += QStringLiteral("<li class=\"folded\">") +
                      fold(QStringLiteral("%1 steps before").arg(count),
                           QStringLiteral("<ol class=\"steps\">\n") + stepsHtml(m_steps.mid(0, count)) +
                               QStringLiteral("</ol>")) +
                      QStringLiteral("</li>\n");
            m_steps.remove(0, count);
            m_sections.clear();
        }
        if (m_steps.isEmpty())
            return;
        m_html += stepsHtml(m_steps, m_sections);
        m_sections = m_steps.last().sections;
        m_steps.clear();
    }

    void showLeftOut(int count, const char* what)
    {
        if (count > 0)
            m_html += QStringLiteral("<li class=\"section\">%1 %2 are in the result stream</li>\n")
                          .arg(QString::number(count), QLatin1String(what));
    }

    QString stepHtml(const ResultEntry& entry)
    {
        const QString type = resultTypeName(entry.type);
        QString html = QStringLiteral("<li><b class=\"%1\">%1</b><div><div class=\"message\">").arg(type) +
                       htmlText(cutEnd(headline(entry), m_limits.text)) + QLatin1String("</div>");
        html += findingsHtml(entry);
        const QString place = positionText(relativeTo(m_options.baseFolder, entry.file), entry.line);
        const bool hasSource = entry.source.firstLine > 0;
        if (hasSource)
            html += sourceHtml(entry, place);
        for (const Attachment& attachment : entry.attachments)
            html += attachmentHtml(attachment);
        QStringList facts;
        if (!entry.file.isEmpty() && !hasSource)
            facts += QStringLiteral("<span title=\"%1\">%2</span>")
                         .arg(htmlText(place), htmlText(place.section(QLatin1Char('/'), -1)));
        if (entry.time.isValid() && m_attempt.started.isValid())
            facts += QStringLiteral("+%1").arg(
                durationText(qMax<qint64>(0, m_attempt.started.msecsTo(entry.time))));
        return html + QStringLiteral("</div><small>") + facts.join(QLatin1String("<br>")) +
               QStringLiteral("</small></li>\n");
    }

    QString findingsHtml(const ResultEntry& entry) const
    {
        if (entry.detail.isEmpty() && entry.difference.isEmpty())
            return {};
        QString html = QStringLiteral("<pre class=\"detail\" tabindex=\"0\">") +
                       htmlText(cutEnd(entry.detail, m_limits.text));
        if (!entry.difference.isEmpty())
            html += htmlDifference(cutEnd(entry.difference, m_limits.text));
        return html + QStringLiteral("</pre>");
    }

    QString attachmentHtml(const Attachment& attachment)
    {
        const QString address = htmlText(percentEncoded(linkTo(attachment, m_options)));
        const QString text =
            htmlText(attachment.description.isEmpty() ? attachment.path : attachment.description);
        if (attachment.mimeType.startsWith(QLatin1String("image/")))
            return QStringLiteral(
                       "<figure><button type=\"button\" class=\"zoom\"><img src=\"%1\" loading=\"lazy\" "
                       "alt=\"%2\"></button><figcaption>%2 "
                       "(<a href=\"%3\">file</a>)</figcaption></figure>")
                .arg(m_pictures.mark(attachment, address), text, address);
        if (attachment.mimeType.startsWith(QLatin1String("video/")))
            return QStringLiteral(
                       "<figure><video src=\"%1\" controls preload=\"none\" aria-label=\"%2\"></video>"
                       "<figcaption><a href=\"%1\">%2</a></figcaption></figure>")
                .arg(address, text);
        return QStringLiteral("<p><a href=\"%1\">%2</a></p>").arg(address, text);
    }

    const AttemptSummary& m_attempt;
    const ReporterOptions& m_options;
    const HtmlLimits& m_limits;
    HtmlPictures& m_pictures;
    int m_stepsLeft = m_limits.steps;
    int m_failuresLeft = m_limits.failures;
    int m_stepsLeftOut = 0;
    int m_failuresLeftOut = 0;
    QVector<Step> m_steps;  ///< that are not written yet
    QStringList m_sections; ///< of the last step that is
    QString m_html;
    QString m_behind; ///< what stands below the steps
};

/** How many characters two texts have in common at their begins, and at their ends behind that. */
std::pair<int, int> commonEnds(const QString& a, const QString& b)
{
    const int most = qMin(a.size(), b.size());
    int begin = 0;
    while (begin < most && a[begin] == b[begin])
        ++begin;
    int end = 0;
    while (end < most - begin && a[a.size() - 1 - end] == b[b.size() - 1 - end])
        ++end;
    // A pair of surrogates is one character.
    if (begin > 0 && a[begin - 1].isHighSurrogate())
        --begin;
    if (end > 0 && a[a.size() - end].isLowSurrogate())
        --end;
    return {begin, end};
}

QString differenceLine(const QString& line, std::pair<int, int> common = {0, 0})
{
    const char* element = line.startsWith(QLatin1String("- "))   ? "del"
                          : line.startsWith(QLatin1String("+ ")) ? "ins"
                                                                 : "span";
    const int length = line.size() - common.first - common.second;
    const bool isMarked = common != std::pair<int, int>() && length > 0;
    const QString text = isMarked ? htmlText(line.left(common.first)) + QStringLiteral("<b>") +
                                        htmlText(line.mid(common.first, length)) + QStringLiteral("</b>") +
                                        htmlText(line.right(common.second))
                                  : htmlText(line);
    return QStringLiteral("<%1>").arg(QLatin1String(element)) + text +
           QStringLiteral("</%1>").arg(QLatin1String(element));
}

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

QString htmlDifference(const QString& difference)
{
    const QStringList lines = difference.split(QLatin1Char('\n'));
    const auto isOne = [&lines](int index, const char* mark) {
        return lines.value(index).startsWith(QLatin1String(mark)) &&
               !lines.value(index - 1).startsWith(QLatin1String(mark)) &&
               !lines.value(index + 1).startsWith(QLatin1String(mark));
    };
    QString html;
    for (int i = 0; i < lines.size(); ++i) {
        // A single line that became another: what of it did is worth a mark.
        if (!isOne(i, "- ") || !isOne(i + 1, "+ ")) {
            html += differenceLine(lines[i]);
            continue;
        }
        constexpr int sign = 2;
        auto common = commonEnds(lines[i].mid(sign), lines[i + 1].mid(sign));
        if (common != std::pair<int, int>())
            common.first += sign;
        html += differenceLine(lines[i], common) + differenceLine(lines[i + 1], common);
        ++i;
    }
    return html;
}

QString htmlCaseBody(const RecordedRun& run, const CaseSummary& testCase, const ReporterOptions& options,
                     const HtmlLimits& limits, HtmlPictures* pictures)
{
    QString html;
    for (int i = 0; i < testCase.attempts.size(); ++i) {
        const AttemptSummary& attempt = testCase.attempts[i];
        if (testCase.attempts.size() > 1)
            html += QStringLiteral("<h4>Attempt %1 <span class=\"%2\">%2</span></h4>\n")
                        .arg(QString::number(i + 1), caseOutcomeName(attempt.outcome));
        AttemptWriter writer(attempt, options, limits, pictures);
        run.visit(attempt, writer);
        html += writer.take();
    }
    return html;
}

} // namespace Torvix
