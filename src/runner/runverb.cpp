#include "runner/runverb.h"

#include "report/resultstream.h"
#include "runner/caserunner.h"
#include "runner/plugin.h"
#include "runner/progress.h"
#include "runner/reportfiles.h"
#include "runner/selection.h"
#include "runner/watchdog.h"

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
        QFile* streamFile, Watchdog* watchdog)
        : m_options(options)
        , m_selection(selection)
        , m_plugin(plugin)
        , m_watchdog(watchdog)
        , m_stream(streamFile)
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
        if (!m_stream.errorString().isEmpty())
            return fail(ExitInternal,
                        QStringLiteral("The result stream could not be written whole: %1; make room, or "
                                       "choose another folder with --output, and run again")
                            .arg(m_stream.errorString()));
        return m_watchdog->isInterrupted() ? ExitInterrupted : m_failed > 0 ? ExitFailures : ExitPassed;
    }

    bool hasColour() const { return m_progress.hasColour(); }

private:
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
            const bool isFine = outcome == CaseOutcome::Passed || outcome == CaseOutcome::Skipped;
            const bool runsAgain = !isFine && attempt <= m_options.retries && !m_watchdog->isInterrupted();
            m_progress.caseEnded(name, outcome, timer.elapsed(), runsAgain);
            if (runsAgain)
                continue;
            m_failed += isFine ? 0 : 1;
            return;
        }
    }

    static QJsonObject environment()
    {
        return {{"host", QSysInfo::machineHostName()},   {"os", QSysInfo::prettyProductName()},
                {"kernel", QSysInfo::kernelVersion()},   {"architecture", QSysInfo::currentCpuArchitecture()},
                {"qt", QString::fromLatin1(qVersion())}, {"torvix", QStringLiteral(TORVIX_VERSION)}};
    }

    const RunOptions& m_options;
    const Selection& m_selection;
    const LanguagePlugin& m_plugin;
    Watchdog* m_watchdog;
    ResultStreamWriter m_stream;
    Progress m_progress;
    int m_failed = 0;
};

const QString nothingFits = QStringLiteral("no test case fits");

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

bool openStream(QFile* file, const QString& folder, QString* error)
{
    if (!QDir().mkpath(folder)) {
        *error =
            QStringLiteral("The output folder '%1' cannot be made; choose another with --output").arg(folder);
        return false;
    }
    file->setFileName(QDir(folder).absoluteFilePath(streamFileName()));
    const RunReport earlier = readStreamFile(file->fileName());
    if (file->open(QIODevice::WriteOnly)) {
        removeAttachmentsOf(earlier, folder);
        return true;
    }
    *error = QStringLiteral("'%1' cannot be written: %2; choose another folder with --output")
                 .arg(file->fileName(), file->errorString());
    return false;
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
    return selection.caseCount() > 0 ? ExitPassed : fail(ExitNothingCollected, nothingFits);
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
        return fail(ExitNothingCollected, nothingFits);
    const LanguagePlugin* plugin = LanguagePlugin::javaScript(&error);
    if (!plugin)
        return fail(ExitInternal, error);
    QFile streamFile;
    if (!openStream(&streamFile, options.outputFolder, &error))
        return fail(ExitUsage, error);

    std::signal(SIGPIPE, SIG_IGN); // who reads the output may go (| head), and the run goes on
    Watchdog watchdog;             // until the reports are written: the first Ctrl-C never costs them
    Run run(options, selection, *plugin, &streamFile, &watchdog);
    int code = run.run();
    streamFile.close();
    const RunReport report = readStreamFile(streamFile.fileName());
    ReporterOptions summary;
    summary.colour = run.hasColour();
    summary.baseFolder = QDir::currentPath();
    std::printf("\n%s", renderSummary(report, summary).constData());
    std::fflush(stdout);
    QString page;
    for (const QString& each : writeReports(report, options, &page))
        code = fail(ExitInternal, each);
    if (!page.isEmpty())
        std::printf("Report: %s\n", qUtf8Printable(page));
    return code == ExitPassed && watchdog.isInterrupted() ? ExitInterrupted : code;
}

} // namespace Torvix
