/**
 * What a script's call costs. Four questions, each against a peer in the same run:
 *
 * - PropertyRead reports how often longer it takes than Echo: `times_echo`, at most 3.
 * - ManyProperties reads all properties of an object at once; `times_faster` than one by one.
 * - LookUp finds one object by three properties in a tree of 10,000 and of 100,000 objects: under
 *   60 ms for the larger, and `times_smaller` about 10.
 * - Appearance waits for an object that appears 50 ms after it was asked for; `late_ms` is the median
 *   of what it took beyond that, at most 5.
 */
#include "echo.h"
#include "support/oneprocessor.h"

#include "launcher/launcher.h"
#include "objectmodel/inspector.h"

#include <benchmark/benchmark.h>

#include <QElapsedTimer>

#include <algorithm>

namespace {

using namespace Torvix;

/** The target application, started once. */
class Target
{
public:
    static Target& self()
    {
        static Target target;
        return target;
    }

    SharedPtr<Object> find(const char* name)
    {
        return Inspector::self()->findObject(QString::fromLatin1(name));
    }
    bool call(const char* method, int argument)
    {
        const QVector<const Method*> found = m_control->objectClass()->methods(QString::fromLatin1(method));
        return !found.isEmpty() &&
               found.first()->invoke(m_control, {Inspector::self()->createInteger(argument)});
    }
    bool isGood() const { return bool(m_control); }
    const SharedPtr<Object>& control() const { return m_control; }
    static void stop()
    {
        self().m_control.reset();
        self().m_application.reset();
        Inspector::self()->reset();
    }

private:
    Target()
    {
        LaunchOptions options;
        options.program = QStringLiteral(TORVIX_BINARY_DIR "/tests/torvixtarget");
        options.environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        QString error;
        m_application = Application::start(options, &error);
        if (!m_application) {
            fprintf(stderr, "%s\n", qPrintable(error));
            return;
        }
        Inspector::self()->setCurrent(Inspector::self()->addApplication(m_application->takeLink()));
        m_control = find("{name='control'}");
    }

    std::unique_ptr<Application> m_application;
    SharedPtr<Object> m_control;
};

void echo(benchmark::State& state)
{
    Echo peer;
    for (auto step : state)
        if (!peer.roundTrip())
            state.SkipWithError("the echo is gone");
}
BENCHMARK(echo)->Name("Echo");

template <class Work>
double medianNs(int rounds, Work work)
{
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(double(timer.nsecsElapsed()));
    }
    std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
    return times[size_t(rounds / 2)];
}

void propertyRead(benchmark::State& state)
{
    Target& target = Target::self();
    if (!target.isGood())
        return state.SkipWithError("no target");
    const Property* clicks = target.control()->objectClass()->property(QStringLiteral("clicks"));
    for (auto step : state)
        if (!clicks->get(target.control()))
            state.SkipWithError("the read failed");
    // Alternately, so that the machine's mood is the same for both.
    Echo peer;
    double ratio = 0;
    constexpr int turns = 10, rounds = 500;
    for (int turn = 0; turn < turns; ++turn) {
        const double read = medianNs(rounds, [&] { clicks->get(target.control()); });
        const double bare = medianNs(rounds, [&] { peer.roundTrip(); });
        ratio += read / bare / turns;
    }
    state.counters["times_echo"] = ratio;
}
BENCHMARK(propertyRead)->Name("PropertyRead");

/** All properties of an object, as `object.properties` wants them: in one round trip, against one for each.
 */
void manyProperties(benchmark::State& state)
{
    Target& target = Target::self();
    if (!target.isGood())
        return state.SkipWithError("no target");
    const QVector<const Property*> properties = Property::readable(target.control()->objectClass());
    for (auto step : state)
        if (!Property::getAll(target.control(), properties).value(0))
            state.SkipWithError("the read failed");
    constexpr int rounds = 200;
    const double together = medianNs(rounds, [&] { Property::getAll(target.control(), properties); });
    const double one = medianNs(rounds, [&] {
        for (const Property* property : properties)
            property->get(target.control());
    });
    state.counters["properties"] = properties.size();
    state.counters["times_faster"] = one / together;
}
BENCHMARK(manyProperties)->Name("ManyProperties")->Unit(benchmark::kMicrosecond);

void lookUp(benchmark::State& state)
{
    static double smaller = 0;
    Target& target = Target::self();
    const int count = int(state.range(0));
    if (!target.isGood() || !target.call("makeTree", count))
        return state.SkipWithError("no target");
    const QByteArray name =
        QStringLiteral("{type='QTimer' name='leaf%1' interval=%1}").arg(count - 1).toLatin1();
    for (auto step : state)
        if (!target.find(name.constData()))
            state.SkipWithError("not found");
    const double median = medianNs(9, [&] { target.find(name.constData()); });
    if (smaller == 0)
        smaller = median;
    state.counters["times_smaller"] = median / smaller;
    target.call("makeTree", 0);
}
BENCHMARK(lookUp)->Name("LookUp")->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void appearance(benchmark::State& state)
{
    constexpr int delayMs = 50;
    Target& target = Target::self();
    if (!target.isGood())
        return state.SkipWithError("no target");
    std::vector<double> late;
    const Method* remove =
        target.control()->objectClass()->methods(QStringLiteral("deleteLaterLabel")).value(0);
    for (auto step : state) {
        remove->invoke(target.control(), {});
        QElapsedTimer timer;
        target.call("appearLater", delayMs);
        timer.start();
        const auto result = Inspector::self()->waitForObject(QStringLiteral("{name='lateLabel'}"), 5000);
        late.push_back(double(timer.nsecsElapsed()) / 1e6 - delayMs);
        if (result.failed != 0)
            state.SkipWithError("it did not appear");
    }
    if (late.empty())
        return;
    std::nth_element(late.begin(), late.begin() + long(late.size() / 2), late.end());
    state.counters["late_ms"] = late[late.size() / 2];
}
BENCHMARK(appearance)->Name("Appearance")->Iterations(41)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    const bool isRun = runBenchmarksOnOneProcessor(argc, argv);
    Target::stop();
    return isRun ? 0 : 1;
}
