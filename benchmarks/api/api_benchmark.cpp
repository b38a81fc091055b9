/**
 * What the script API costs, each against a peer in the same run:
 *
 * - Results with the stream on: `per_second`, and `times_stdio`, how often longer one takes than writing
 *   and flushing an equally long line with stdio. Deep is the same 20 functions further in.
 * - WaitFor with an expression that becomes true after 0, 50 and 500 ms: `late_ms` beyond that, which the
 *   steps of its polling bound to 100, and `cpu_us` of this thread, beside that of a bare loop with the
 *   same steps.
 * - WaitForObject of an object that stands, and PropertyRead: `added_us`, what they take through script
 *   beyond the same request from C++. Appearing: `late_ms` after the object appeared.
 *
 * Times are processor time of this thread where nothing waits, so that other processes do not count.
 */
#include "api_world.h"
#include "support/oneprocessor.h"

#include "objectmodel/inspector.h"

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

namespace {

using namespace Torvix;

double cpuMicroseconds()
{
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e6 + double(now.tv_nsec) / 1e3;
}

double wallMicroseconds()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return double(now.tv_sec) * 1e6 + double(now.tv_nsec) / 1e3;
}

template <class Work>
double spent(double (*clock)(), Work work)
{
    const double start = clock();
    work();
    return clock() - start;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

/** Lines of one length, each flushed, into a file on the stream's file system. */
class StdioLines
{
public:
    explicit StdioLines(qint64 length)
        : m_line(size_t(length), 'x')
        , m_file(std::fopen(ApiWorld::self().path(QStringLiteral("peer")).toLocal8Bit().constData(), "w"))
    {
        m_line.back() = '\n';
    }
    ~StdioLines() { std::fclose(m_file); }
    StdioLines(const StdioLines&) = delete;
    StdioLines& operator=(const StdioLines&) = delete;

    void write(int count)
    {
        std::rewind(m_file);
        for (int i = 0; i < count; ++i) {
            std::fwrite(m_line.data(), 1, m_line.size(), m_file);
            std::fflush(m_file);
        }
    }

private:
    std::string m_line;
    std::FILE* m_file;
};

void results(benchmark::State& state, const char* check, int depth)
{
    constexpr int count = 500;
    ApiWorld& world = ApiWorld::self();
    world.run(QStringLiteral("function nested(depth) {\n"
                             "  if (depth > 0)\n    return nested(depth - 1);\n"
                             "  for (let i = 0; i < %1; ++i)\n    %2;\n}\n"
                             "function work() {\n  nested(%3);\n}\n")
                  .arg(count)
                  .arg(QLatin1String(check))
                  .arg(depth));
    world.rewindStream();
    world.call("work");
    StdioLines peer(world.streamSize() / count);
    std::vector<double> ours;
    std::vector<double> theirs;
    for (auto step : state) {
        world.rewindStream();
        ours.push_back(spent(cpuMicroseconds, [&] { world.call("work"); }) / count);
        theirs.push_back(spent(cpuMicroseconds, [&] { peer.write(count); }) / count);
    }
    state.counters["per_second"] = 1e6 / median(ours);
    state.counters["times_stdio"] = median(ours) / median(theirs);
}

void compare(benchmark::State& state)
{
    results(state, "test.compare(i, i, 'the same')", 0);
}
void compareDeep(benchmark::State& state)
{
    results(state, "test.compare(i, i, 'the same')", 20);
}
void verify(benchmark::State& state)
{
    results(state, "test.verify(true, 'it holds')", 0);
}
void pass(benchmark::State& state)
{
    results(state, "test.pass('done', 'with a detail')", 0);
}
void failedCompare(benchmark::State& state)
{
    results(state, "test.compare(i, -1, 'not the same')", 0);
}
BENCHMARK(compare)->Name("Compare")->Unit(benchmark::kMillisecond);
BENCHMARK(compareDeep)->Name("Compare/deep")->Unit(benchmark::kMillisecond);
BENCHMARK(failedCompare)->Name("Compare/failed")->Unit(benchmark::kMillisecond);
BENCHMARK(verify)->Name("Verify")->Unit(benchmark::kMillisecond);
BENCHMARK(pass)->Name("Pass")->Unit(benchmark::kMillisecond);

/** The same steps without script and tool. */
void pollBare(double dueUs)
{
    constexpr useconds_t stepUs = 100'000;
    while (wallMicroseconds() < dueUs)
        usleep(stepUs);
}

/** The first range is the time after which it is true, the second whether it is a string. */
void waitFor(benchmark::State& state)
{
    const int dueMs = int(state.range(0));
    ApiWorld& world = ApiWorld::self();
    world.run(QStringLiteral("var due = 0;\nfunction work() {\n  due = Date.now() + %1;\n"
                             "  waitFor(%2, 5000);\n}\n")
                  .arg(dueMs)
                  .arg(state.range(1) ? QStringLiteral("'Date.now() >= due'")
                                      : QStringLiteral("() => Date.now() >= due")));
    world.call("work");
    std::vector<double> late;
    std::vector<double> cpu;
    std::vector<double> bareCpu;
    for (auto step : state) {
        double used = 0;
        late.push_back(
            spent(wallMicroseconds, [&] { used = spent(cpuMicroseconds, [&] { world.call("work"); }); }) /
                1000 -
            dueMs);
        cpu.push_back(used);
        bareCpu.push_back(spent(cpuMicroseconds, [&] { pollBare(wallMicroseconds() + dueMs * 1000.0); }));
    }
    state.counters["late_ms"] = median(late);
    state.counters["cpu_us"] = median(cpu);
    state.counters["bare_cpu_us"] = median(bareCpu);
}
BENCHMARK(waitFor)
    ->Name("WaitFor")
    ->ArgNames({"ms", "string"})
    ->ArgsProduct({{0, 50, 500}, {0, 1}})
    ->Iterations(11)
    ->Unit(benchmark::kMillisecond);

template <class Bare>
void addedByScript(benchmark::State& state, const QString& work, Bare bare)
{
    constexpr int count = 200;
    ApiWorld& world = ApiWorld::self();
    world.run(QStringLiteral("function work() {\n  for (let i = 0; i < %1; ++i)\n    %2;\n}\n")
                  .arg(count)
                  .arg(work));
    world.call("work");
    std::vector<double> throughScript;
    std::vector<double> without;
    for (auto step : state) {
        throughScript.push_back(spent(cpuMicroseconds, [&] { world.call("work"); }) / count);
        without.push_back(spent(cpuMicroseconds,
                                [&] {
                                    for (int i = 0; i < count; ++i)
                                        bare();
                                }) /
                          count);
    }
    state.counters["script_us"] = median(throughScript);
    state.counters["bare_us"] = median(without);
    state.counters["added_us"] = median(throughScript) - median(without);
}

void standing(benchmark::State& state)
{
    addedByScript(state, QStringLiteral("waitForObject(\"{name='control'}\")"), [] {
        benchmark::DoNotOptimize(
            Inspector::self()->waitForObject(QStringLiteral("{name='control'}"), 20'000));
    });
}
BENCHMARK(standing)->Name("WaitForObject/standing")->Unit(benchmark::kMillisecond);

void appearing(benchmark::State& state)
{
    constexpr int delayMs = 50;
    ApiWorld& world = ApiWorld::self();
    world.run(QStringLiteral("function work() {\n  waitForObject(\"{name='lateLabel'}\", 5000);\n}\n"));
    std::vector<double> late;
    for (auto step : state) {
        world.callControl("deleteLaterLabel");
        world.callControl("appearLater", {Inspector::self()->createInteger(delayMs)});
        late.push_back(spent(wallMicroseconds, [&] { world.call("work"); }) / 1000 - delayMs);
    }
    state.counters["late_ms"] = median(late);
}
BENCHMARK(appearing)->Name("WaitForObject/appearing")->Iterations(21)->Unit(benchmark::kMillisecond);

void propertyRead(benchmark::State& state)
{
    ApiWorld& world = ApiWorld::self();
    world.run(QStringLiteral("var control = findObject(\"{name='control'}\");"));
    const Property* clicks = world.control()->objectClass()->property(QStringLiteral("clicks"));
    addedByScript(state, QStringLiteral("control.clicks"),
                  [&] { benchmark::DoNotOptimize(clicks->get(world.control())); });
    world.run(QStringLiteral("control = null;"));
}
BENCHMARK(propertyRead)->Name("PropertyRead")->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    const bool isRun = runBenchmarksOnOneProcessor(argc, argv);
    ApiWorld::end();
    return isRun ? 0 : 1;
}
