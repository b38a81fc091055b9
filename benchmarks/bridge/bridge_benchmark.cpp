// What the bridge adds to a call: the same work through a script and without the bridge, in turn, on
// an application in this process. The counters are medians in microseconds a call; "bound_us" is what
// "added_us" must not exceed.

#include "engine/interpreter.h"
#include "engine/list.h"
#include "interpreter/base/dummyrunnerinterface.h"
#include "interpreter/base/scriptcontext.h"
#include "interpreter/js/bridge/jsobject.h"
#include "interpreter/js/jsinterpreter.h"
#include "interpreter/js/scriptobject/extrafunction.h"
#include "objectmodel/inspector.h"
#include "support/model/localmodel.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <vector>

namespace {

using namespace Torvix;
using Protocol::Value;

constexpr int callsInOneRun = 1000;

/** A shape with a property, and a method of three overloads with two arguments each. */
std::unique_ptr<LocalModel> makeModel()
{
    auto model = std::make_unique<LocalModel>();
    LocalModel::ClassBuilder shape = model->addClass("Shape");
    shape.property("size", LocalModel::type(Protocol::IntClass), [](qint64) { return Value::ofInt(42); });
    for (const int type : {int(Protocol::IntClass), int(Protocol::DoubleClass), int(Protocol::StringClass)})
        shape.method(
            "scale", {LocalModel::argument("by", type), LocalModel::argument("up", Protocol::BoolClass)},
            [](qint64, const QVector<Value>&) { return Value::ofInt(1); },
            LocalModel::type(Protocol::IntClass));
    model->addObject("Shape", "first");
    return model;
}

bool answer(ScriptContext* context)
{
    context->setResult(context->toArgument(context->argument(0)->toInteger() + 1));
    return true;
}

KJS::Value bareAnswer(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return KJS::Number(args.at(0).toInt32(exec) + 1);
}

/** The interpreter with an application, for the whole program. */
struct World
{
    DummyRunnerInterface runner;
    std::unique_ptr<JsInterpreter> interpreter;
    SharedPtr<Object> shape;

    World()
    {
        Inspector::self()->addApplication(makeModel());
        interpreter = std::make_unique<JsInterpreter>(&runner);
        const Result<SharedPtr<Object>> found =
            Inspector::self()->findObject(QStringLiteral("{name='first'}"));
        if (!found)
            qFatal("%s", qPrintable(found.error()));
        shape = *found;
        KJS::ExecState* exec = interpreter->getGlobalExecState();
        KJS::Object global = exec->interpreter()->globalObject();
        global.put(exec, "shape", jsWrap(exec, shape));
        global.put(exec, "bareAnswer", new ExtraFunctionImp(bareAnswer, 1));
        interpreter->addGlobalFunction("answer", answer, {"value"}, {}, QString());
        define("callMethod", "shape.scale(i, true)");
        define("readProperty", "shape.size");
        define("callNative", "answer(i)");
        define("callBare", "bareAnswer(i)");
    }
    ~World()
    {
        shape.reset();
        interpreter.reset();
        Inspector::self()->reset();
    }

    void define(const char* name, const char* work)
    {
        const QString code = QStringLiteral("function %1() { for (let i = 0; i < %2; ++i) %3; }")
                                 .arg(QLatin1String(name))
                                 .arg(callsInOneRun)
                                 .arg(QLatin1String(work));
        if (!interpreter->evaluate(code, QStringLiteral("bench.js"), false, false))
            qFatal("%s", qPrintable(interpreter->errorMessage()));
    }
};

World& world()
{
    static World instance;
    return instance;
}

void runScript(const char* function)
{
    if (!world().interpreter->call(QLatin1String(function), {}))
        qFatal("%s", qPrintable(world().interpreter->errorMessage()));
}

/** Processor time of this thread, on which everything happens: other processes do not count. */
double cpuMicroseconds()
{
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e6 + double(now.tv_nsec) / 1e3;
}

template <class Work>
double microsecondsPerCall(Work work)
{
    const double start = cpuMicroseconds();
    work();
    return (cpuMicroseconds() - start) / callsInOneRun;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

template <class Bare>
void compare(benchmark::State& state, const char* scriptFunction, Bare bare)
{
    constexpr double boundMicroseconds = 5;
    std::vector<double> throughScript;
    std::vector<double> without;
    for (auto iteration : state) {
        throughScript.push_back(microsecondsPerCall([&] { runScript(scriptFunction); }));
        without.push_back(microsecondsPerCall(bare));
    }
    state.counters["script_us"] = median(throughScript);
    state.counters["bare_us"] = median(without);
    state.counters["added_us"] = median(throughScript) - median(without);
    state.counters["bound_us"] = boundMicroseconds;
}

/** A method of three overloads with two arguments, against its invocation from C++. */
void methodCall(benchmark::State& state)
{
    const SharedPtr<Object> shape = world().shape;
    const Method* method = shape->objectClass()->methods(QStringLiteral("scale")).first();
    const Inspector* inspector = Inspector::self();
    compare(state, "callMethod", [&] {
        for (int i = 0; i < callsInOneRun; ++i)
            benchmark::DoNotOptimize(
                method->invoke(shape, {inspector->createInteger(i), inspector->createBoolean(true)}));
    });
}

/** A property, against its reading from C++. */
void propertyRead(benchmark::State& state)
{
    const SharedPtr<Object> shape = world().shape;
    const Property* property = shape->objectClass()->property(QStringLiteral("size"));
    compare(state, "readProperty", [&] {
        for (int i = 0; i < callsInOneRun; ++i)
            benchmark::DoNotOptimize(property->get(shape));
    });
}

/** A function of the native script API, against a bare function of the engine. */
void nativeCall(benchmark::State& state)
{
    compare(state, "callNative", [] { runScript("callBare"); });
}

BENCHMARK(methodCall)->Unit(benchmark::kMillisecond);
BENCHMARK(propertyRead)->Unit(benchmark::kMillisecond);
BENCHMARK(nativeCall)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
