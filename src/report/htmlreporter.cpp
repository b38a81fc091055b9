#include "htmlpage.h"
#include "report/htmlcase.h"

#include <QSet>
#include <QUrl>

#include <algorithm>
#include <numeric>

namespace Torvix {

namespace {

/** The page of 500 cases stays below 2 MB; of more, each adds its share. */
constexpr int pageBytes = 1'900'000;
constexpr int pageBytesOfCase = pageBytes / 500;
/** So much stands in the page as it is; what is beyond is packed and unfolds when a case is opened. */
constexpr int plainBytes = 500'000;

/** Tried one after the other until the page is small enough. */
constexpr HtmlLimits limitSteps[] = {
    {},
    {20'000, 2000, 20'000, 100'000}, // what failed is what people read
    {4000, 300, 4000, 100'000},      //
    {1000, 0, 1000, 100'000},        //
    {1000, 0, 1000, 100},            //
    {1000, 0, 500, 40},              //
    {300, 0, 300, 15},               //
    {0, 0, 120, 3},
};

bool isFine(const CaseReport& testCase)
{
    return testCase.outcome() == CaseOutcome::Passed || testCase.outcome() == CaseOutcome::Skipped;
}

/** What links to each case: its name, with a number when there are several of that name. */
QStringList caseIds(const RunReport& report)
{
    QStringList ids;
    QSet<QString> taken{QStringLiteral("search"), QStringLiteral("none"), QStringLiteral("packed")};
    for (const CaseReport& testCase : report.cases) {
        const QString name =
            testCase.suite.isEmpty() ? testCase.name : testCase.suite + QLatin1Char('/') + testCase.name;
        QString id = name;
        id.replace(QLatin1Char(' '), QLatin1Char('_')); // an id has no blanks
        const QString base = id;
        for (int i = 2; taken.contains(id); ++i)
            id = QStringLiteral("%1~%2").arg(base, QString::number(i));
        taken += id;
        ids += id;
    }
    return ids;
}

/** The bodies of the cases: those that stand in the page, failures first, and the others packed. */
struct Bodies
{
    QStringList plain; ///< of each case; null when it is packed
    QByteArray packed; ///< zlib in Base64: the bodies of the others, in their order, with NUL between

    qint64 size() const
    {
        return std::accumulate(plain.begin(), plain.end(), qint64(packed.size()),
                               [](qint64 sum, const QString& body) { return sum + body.size(); });
    }
};

Bodies makeBodies(const RunReport& report, const ReporterOptions& options, const HtmlLimits& limits)
{
    Bodies bodies;
    for (const CaseReport& testCase : report.cases)
        bodies.plain += htmlCaseBody(testCase, options, limits);
    QVector<int> order(report.cases.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_partition(order.begin(), order.end(), [&](int i) { return !isFine(report.cases[i]); });
    int left = plainBytes;
    QVector<int> packed;
    for (const int i : order) {
        const int size = bodies.plain[i].size();
        if (size <= left)
            left -= size;
        else
            packed += i;
    }
    std::sort(packed.begin(), packed.end());
    QByteArray text;
    for (const int i : packed) {
        text += bodies.plain[i].toUtf8() + '\0';
        bodies.plain[i] = QString();
    }
    constexpr int lengthField = 4; // qCompress() puts the length before the zlib stream
    if (!packed.isEmpty())
        bodies.packed = qCompress(text).mid(lengthField).toBase64();
    return bodies;
}

class HtmlWriter
{
public:
    explicit HtmlWriter(const ReporterOptions& options) : m_options(options) {}

    QByteArray write(const RunReport& report)
    {
        const qint64 limit = qMax(qint64(pageBytes), qint64(report.cases.size()) * pageBytesOfCase);
        constexpr qint64 headBytes = 600; // of a case, its tags included
        const qint64 room = limit - 30'000 - headBytes * report.cases.size();
        Bodies bodies;
        bool shortened = false;
        for (const HtmlLimits& limits : limitSteps) {
            bodies = makeBodies(report, m_options, limits);
            if (bodies.size() <= room)
                break;
            shortened = true;
        }
        const QString title = report.name.isEmpty() ? QStringLiteral("Torvix report") : report.name;
        m_html += QStringLiteral("<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                                 "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                                 "<title>%1</title>\n<style>%2</style>\n</head>\n<body>\n")
                      .arg(htmlText(title), QLatin1String(htmlPageStyle));
        writeOverview(report, title);
        writeFilter(report);
        if (shortened)
            m_html += QLatin1String("<p class=\"faint\">Long texts are shortened here; the result stream has "
                                    "them whole.</p>\n");
        m_html += QLatin1String("<main>\n");
        const QStringList ids = caseIds(report);
        for (int i = 0; i < report.cases.size(); ++i)
            writeCase(report.cases[i], ids[i], bodies.plain[i]);
        m_html += QLatin1String("</main>\n<p id=\"none\" class=\"faint\" hidden>No test case fits.</p>\n");
        writeEnvironment(report);
        if (!bodies.packed.isEmpty())
            m_html += QStringLiteral("<script type=\"application/zlib\" id=\"packed\">%1</script>\n")
                          .arg(QLatin1String(bodies.packed));
        m_html +=
            QStringLiteral("<script>%1</script>\n</body>\n</html>\n").arg(QLatin1String(htmlPageScript));
        return m_html.toUtf8();
    }

private:
    void writeOverview(const RunReport& report, const QString& title)
    {
        QStringList facts;
        if (report.started.isValid())
            facts += report.started.toUTC().toString("yyyy-MM-dd HH:mm:ss 'UTC'");
        facts += durationText(report.durationMs);
        if (const int count = report.notRunCount())
            facts += QStringLiteral("%1 not run").arg(count);
        if (report.interrupted)
            facts += QStringLiteral("<b class=\"interrupted\">interrupted</b>");
        if (!report.complete)
            facts += QStringLiteral("<b class=\"interrupted\">the run has no end</b>");
        m_html += QStringLiteral("<header>\n<h1>%1</h1>\n<p class=\"faint\">%2</p>\n<div class=\"bar\" "
                                 "aria-hidden=\"true\">")
                      .arg(htmlText(title), facts.join(QStringLiteral(" \u00b7 ")));
        for (const CaseOutcome outcome : outcomes) {
            if (const int count = report.count(outcome))
                m_html += QStringLiteral("<i class=\"%1\" style=\"flex:%2\"></i>")
                              .arg(caseOutcomeName(outcome))
                              .arg(count);
        }
        m_html += QLatin1String("</div>\n");
        for (const QString& problem : report.problems)
            m_html += QStringLiteral("<p class=\"warning\">Result stream, %1</p>\n").arg(htmlText(problem));
        m_html += QLatin1String("</header>\n");
    }

    void writeFilter(const RunReport& report)
    {
        m_html += QLatin1String("<nav aria-label=\"Filter\">\n<ul class=\"counts\">\n");
        writeCount(QStringLiteral("all"), report.cases.size());
        for (const CaseOutcome outcome : outcomes) {
            if (const int count = report.count(outcome))
                writeCount(caseOutcomeName(outcome), count);
        }
        if (const int count = report.flakyCount())
            writeCount(QStringLiteral("flaky"), count);
        m_html +=
            QLatin1String("</ul>\n<input id=\"search\" type=\"search\" placeholder=\"Filter by text ( / )\" "
                          "aria-label=\"Filter by text\">\n"
                          "<button type=\"button\" id=\"fold\">Open all</button>\n</nav>\n");
    }

    void writeCount(const QString& outcome, int count)
    {
        m_html += QStringLiteral("<li><button type=\"button\" data-outcome=\"%1\" aria-pressed=\"%2\">"
                                 "<i class=\"%1\"></i>%1 <b>%3</b></button></li>\n")
                      .arg(outcome, outcome == "all" ? "true" : "false")
                      .arg(count);
    }

    void writeCase(const CaseReport& testCase, const QString& id, const QString& body)
    {
        const QString outcome = caseOutcomeName(testCase.outcome());
        const bool isPacked = body.isNull();
        m_html += QStringLiteral("<details class=\"case\" id=\"%1\" data-outcomes=\"%2%3\"%4%5>\n"
                                 "<summary><b class=\"%2\">%2</b>")
                      .arg(htmlText(id), outcome, testCase.isFlaky() ? " flaky" : "",
                           isPacked ? " data-packed" : "", isFine(testCase) || isPacked ? "" : " open");
        const QString suite =
            testCase.suite.isEmpty()
                ? QString()
                : QStringLiteral("<span class=\"faint\">%1 / </span>").arg(htmlText(testCase.suite));
        m_html += QStringLiteral("<span class=\"name\">%1%2</span>").arg(suite, htmlText(testCase.name));
        if (testCase.isFlaky())
            m_html += QStringLiteral("<b class=\"flaky\">flaky</b>");
        for (const QString& tag : testCase.tags)
            m_html += QStringLiteral("<span class=\"tag\">%1</span>").arg(htmlText(tag));
        m_html +=
            QStringLiteral("<span class=\"faint\">%1</span><a href=\"#%2\" aria-label=\"Link to %3\">#</a>"
                           "</summary>\n<div class=\"body\">\n%4</div>\n</details>\n")
                .arg(durationText(testCase.durationMs()),
                     QString::fromLatin1(QUrl::toPercentEncoding(id, "/")), htmlText(testCase.name), body);
    }

    void writeEnvironment(const RunReport& report)
    {
        if (report.environment.isEmpty())
            return;
        m_html += QLatin1String("<details class=\"fold\"><summary>Environment</summary><table>\n");
        for (auto it = report.environment.begin(); it != report.environment.end(); ++it)
            m_html += QStringLiteral("<tr><th scope=\"row\">%1</th><td>%2</td></tr>\n")
                          .arg(htmlText(it.key()), htmlText(it.value().toVariant().toString()));
        m_html += QLatin1String("</table></details>\n");
    }

    static constexpr CaseOutcome outcomes[] = {CaseOutcome::Failed, CaseOutcome::Error,
                                               CaseOutcome::Interrupted, CaseOutcome::Skipped,
                                               CaseOutcome::Passed};

    const ReporterOptions& m_options;
    QString m_html;
};

} // namespace

QByteArray renderHtml(const RunReport& report, const ReporterOptions& options)
{
    return HtmlWriter(options).write(report);
}

} // namespace Torvix
