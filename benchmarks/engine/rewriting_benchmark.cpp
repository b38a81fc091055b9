// What rewriting costs: each workload bare and rewritten in turn, in one process. The counter "ratio"
// is the median of rewritten over bare; "bound" is what it must not exceed.

#include "engine/rewriting/jsstring.h"
#include "engine/rewriting/scriptruntime.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include <algorithm>
#include <chrono>

namespace {

using namespace KJS::Rewriting;

class NoHooks : public ScriptHooks
{
public:
    TextAnswer resolveModule(const QString&, const QString&) override { return TextAnswer::failure({}); }
    TextAnswer readModule(const QString&) override { return TextAnswer::failure({}); }
};

double millisecondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

const char fibonacci[] = "function fib(n) {\n"
                         "    if (n < 2)\n"
                         "        return n;\n"
                         "    return fib(n - 1) + fib(n - 2);\n"
                         "}\n"
                         "function main() { return fib(30); }\n";

const char sorting[] = "function main() {\n"
                       "    let seed = 7;\n"
                       "    const rows = [];\n"
                       "    for (let i = 0; i < 30000; i++) {\n"
                       "        seed = seed * 16807 % 2147483647;\n"
                       "        rows.push({id: seed, name: 'row ' + seed % 1000});\n"
                       "    }\n"
                       "    rows.sort((a, b) => a.name < b.name ? -1 : a.name > b.name ? 1 : a.id - b.id);\n"
                       "    return rows.filter(row => row.id % 3 === 0).map(row => row.name).length;\n"
                       "}\n";

const char strings[] =
    "function main() {\n"
    "    const rows = [];\n"
    "    for (let i = 0; i < 3000; i++)\n"
    "        rows.push({id: i, name: 'row ' + i, tags: ['a' + i % 7, 'b'], price: i / 8});\n"
    "    const text = JSON.stringify(rows);\n"
    "    let count = 0;\n"
    "    for (const row of JSON.parse(text)) {\n"
    "        const parts = row.name.toUpperCase().split(' ');\n"
    "        if (parts.join('-').replace(/ROW/g, 'line').startsWith('line'))\n"
    "            count += row.tags.length;\n"
    "    }\n"
    "    return count + text.length;\n"
    "}\n";

/** A context whose main function is called again and again. */
class Workload
{
public:
    Workload(JSContextGroupRef group, Rewriter* rewriter, const char* text)
        : m_context(JSGlobalContextCreateInGroup(group, nullptr))
    {
        const QString code = QString::fromUtf8(text);
        if (rewriter) {
            m_runtime = std::make_unique<ScriptRuntime>(*rewriter, m_context, m_hooks, Flavour::Fast);
            m_runtime->evaluate(code, QStringLiteral("bench.js"));
        } else {
            JSEvaluateScript(m_context, JsString(code), nullptr, nullptr, 1, nullptr);
        }
        m_main = asObject(m_context, property(m_context, JSContextGetGlobalObject(m_context), "main"));
        JSValueProtect(m_context, m_main);
    }
    ~Workload()
    {
        JSValueUnprotect(m_context, m_main);
        m_runtime.reset();
        JSGlobalContextRelease(m_context);
    }
    Workload(const Workload&) = delete;
    Workload& operator=(const Workload&) = delete;

    double run()
    {
        const auto start = std::chrono::steady_clock::now();
        if (m_runtime)
            m_runtime->call(m_main, nullptr, {});
        else
            JSObjectCallAsFunction(m_context, m_main, nullptr, 0, nullptr, nullptr);
        return millisecondsSince(start);
    }

private:
    NoHooks m_hooks;
    JSGlobalContextRef m_context;
    std::unique_ptr<ScriptRuntime> m_runtime;
    JSObjectRef m_main = nullptr;
};

void rewrittenAgainstBare(benchmark::State& state, const char* text, double bound)
{
    JSContextGroupRef group = JSContextGroupCreate();
    {
        Rewriter rewriter(group);
        rewriter.setCacheFolder({});
        Workload bare(group, nullptr, text), rewritten(group, &rewriter, text);
        for (int i = 0; i < 10; ++i) { // both compiled by the engine's best tier
            bare.run();
            rewritten.run();
        }
        std::vector<double> bareTimes, rewrittenTimes;
        for (auto _ : state) {
            bareTimes.push_back(bare.run());
            rewrittenTimes.push_back(rewritten.run());
        }
        state.counters["bare_ms"] = median(bareTimes);
        state.counters["rewritten_ms"] = median(rewrittenTimes);
        state.counters["ratio"] = median(rewrittenTimes) / median(bareTimes);
        state.counters["bound"] = bound;
    }
    JSContextGroupRelease(group);
}

/** A virtual machine, a runtime, a first script, and all of it destroyed. */
void startAndEnd(benchmark::State& state, bool isWarm)
{
    QTemporaryDir folder;
    QString script = QString::fromUtf8(fibonacci) + QString::fromUtf8(sorting) + QString::fromUtf8(strings);
    script += QStringLiteral("function first() { return 1; }\nfirst();\n");
    int run = 0;
    std::vector<double> times;
    const auto once = [&](const QString& text) {
        const auto start = std::chrono::steady_clock::now();
        JSContextGroupRef group = JSContextGroupCreate();
        {
            Rewriter rewriter(group);
            rewriter.setCacheFolder(folder.path());
            JSGlobalContextRef context = JSGlobalContextCreateInGroup(group, nullptr);
            {
                NoHooks hooks;
                ScriptRuntime runtime(rewriter, context, hooks, Flavour::Fast);
                benchmark::DoNotOptimize(runtime.evaluate(text, QStringLiteral("first.js")));
            }
            JSGlobalContextRelease(context);
        }
        JSContextGroupRelease(group);
        return millisecondsSince(start);
    };
    if (isWarm)
        once(script);
    for (auto _ : state)
        times.push_back(once(isWarm ? script : script + QStringLiteral("// %1\n").arg(++run)));
    state.counters["median_ms"] = median(times);
    state.counters["bound"] = isWarm ? 15 : 60;
}

BENCHMARK_CAPTURE(rewrittenAgainstBare, fib30, fibonacci, 3.5)->Iterations(40);
BENCHMARK_CAPTURE(rewrittenAgainstBare, sort, sorting, 1.3)->Iterations(40);
BENCHMARK_CAPTURE(rewrittenAgainstBare, jsonAndStrings, strings, 1.3)->Iterations(60);
BENCHMARK_CAPTURE(startAndEnd, cold, false)->Iterations(15)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(startAndEnd, warm, true)->Iterations(40)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
