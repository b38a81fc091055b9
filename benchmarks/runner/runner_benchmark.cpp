#include "../tests/support/runreport.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using namespace Torvix;

constexpr int cases = 100;
constexpr double startBoundMs = 150;
constexpr double caseBoundMs = 15;

/** Suites in a temporary folder that is also HOME, with a cache of compiled scripts of its own. */
class Workplace
{
public:
    void write(const QString& name, const QByteArray& text) const
    {
        QDir(m_folder.path()).mkpath(QFileInfo(name).path());
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("%s cannot be written", qPrintable(file.fileName()));
    }

    /** Milliseconds from the start of the program to its end. */
    double run(const QString& program, const QStringList& arguments, const QString& cache = "cache")
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CACHE_HOME"), path(cache));
        environment.remove(QStringLiteral("TORVIX_PREFIX"));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_folder.path());
        QElapsedTimer timer;
        timer.start();
        process.start(program, arguments);
        if (!process.waitForFinished(120'000) || process.exitCode() != 0)
            qFatal("%s failed: %s", qPrintable(program), process.readAll().constData());
        const double elapsedMs = double(timer.nsecsElapsed()) / 1e6;
        m_output = process.readAllStandardOutput();
        return elapsedMs;
    }

    RunReport report() const
    {
        const RunReport report = readReportFile(path("results/results.ndjson"));
        if (report.cases.isEmpty())
            qFatal("there is no result stream");
        return report;
    }

    QString path(const QString& name) const { return m_folder.filePath(name); }
    QByteArray output() const { return m_output; }

private:
    QTemporaryDir m_folder;
    QByteArray m_output;
};

/** From the start of node to the first line of a script. */
double nodeStartMs(Workplace* workplace)
{
    workplace->write("start.js", "console.log(Date.now());\n");
    const qint64 begun = QDateTime::currentMSecsSinceEpoch();
    workplace->run(TORVIX_NODE, {workplace->path("start.js")});
    return double(workplace->output().trimmed().toLongLong() - begun);
}

void compareWith(benchmark::State& state, double totalMs, double peerMs, double boundMs)
{
    const auto rounds = double(state.iterations());
    state.counters["ms"] = totalMs / rounds;
    state.counters["node_ms"] = peerMs / rounds;
    state.counters["of_node"] = totalMs / peerMs;
    state.counters["of_bound"] = totalMs / rounds / boundMs;
}

/** From the start of "torvixrunner run" to the first line of main(). */
void startToMain(benchmark::State& state)
{
    const bool isCold = state.range(0) == 0;
    Workplace workplace;
    workplace.write("suite/tst_a/test.js",
                    "import * as names from 'names.js';\nfunction main() {\n  test.log(Date.now());\n}\n");
    workplace.write("suite/shared/scripts/names.js", "export const window = { type: 'Window' };\n");
    double totalMs = 0;
    double peerMs = 0;
    int round = 0;
    for (auto _ : state) {
        const QString cache = isCold ? QStringLiteral("cache%1").arg(++round) : QStringLiteral("cache");
        const qint64 begun = QDateTime::currentMSecsSinceEpoch();
        workplace.run(TORVIX_RUNNER, {"run", "suite"}, cache);
        const QString atMain = workplace.report().cases.at(0).attempts.at(0).entries.at(0).message;
        const auto elapsedMs = double(atMain.toLongLong() - begun);
        totalMs += elapsedMs;
        state.SetIterationTime(elapsedMs / 1000);
        peerMs += nodeStartMs(&workplace);
    }
    compareWith(state, totalMs, peerMs, startBoundMs);
}
// "cold" is without our cache of compiled scripts; the files themselves are in memory.
BENCHMARK(startToMain)
    ->ArgName("warm")
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(10);

/** What each of a hundred empty test cases costs, after the first. */
void emptyCase(benchmark::State& state)
{
    Workplace workplace;
    for (int i = 0; i < cases; ++i)
        workplace.write(QStringLiteral("suite/tst_%1/test.js").arg(i, 3, 10, QLatin1Char('0')),
                        "function main() {\n}\n");
    workplace.run(TORVIX_RUNNER, {"run", "suite", "--quiet"}); // fills the cache
    double totalMs = 0;
    double peerMs = 0;
    for (auto _ : state) {
        workplace.run(TORVIX_RUNNER, {"run", "suite", "--quiet"});
        const RunReport report = workplace.report();
        const AttemptReport& last = report.cases.at(cases - 1).attempts.at(0);
        const QDateTime second = report.cases.at(1).attempts.at(0).started;
        const double eachMs = double(second.msecsTo(last.started) + last.durationMs) / (cases - 1);
        totalMs += eachMs;
        state.SetIterationTime(eachMs / 1000);
        peerMs += nodeStartMs(&workplace);
    }
    compareWith(state, totalMs, peerMs, caseBoundMs);
}
BENCHMARK(emptyCase)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

BENCHMARK_MAIN();
