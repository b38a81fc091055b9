// What a C++ object costs: its properties and methods beside a script object's, in the same run.

#include "engine/collector.h"
#include "engine/function.h"
#include "engine/interpreter.h"
#include "engine/list.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

namespace {

using namespace KJS;

class Method : public InternalFunctionImp
{
public:
    Value call(ExecState*, Object&, const List& arguments) override { return arguments.at(0); }
};

/** The look-ups of a wrapper: some names of its own, the rest as usual. */
class Wrapper : public ObjectImp
{
public:
    explicit Wrapper(ExecState* exec)
        : ObjectImp(exec->interpreter()->builtinObjectPrototype())
        , m_method(new Method)
    {
    }
    Value get(ExecState* exec, const Identifier& name) const override
    {
        static const Identifier valueName("value"), methodName("method"), freshName("fresh");
        if (name == valueName)
            return Number(1);
        if (name == methodName)
            return m_method;
        if (name == freshName)
            return new Method;
        return ObjectImp::get(exec, name);
    }

private:
    Value m_method;
};

/** Runs a loop of 1000 in script, so that the time of one is what is shown (per item). */
void scriptLoop(benchmark::State& state, const char* body)
{
    InterpreterOptions options;
    options.cacheFolder = QStringLiteral("");
    Interpreter interpreter(Object(), options);
    ExecState* const exec = interpreter.globalExec();
    Object global = interpreter.globalObject();
    global.put(exec, "host", new Wrapper(exec));
    global.put(exec, "direct", new Method);
    interpreter.evaluate("var plain = {value: 1, method(a) { return a }}");
    Object loop = Object::dynamicCast(
        interpreter
            .evaluate(
                UString(QStringLiteral("(function() { let r; for (let i = 0; i < 1000; i++) %1; return r })")
                            .arg(QLatin1String(body))))
            .value());
    Object receiver;
    for (auto _ : state) {
        loop.call(exec, receiver, List::empty());
        if (exec->hadException())
            state.SkipWithError("the script throws");
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}

BENCHMARK_CAPTURE(scriptLoop, ScriptPropertyRead, "r = plain.value");
BENCHMARK_CAPTURE(scriptLoop, HostPropertyRead, "r = host.value");
BENCHMARK_CAPTURE(scriptLoop, HostInheritedRead, "r = host.toString");
BENCHMARK_CAPTURE(scriptLoop, ScriptMethodCall, "r = plain.method(i)");
BENCHMARK_CAPTURE(scriptLoop, HostFunctionCall, "r = direct(i)");
BENCHMARK_CAPTURE(scriptLoop, HostMethodCall, "r = host.method(i)");
BENCHMARK_CAPTURE(scriptLoop, HostMethodMadeOnEachRead, "r = host.fresh(i)");

void PropertyReadFromCpp(benchmark::State& state)
{
    Interpreter interpreter;
    ExecState* const exec = interpreter.globalExec();
    const Object object = Object::dynamicCast(interpreter.evaluate("({value: 1})").value());
    const Identifier name("value");
    for (auto _ : state)
        benchmark::DoNotOptimize(object.get(exec, name));
}
BENCHMARK(PropertyReadFromCpp);

void ScriptFunctionCallFromCpp(benchmark::State& state)
{
    Interpreter interpreter;
    ExecState* const exec = interpreter.globalExec();
    Object function = Object::dynamicCast(interpreter.evaluate("(a => a)").value());
    Object receiver;
    const List arguments{Number(1)};
    for (auto _ : state)
        benchmark::DoNotOptimize(function.call(exec, receiver, arguments));
}
BENCHMARK(ScriptFunctionCallFromCpp);

/** Made, one script run, destroyed. Cold: no rewritten text is known. Warm: from the cache on disk. */
void InterpreterLife(benchmark::State& state)
{
    const bool isWarm = state.range(0) != 0;
    QTemporaryDir cache;
    InterpreterOptions options;
    options.cacheFolder = isWarm ? cache.path() : QStringLiteral("");
    const UString script("function main() { return [1, 2, 3].map(x => x + 1).join() } main()");
    if (isWarm)
        Interpreter(Object(), options).evaluate(script);
    for (auto _ : state) {
        Interpreter interpreter(Object(), options);
        if (interpreter.evaluate(script).complType() != ReturnValue)
            state.SkipWithError("the script fails");
    }
}
BENCHMARK(InterpreterLife)->ArgName("warm")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
