// Tables read by us and by Python's readers in the same run. The counter "ratio" says how many times as
// fast ours is; "of 2" or "of 10" in a name is what it is meant to reach at least. "With every cell" asks
// for the text of each cell after that, whereas Python's csv makes its texts and drops them again. Both are
// measured in processor time, so that what else the machine does weighs less; neither uses a second thread.

#include "peers.h"
#include "shared/testdata/testdata.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <ctime>
#include <map>

using namespace Torvix;

namespace {

QString inputFile(const QString& kind)
{
    static const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("input.") + kind);
    if (!QFile::exists(file))
        makeInput(kind, file);
    return file;
}

/** The better of two runs, made once for all benchmarks of the kind. */
double peer(const QString& kind)
{
    static std::map<QString, double> known;
    const auto found = known.find(kind);
    if (found != known.end())
        return found->second;
    const QString file = inputFile(kind);
    return known[kind] = std::min(peerSeconds(kind, file), peerSeconds(kind, file));
}

enum class Cells { NotVisited, Visited };

void readTable(benchmark::State& state, const QString& kind, int records, Cells cells)
{
    const QString file = inputFile(kind);
    const double peerTime = peer(kind);
    double best = 1e9;
    for (auto _ : state) {
        const std::clock_t start = std::clock();
        const SharedPtr<TestDataSet> table(TestDataSet::createTestDataSet(file));
        if (table->count() != records) {
            state.SkipWithError("the table has not the records that it should have");
            return;
        }
        if (cells == Cells::Visited) {
            int characters = 0;
            for (int i = 0; i < table->count(); ++i) {
                const TestDataRecord* record = table->record(i);
                for (int column = 0, count = record->count(); column < count; ++column)
                    characters += record->valueAsString(column).size();
            }
            benchmark::DoNotOptimize(characters);
        }
        best = std::min(best, double(std::clock() - start) / CLOCKS_PER_SEC);
    }
    state.counters["peer_s"] = peerTime;
    state.counters["ratio"] = peerTime / best;
}

} // namespace

#define TORVIX_DATA_BENCHMARK(name, kind, records, cells)                                                    \
    BENCHMARK_CAPTURE(readTable, name, QStringLiteral(kind), records, cells)                                 \
        ->Unit(benchmark::kMillisecond)                                                                      \
        ->Iterations(7)

TORVIX_DATA_BENCHMARK(csv of 2, "csv", 1000000, Cells::NotVisited);
TORVIX_DATA_BENCHMARK(csv with every cell, "csv", 1000000, Cells::Visited);
TORVIX_DATA_BENCHMARK(xlsx of 10, "xlsx", 99999, Cells::NotVisited);
TORVIX_DATA_BENCHMARK(xlsx with every cell of 10, "xlsx", 99999, Cells::Visited);
TORVIX_DATA_BENCHMARK(xls of 2, "xls", 59999, Cells::NotVisited);
TORVIX_DATA_BENCHMARK(xls with every cell of 2, "xls", 59999, Cells::Visited);

BENCHMARK_MAIN();
