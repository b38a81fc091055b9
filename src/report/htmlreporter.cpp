#include "htmlpage.h"
#include "report/htmlcase.h"
#include "report/texts.h"

#include <QSet>
#include <QUrl>

#include <algorithm>
#include <iterator>
#include <limits>
#include <memory>

namespace Torvix {

namespace {

/** The page of 500 cases stays below 2 MB without its pictures; of more, each adds its share. */
constexpr int pageBytes = 1'900'000;
constexpr int pageBytesOfCase = pageBytes / 500;
/** So much stands in the page as it is; what is beyond is packed and unfolds when a case is opened. */
constexpr int plainBytes = 500'000;
constexpr int bestRatio = 10; ///< by which texts become shorter when they are packed
constexpr int openCases = 20; ///< of those that failed; a page of more is read by their names

/** Tried one after the other until the page is small enough. */
constexpr HtmlLimits limitSteps[] = {
    {},
    {20'000, 2000, 20'000, 100'000, 1000}, // what failed is what people read
    {4000, 300, 4000, 100'000, 1000},      //
    {1000, 0, 1000, 100'000, 1000},        //
    {1000, 0, 1000, 100, 100},             //
    {1000, 0, 500, 40, 20},                //
    {300, 0, 300, 15, 10},                 //
    {0, 0, 120, 3, 3},
};

/** The cases of a page stand in groups, what people look for first. */
struct Group
{
    const char* title;
    bool (*has)(const CaseSummary& testCase);
};

constexpr Group groups[] = {
    {"Not passed", [](const CaseSummary& each) { return !isFine(each.outcome()); }},
    {"Flaky", [](const CaseSummary& each) { return each.isFlaky(); }},
    {"Skipped", [](const CaseSummary& each) { return each.outcome() == CaseOutcome::Skipped; }},
    {"Passed", [](const CaseSummary&) { return true; }},
};

int groupOf(const CaseSummary& testCase)
{
    return int(std::find_if(std::begin(groups), std::end(groups),
                            [&testCase](const Group& each) { return each.has(testCase); }) -
               std::begin(groups));
}

struct Verdict
{
    QString text;
    bool isGood;
};

/** What people want to know first. */
Verdict verdictOf(const RunSummary& run)
{
    const int count = run.cases.size();
    const int skipped = run.count(CaseOutcome::Skipped);
    const int notPassed = count - skipped - run.count(CaseOutcome::Passed);
    if (notPassed > 0)
        return {QStringLiteral("%1 of %2 test cases did not pass").arg(notPassed).arg(count), false};
    if (run.interrupted)
        return {QStringLiteral("The run was interrupted"), false};
    if (!run.complete)
        return {QStringLiteral("The run has no end"), false};
    if (skipped == count)
        return {count == 0 ? QStringLiteral("No test cases") : QStringLiteral("All skipped"), false};
    return {skipped == 0 ? QStringLiteral("All passed") : QStringLiteral("Passed, %1 skipped").arg(skipped),
            true};
}

/** What links to each case: its name, with a number when there are several of that name. */
QStringList caseIds(const RunSummary& run)
{
    QStringList ids;
    QSet<QString> taken{QStringLiteral("search"), QStringLiteral("none"), QStringLiteral("packed"),
                        QStringLiteral("fold")};
    for (const CaseSummary& testCase : run.cases) {
        QString id = testCase.fullName();
        id.replace(QLatin1Char(' '), QLatin1Char('_')); // an id has no blanks
        const QString base = id;
        for (int i = 2; taken.contains(id); ++i)
            id = QStringLiteral("%1~%2").arg(base, QString::number(i));
        taken += id;
        ids += id;
    }
    return ids;
}

/** zlib in Base64. */
QByteArray packed(const QByteArray& text)
{
    constexpr int lengthField = 4; // qCompress() puts the length before the zlib stream
    return text.isEmpty() ? text : qCompress(text).mid(lengthField).toBase64();
}

/** The bodies of the cases in the order of the page: the first of them stand in it, the others packed. */
class Bodies
{
public:
    /** False when they are far larger than there is room: the rest is then not made. */
    bool make(const RecordedRun& run, const QVector<int>& order, const ReporterOptions& options,
              const HtmlLimits& limits, qint64 room)
    {
        qint64 size = 0;
        int left = plainBytes;
        for (const int index : order) {
            const QString body = htmlCaseBody(run, run.summary().cases[index], options, limits, &m_pictures);
            size += body.size();
            if (size > bestRatio * room)
                return false;
            const bool isPlain = body.size() <= left;
            left -= isPlain ? body.size() : 0;
            m_bodies += body;
            m_isPlain += isPlain;
        }
        return this->size() <= room;
    }

    bool isPlain(int place) const { return m_isPlain[place]; }
    QString plain(int place) { return m_pictures.embedded(m_bodies[place]); }

    /** The others in their order with NUL between, with their pictures. */
    QByteArray pack()
    {
        QByteArray text;
        for (int place = 0; place < m_bodies.size(); ++place) {
            if (!m_isPlain[place])
                text += m_pictures.embedded(m_bodies[place]).toUtf8() + '\0';
        }
        return packed(text);
    }

    const HtmlPictures& pictures() const { return m_pictures; }

private:
    /** In the page, without the pictures. */
    qint64 size() const
    {
        qint64 plain = 0;
        QByteArray others;
        for (int place = 0; place < m_bodies.size(); ++place) {
            if (m_isPlain[place])
                plain += m_bodies[place].size();
            else
                others += m_bodies[place].toUtf8() + '\0';
        }
        return plain + packed(others).size();
    }

    QStringList m_bodies;
    QVector<bool> m_isPlain;
    HtmlPictures m_pictures;
};

class HtmlWriter
{
public:
    HtmlWriter(const RecordedRun& run, const ReporterOptions& options, QIODevice* out)
        : m_run(run)
        , m_summary(run.summary())
        , m_options(options)
        , m_out(out)
        , m_ids(caseIds(m_summary))
    {
        for (int i = 0; i < m_summary.cases.size(); ++i)
            m_order += i;
        std::stable_sort(m_order.begin(), m_order.end(), [this](int a, int b) {
            return groupOf(m_summary.cases[a]) < groupOf(m_summary.cases[b]);
        });
    }

    void write()
    {
        const bool isShortened = makeBodies();
        const QString title = m_summary.name.isEmpty() ? QStringLiteral("Torvix report") : m_summary.name;
        m_out << "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                 "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>"
              << htmlText(title) << "</title>\n<style>" << htmlPageStyle << "</style>\n</head>\n<body>\n";
        writeOverview(title);
        writeFilter();
        m_out << "<main>\n";
        writeCases();
        m_out << "<p id=\"none\" class=\"faint\" hidden>No test case matches the filter.</p>\n</main>\n";
        const QByteArray others = m_bodies->pack();
        writeFooter(isShortened);
        if (!others.isEmpty())
            m_out << "<script type=\"application/zlib\" id=\"packed\">" << others << "</script>\n";
        m_out << "<script>" << htmlPageScript << "</script>\n</body>\n</html>\n";
    }

private:
    /** Whether texts had to be shortened. */
    bool makeBodies()
    {
        const qint64 limit = qMax(qint64(pageBytes), qint64(m_summary.cases.size()) * pageBytesOfCase);
        constexpr qint64 headBytes = 600; // of a case, its tags included
        const qint64 room = limit - 30'000 - headBytes * m_summary.cases.size();
        const HtmlLimits& last = *std::rbegin(limitSteps);
        for (const HtmlLimits& limits : limitSteps) {
            // To read a long run costs time: not for what cannot have room, however well it is packed.
            if (&limits != &last && m_summary.texts.totalFor(limits.text) > bestRatio * room)
                continue;
            m_bodies = std::make_unique<Bodies>();
            if (m_bodies->make(m_run, m_order, m_options, limits, room))
                return &limits != &limitSteps[0];
        }
        m_bodies = std::make_unique<Bodies>();
        m_bodies->make(m_run, m_order, m_options, last, std::numeric_limits<int>::max());
        return true;
    }

    void writeOverview(const QString& title)
    {
        const Verdict verdict = verdictOf(m_summary);
        m_out << QStringLiteral("<header>\n<h1>%1</h1>\n<p class=\"verdict %2\">%3</p>\n<p class=\"faint\">")
                     .arg(htmlText(title), QLatin1String(verdict.isGood ? "passed" : "failed"), verdict.text)
              << facts().join(QStringLiteral(" \u00b7 ")) << "</p>\n<div class=\"bar\" aria-hidden=\"true\">";
        for (const CaseOutcome outcome : outcomes) {
            if (const int number = m_summary.count(outcome))
                m_out << QStringLiteral("<i class=\"%1\" style=\"flex:%2\"></i>")
                             .arg(caseOutcomeName(outcome))
                             .arg(number);
        }
        m_out << "</div>\n";
        for (const QString& problem : m_summary.problems)
            m_out << "<p class=\"warning\">Result stream, " << htmlText(problem) << "</p>\n";
        m_out << "</header>\n";
    }

    /** About the run as a whole. */
    QStringList facts() const
    {
        QStringList facts;
        if (m_summary.started.isValid()) {
            const QDateTime started = m_summary.started.toUTC();
            facts += QStringLiteral("<time datetime=\"%1\">%2</time>")
                         .arg(started.toString(Qt::ISODate), started.toString("yyyy-MM-dd HH:mm:ss 'UTC'"));
        }
        facts += durationText(m_summary.durationMs);
        for (const char* key : {"host", "os"}) {
            const QString value = m_summary.environment[QLatin1String(key)].toString();
            if (!value.isEmpty())
                facts += htmlText(value);
        }
        if (const int count = m_summary.notRunCount())
            facts += QStringLiteral("<b class=\"interrupted\">%1 not run</b>").arg(count);
        if (m_summary.interrupted)
            facts += QStringLiteral("<b class=\"interrupted\">interrupted</b>");
        if (!m_summary.complete)
            facts += QStringLiteral("<b class=\"interrupted\">the run has no end</b>");
        return facts;
    }

    void writeFilter()
    {
        m_out << "<nav aria-label=\"Filter\">\n<ul class=\"counts\">\n";
        writeCount(QStringLiteral("all"), m_summary.cases.size());
        for (const CaseOutcome outcome : outcomes) {
            if (const int count = m_summary.count(outcome))
                writeCount(caseOutcomeName(outcome), count);
        }
        if (const int count = m_summary.flakyCount())
            writeCount(QStringLiteral("flaky"), count);
        m_out << "</ul>\n<input id=\"search\" type=\"search\" placeholder=\"Filter by text ( / )\" "
                 "aria-label=\"Filter by text\">\n"
                 "<button type=\"button\" id=\"fold\">Open all</button>\n</nav>\n";
    }

    void writeCount(const QString& outcome, int count)
    {
        m_out << QStringLiteral("<li><button type=\"button\" data-outcome=\"%1\" aria-pressed=\"%2\">"
                                "<i class=\"%1\"></i>%1 <b>%3</b></button></li>\n")
                     .arg(outcome, outcome == "all" ? "true" : "false")
                     .arg(count);
    }

    void writeCases()
    {
        int group = -1;
        for (int place = 0; place < m_order.size(); ++place) {
            const CaseSummary& testCase = m_summary.cases[m_order[place]];
            if (groupOf(testCase) != group) {
                m_out << (group < 0 ? "" : "</section>\n");
                group = groupOf(testCase);
                m_out << "<section>\n<h2>" << groups[group].title << "</h2>\n";
            }
            const bool isOpen = !isFine(testCase.outcome()) && m_bodies->isPlain(place) && place < openCases;
            writeCase(testCase, m_ids[m_order[place]], m_bodies->isPlain(place), isOpen);
            if (m_bodies->isPlain(place))
                m_out << m_bodies->plain(place);
            m_out << "</div></details></article>\n";
        }
        m_out << (group < 0 ? "" : "</section>\n");
    }

    /** All but its body and what closes it. */
    void writeCase(const CaseSummary& testCase, const QString& id, bool isPlain, bool isOpen)
    {
        const QString outcome = caseOutcomeName(testCase.outcome());
        const QString name = htmlText(testCase.name);
        m_out << QStringLiteral("<article class=\"case\" id=\"%1\" data-outcomes=\"%2%3\"%4>\n"
                                "<a class=\"anchor\" href=\"#%5\" aria-label=\"Link to %6\">#</a>\n")
                     .arg(htmlText(id), outcome, QLatin1String(testCase.isFlaky() ? " flaky" : ""),
                          QLatin1String(isPlain ? "" : " data-packed"),
                          QString::fromLatin1(QUrl::toPercentEncoding(id, "/")), name)
              << QStringLiteral("<details%1><summary><b class=\"%2\">%2</b><h3>")
                     .arg(QLatin1String(isOpen ? " open" : ""), outcome);
        if (!testCase.suite.isEmpty())
            m_out << "<span class=\"faint\">" << htmlText(testCase.suiteTitle) << " / </span>";
        m_out << name << "</h3>";
        if (testCase.isFlaky())
            m_out << "<b class=\"flaky\">flaky</b>";
        for (const QString& tag : testCase.tags)
            m_out << "<span class=\"tag\">" << htmlText(tag) << "</span>";
        m_out << "<span class=\"faint\">" << durationText(testCase.durationMs())
              << "</span></summary>\n<div class=\"body\">\n";
    }

    void writeFooter(bool isShortened)
    {
        m_out << "<footer>\n";
        if (isShortened)
            m_out << "<p class=\"faint\">Long texts are shortened here; the result stream has them "
                     "whole.</p>\n";
        if (const int count = m_bodies->pictures().besideCount())
            m_out << QStringLiteral(
                         "<p class=\"faint\">%1 pictures had no room in this page and are shown from "
                         "their files beside it.</p>\n")
                         .arg(count);
        if (!m_summary.environment.isEmpty()) {
            m_out << "<details class=\"fold\"><summary>Environment</summary><table>\n";
            for (auto it = m_summary.environment.begin(); it != m_summary.environment.end(); ++it)
                m_out << "<tr><th scope=\"row\">" << htmlText(it.key()) << "</th><td>"
                      << htmlText(it.value().toVariant().toString()) << "</td></tr>\n";
            m_out << "</table></details>\n";
        }
        m_out << "</footer>\n";
    }

    static constexpr CaseOutcome outcomes[] = {CaseOutcome::Failed, CaseOutcome::Error,
                                               CaseOutcome::Interrupted, CaseOutcome::Skipped,
                                               CaseOutcome::Passed};

    const RecordedRun& m_run;
    const RunSummary& m_summary;
    const ReporterOptions& m_options;
    TextOutput m_out;
    QStringList m_ids;
    QVector<int> m_order; ///< of the cases in the page
    std::unique_ptr<Bodies> m_bodies;
};

} // namespace

void writeHtml(const RecordedRun& run, const ReporterOptions& options, QIODevice* out)
{
    HtmlWriter(run, options, out).write();
}

} // namespace Torvix
