// Our network clients against well-known ones, with the same server in the same run. The time of a row
// is ours for one job; the counters give the peer's time for the same job and ours divided by it.

#include "interpreter/js/http/xhr.h"
#include "shared/websocket/loginterface.h"
#include "shared/websocket/websocketclient.h"
#include "support/network/childserver.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

namespace {

using namespace Torvix;
using namespace TorvixTest;

template <class Job>
double secondsOf(Job&& job)
{
    const auto start = std::chrono::steady_clock::now();
    job();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/** The numbers that a program prints, one a line. */
std::vector<double> numbersFrom(const std::string& command)
{
    std::vector<double> numbers;
    const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(command.c_str(), "r"), &pclose);
    for (double number = 0; output && std::fscanf(output.get(), "%lf", &number) == 1;)
        numbers.push_back(number);
    return numbers;
}

void report(benchmark::State& state, double ours, double peer)
{
    if (peer <= 0) {
        state.SkipWithError("the peer did not run");
        return;
    }
    state.counters["peer_ms"] = peer * 1000;
    state.counters["ratio"] = ours / peer;
}

void webSocketEcho(benchmark::State& state)
{
    const auto size = static_cast<std::size_t>(state.range(0));
    ChildServer server;
    server.startPython("websocket_server.py");
    NullLog log;
    const auto client = createWebSocketClient(&log, "127.0.0.1", server.port());
    const std::string message(size, 'm');
    double ours = 0;
    for (auto _ : state) {
        std::string echo;
        const double seconds = secondsOf([&] {
            client->queueTextMessage(message);
            client->receiveTextMessage(&echo);
        });
        if (echo != message)
            state.SkipWithError("the echo differs");
        state.SetIterationTime(seconds);
        ours += seconds;
    }
    const std::vector<double> rounds = numbersFrom(
        "/usr/bin/python3 " BENCHMARK_SOURCE_DIR "/websocket_client.py " + std::to_string(server.port()) +
        " " + std::to_string(size) + " " + std::to_string(state.iterations()));
    const double peer =
        std::accumulate(rounds.begin(), rounds.end(), 0.0) / double(std::max<size_t>(1, rounds.size()));
    report(state, ours / double(state.iterations()), peer);
}
BENCHMARK(webSocketEcho)
    ->Arg(100)
    ->Arg(1024 * 1024)
    ->UseManualTime()
    ->Iterations(10)
    ->Unit(benchmark::kMillisecond);

void sequentialGets(benchmark::State& state)
{
    const NginxServer server("location / { }", {{"page.txt", std::string(1000, 'p')}});
    const QString method = QStringLiteral("GET");
    const QString url = QString::fromStdString(server.url("/page.txt"));
    double ours = 0;
    for (auto _ : state) {
        XmlHttpRequest http;
        const double seconds = secondsOf([&] {
            for (int i = 0; i < state.range(0); ++i) {
                http.open(method, url, false, QString(), QString(), nullptr);
                http.send(QByteArray(), nullptr);
            }
        });
        if (http.response().size() != 1000)
            state.SkipWithError("no answer");
        state.SetIterationTime(seconds);
        ours += seconds;
    }
    double peer = 0;
    for (benchmark::IterationCount i = 0; i < state.iterations(); ++i) {
        // curl's own clock, so that the start of its process does not count.
        const std::vector<double> totals =
            numbersFrom("curl -s -o /dev/null -w '%{time_total}\\n' '" + server.url("/page.txt?[1-") +
                        std::to_string(state.range(0)) + "]'");
        peer += std::accumulate(totals.begin(), totals.end(), 0.0);
    }
    report(state, ours / double(state.iterations()), peer / double(state.iterations()));
}
BENCHMARK(sequentialGets)->Arg(200)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 4;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
