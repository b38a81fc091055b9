#include "runner/runverb.h"

#include "report/streamwriter.h"
#include "runner/caserunner.h"
#include "runner/outputfolder.h"
#include "runner/plugin.h"
#include "runner/progress.h"
#include "runner/reportfiles.h"
#include "runner/selection.h"
#include "runner/watchdog.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSysInfo>

#include <csignal>
#include <cstdio>

namespace Torvix {

namespace {

/** One run over the selected cases. */
class Run
{
public:
    Run(const RunOptions& options, const Selection& selection, const LanguagePlugin& plugin,
        OutputFolder* output, Watchdog* watchdog)
        : m_options(options)
        , m_selection(selection)
        , m_plugin(plugin)
        , m_watchdog(watchdog)
        , m_output(*output)
        , m_stream(output->stream())
        , m_progress(selection.caseCount() * options.repeatEach, options.quiet)
    {
    }

    int run()
    {
        QElapsedTimer timer;
        timer.start();
        m_stream.runStarted(m_selection.name(), m_selection.caseCount() * m_options.repeatEach,
                            environment());
        for (const Suite& suite : m_selection.suites) {
            for (const TestCase& testCase : suite.cases) {
                for (int i = 0; i < m_options.repeatEach && goesOn(); ++i)
                    runCase(suite, testCase);
            }
        }
        m_stream.runEnded(m_watchdog->isInterrupted(), timer.elapsed());
        m_progress.finish();
        tellWhenGone();
        if (m_isGone)
            return ExitInternal;
        if (!m_stream.errorString().isEmpty())
            return fail(ExitInternal,
                        QStringLiteral("The result stream could not be written whole: %1; make room, or "
                                       "choose another folder with --output, and run again")
                            .arg(m_stream.errorString()));
        return m_watchdog->isInterrupted() ? ExitInterrupted : fails() ? ExitFailures : ExitPassed;
    }

    bool hasColour() const { return m_progress.hasColour(); }

private:
    bool fails() const { return m_failed > 0 || (m_options.failOnFlaky && m_flaky > 0); }

    /** The results of a folder that is no more are lost when this process ends. */
    void tellWhenGone()
    {
        if (m_isGone || m_output.isThere())
            return;
        m_isGone = true;
        m_progress.finish();
        fail(ExitInternal,
             QStringLiteral("The output folder '%1' was removed or replaced during the run: its results will "
                            "be lost, all but what is printed here and what reports lie elsewhere")
                 .arg(m_options.outputFolder));
    }

    bool goesOn() const
    {
        return !m_watchdog->isInterrupted() &&
               (m_options.maxFailures == 0 || m_failed < m_options.maxFailures);
    }

    void runCase(const Suite& suite, const TestCase& testCase)
    {
        const QString name = suite.name + QLatin1Char('/') + testCase.name;
        for (int attempt = 1;; ++attempt) {
            m_progress.caseStarted(name, attempt);
            QElapsedTimer timer;
            timer.start();
            CaseRunner::Options options;
            options.outputFolder = QDir(m_options.outputFolder).absoluteFilePath(testCase.name);
            options.timeoutSecs = m_options.timeoutSecs;
            options.attempt = attempt;
            options.updatesVerificationPoints = m_options.updateVerificationPoints;
            CaseRunner runner(suite, testCase, m_plugin, &m_stream, m_watchdog, options);
            const CaseOutcome outcome = runner.run();
            tellWhenGone();
            const bool runsAgain =
                !isFine(outcome) && attempt <= m_options.retries && !m_watchdog->isInterrupted();
            m_progress.caseEnded(name, outcome, timer.elapsed(), runsAgain);
            if (runsAgain)
                continue;
            m_failed += isFine(outcome) ? 0 : 1;
            m_flaky += attempt > 1 && outcome == CaseOutcome::Passed ? 1 : 0;
            return;
        }
    }

    static QJsonObject environment()
    {
        return {{"host", QSysInfo::machineHostName()},
                {"os", QSysInfo::prettyProductName()},
                {"kernel", QSysInfo::kernelVersion()},
                {"architecture", QSysInfo::currentCpuArchitecture()},
                {"qt", QString::fromLatin1(qVersion())},
                {"torvix", QStringLiteral(TORVIX_VERSION)},
                {"process", QCoreApplication::applicationPid()}};
    }

    const RunOptions& m_options;
    const Selection& m_selection;
    const LanguagePlugin& m_plugin;
    Watchdog* m_watchdog;
    OutputFolder& m_output;
    ResultStreamWriter m_stream;
    Progress m_progress;
    int m_failed = 0;
    int m_flaky = 0;
    bool m_isGone = false; ///< the output folder
};

const QString nothingMatches = QStringLiteral("no test case matches");

QString listText(const Selection& selection)
{
    QString text;
    for (const Suite& suite : selection.suites) {
        for (const TestCase& testCase : suite.cases) {
            text += suite.name + QLatin1Char('/') + testCase.name;
            if (!testCase.tags.isEmpty())
                text += QStringLiteral("  [%1]").arg(testCase.tags.join(QLatin1String(", ")));
            text += QLatin1Char('\n');
        }
    }
    return text;
}

QJsonArray listJson(const Selection& selection)
{
    QJsonArray list;
    for (const Suite& suite : selection.suites) {
        for (const TestCase& testCase : suite.cases) {
            const int timeoutSecs =
                testCase.timeoutSecs > 0 ? testCase.timeoutSecs : suite.settings.caseTimeoutSecs;
            list.append(QJsonObject{{"suite", suite.name},
                                    {"name", testCase.name},
                                    {"path", testCase.folder},
                                    {"script", testCase.script},
                                    {"tags", QJsonArray::fromStringList(testCase.tags)},
                                    {"timeoutSecs", timeoutSecs}});
        }
    }
    return list;
}

QStringList foldersOf(const Selection& selection)
{
    QStringList folders;
    for (const Suite& suite : selection.suites) {
        for (const TestCase& testCase : suite.cases)
            folders += testCase.folder;
    }
    return folders;
}

/** What a person reads at the end. */
void printSummary(const RecordedRun& run, bool hasColour)
{
    ReporterOptions options;
    options.colour = hasColour;
    options.baseFolder = QDir::currentPath();
    std::printf("\n");
    std::fflush(stdout);
    QFile output;
    output.open(stdout, QIODevice::WriteOnly);
    writeSummary(run, options, &output);
}

} // namespace

int fail(ExitCode code, const QString& text)
{
    std::fprintf(stderr, "torvixrunner: %s\n", qUtf8Printable(text));
    return code;
}

int listVerb(const RunOptions& options)
{
    Selection selection;
    QString error;
    if (!select(options, &selection, &error))
        return fail(ExitUsage, error);
    if (options.json)
        std::fputs(QJsonDocument(listJson(selection)).toJson().constData(), stdout);
    else
        std::fputs(listText(selection).toUtf8().constData(), stdout);
    return selection.caseCount() > 0 ? ExitPassed : fail(ExitNothingCollected, nothingMatches);
}

int runVerb(const RunOptions& options)
{
    if (options.listOnly)
        return listVerb(options);
    Selection selection;
    QString error;
    if (!select(options, &selection, &error))
        return fail(ExitUsage, error);
    if (selection.caseCount() == 0)
        return fail(ExitNothingCollected, nothingMatches);
    const LanguagePlugin* plugin = LanguagePlugin::javaScript(&error);
    if (!plugin)
        return fail(ExitInternal, error);
    const ReportOutput reportOutput(options.reporters);
    OutputFolder output(options.outputFolder);
    if (!prepareReports(options, &error) || !output.begin(foldersOf(selection), &error))
        return fail(ExitUsage, error);

    std::signal(SIGPIPE, SIG_IGN); // who reads the output may go (| head), and the run goes on
    Watchdog watchdog;             // until the reports are written: the first Ctrl-C never costs them
    Run run(options, selection, *plugin, &output, &watchdog);
    int code = run.run();
    const RecordedRun recorded = output.read();
    printSummary(recorded, run.hasColour());
    QString page;
    for (const QString& each : writeReports(recorded, options, reportOutput, output.isThere(), &page))
        code = fail(ExitInternal, each);
    if (!page.isEmpty())
        std::printf("Report: %s\n", qUtf8Printable(page));
    return code == ExitPassed && watchdog.isInterrupted() ? ExitInterrupted : code;
}

} // namespace Torvix
