// Debugger hooks, frames, locals.

#include "enginetest.h"

#include "engine/debugger.h"

#include <memory>

namespace KJS {
namespace {

class Recorder : public Debugger
{
public:
    bool sourceParsed(ExecState*, int sourceId, const UString& source, int errorLine) override
    {
        log << QStringLiteral("parsed %1 %2 %3").arg(sourceId).arg(source.size()).arg(errorLine);
        return true;
    }
    bool atStatement(ExecState* exec) override
    {
        log << QStringLiteral("at %1").arg(exec->context().curStmtFirstLine());
        if (onStatement)
            onStatement(exec);
        return goOn;
    }
    bool enterContext(ExecState* exec) override
    {
        frames.push_back(exec);
        log << QStringLiteral("enter %1").arg(exec->context().curStmtFirstLine());
        return true;
    }
    bool exitContext(ExecState* exec, const Completion&) override
    {
        EXPECT_FALSE(frames.empty());
        EXPECT_EQ(frames.empty() ? nullptr : frames.back(), exec);
        if (!frames.empty())
            frames.pop_back();
        log << "exit";
        return true;
    }
    bool exception(ExecState* exec, const Value& value, bool caught) override
    {
        log << QStringLiteral("%1 %2 depth %3")
                   .arg(caught ? "caught" : "uncaught", value.toString(exec).qstring())
                   .arg(frames.size());
        return Debugger::exception(exec, value, caught);
    }

    QString take()
    {
        const QString text = log.join(", ");
        log.clear();
        return text;
    }

    QStringList log;
    std::vector<ExecState*> frames;
    std::function<void(ExecState*)> onStatement;
    bool goOn = true;
};

class DebuggerTest : public testing::TestWithParam<bool>
{
protected:
    DebuggerTest() : interpreter(Object(), testOptions(GetParam())) { recorder.attach(&interpreter); }
    QString run(const QString& code) { return KJS::run(interpreter, code); }

    Interpreter interpreter;
    ExecState* exec = interpreter.globalExec();
    Recorder recorder;
};

INSTANTIATE_TEST_SUITE_P(Flavours, DebuggerTest, testing::Bool(),
                         [](const auto& flavour) { return flavour.param ? "Debug" : "Fast"; });

TEST_P(DebuggerTest, HooksComeInOrder)
{
    const int next = recorder.nextSourceId();
    run("var a = 1;\nfunction f(x) {\n  return x + 1;\n}\na = f(a);");
    EXPECT_EQ(recorder.take(),
              QStringLiteral("parsed %1 54 0, enter 1, at 1, at 5, enter 2, at 3, exit, exit").arg(next));
    EXPECT_EQ(recorder.nextSourceId(), next + 1);
    run("(");
    EXPECT_TRUE(recorder.take().startsWith(QStringLiteral("parsed %1 1 1").arg(next + 1)));
}

TEST_P(DebuggerTest, ExceptionsAreToldWhileTheFramesAreThere)
{
    run("function inner() {\n throw 'x'\n}\nfunction outer() { inner() }");
    recorder.take();
    run("outer()");
    EXPECT_EQ(recorder.log.filter("caught").join("; "), "uncaught x depth 3");
    EXPECT_TRUE(recorder.frames.empty());
    recorder.take();
    run("try { outer() } catch (e) {}");
    EXPECT_EQ(recorder.log.filter("caught").join("; "), "caught x depth 3");
    recorder.take();
    run("[1].forEach(() => { try { throw 1 } catch { throw 2 } })");
    EXPECT_EQ(recorder.log.filter("caught").join("; "), "caught 1 depth 2; uncaught 2 depth 2");
    EXPECT_TRUE(recorder.frames.empty());
}

TEST_P(DebuggerTest, EachFrameKeepsItsPosition)
{
    QStringList stack;
    KJS::define(interpreter, "where", [&](ExecState* state, Object&, const List&) -> Value {
        stack.clear();
        for (int frame = interpreter.frameCount(); frame > 0; --frame) {
            const Context context = interpreter.frameExec(frame)->context();
            stack << QStringLiteral("%1:%2:%3")
                         .arg(context.functionName().qstring())
                         .arg(context.curStmtFirstLine())
                         .arg(interpreter.sourceName(context.sourceId()).qstring());
        }
        EXPECT_EQ(state, interpreter.currentExec());
        return Undefined();
    });
    for (const bool wanted : {true, false}) {
        recorder.setHooksWanted(wanted);
        interpreter.setSourceName("first.js");
        run("function a() {\n  where();\n}\nvar o = {b() {\n\n a() }}");
        interpreter.setSourceName("second.js");
        run("\n[1].forEach(function each() {\n  o.b()\n})");
        EXPECT_EQ(stack.mid(0, 3).join(" "), "a:2:first.js b:6:first.js each:3:second.js");
        EXPECT_TRUE(stack.at(3).endsWith(":2:second.js")) << stack.at(3).toStdString();
        EXPECT_EQ(interpreter.frameCount(), 0);
    }
}

TEST_P(DebuggerTest, TheFlagMayRiseAndFallAmidARun)
{
    recorder.setHooksWanted(false);
    KJS::define(interpreter, "watch", [&](ExecState*, Object&, const List& arguments) -> Value {
        recorder.setHooksWanted(arguments.at(0).toBoolean(exec));
        return Undefined();
    });
    run("function f() {\n  watch(true);\n  1;\n  watch(false);\n  2;\n}\nf();\n3;");
    EXPECT_EQ(recorder.log.mid(1).join(", "), "enter 7, enter 2, at 3, at 4, exit, exit");
    EXPECT_TRUE(recorder.frames.empty());
}

TEST_P(DebuggerTest, AFalseAnswerEndsTheScript)
{
    recorder.onStatement = [&](ExecState* state) { recorder.goOn = state->context().curStmtFirstLine() < 3; };
    EXPECT_EQ(run("var passed = 0;\nwhile (true)\n  passed++;"), "throws Error: Script interrupted");
    recorder.onStatement = nullptr;
    recorder.goOn = true;
    EXPECT_EQ(run("'alive'"), "alive");
}

TEST_P(DebuggerTest, ThisOfAFrame)
{
    QStringList seen;
    KJS::define(interpreter, "look", [&](ExecState* state, Object&, const List&) -> Value {
        const Object self = state->context().getThisBinding(state);
        if (state->hadException()) {
            seen << state->exception().toString(state).qstring().section(':', 0, 0);
            state->clearException();
        } else {
            seen << (self.imp() == interpreter.globalObject().imp() ? UString("global") : self.className())
                        .qstring();
        }
        return Undefined();
    });
    run("look(); (function() { this; look() })(); (function() { 'use strict'; this; look() })();"
        "({m() { this; look() }}).m(); (function() { this; (() => { this; look() })() }).call([]);"
        "class A { constructor() { this; look() } } new A;"
        "class B extends A { constructor() { look(); super(); look() } } new B;"
        "(function() { this; look() }).call(5);");
    EXPECT_EQ(seen.join(" "), "global global global Object Array Object ReferenceError Object Object Number");
}

TEST_P(DebuggerTest, VariablesAndExpressionsOfAFrame)
{
    QStringList seen;
    const auto inspect = [&](ExecState* state) {
        const Object variables = state->context().variableObject();
        if (variables.imp() == interpreter.globalObject().imp())
            return;
        QStringList names;
        for (const Reference& each : variables.propList(state, false))
            names << each.getPropertyName(state).qstring() + "=" +
                         each.getValue(state).toString(state).qstring();
        names.sort();
        seen << names.join(",");
        const Value sum = state->context().evaluate(state, "a + b");
        seen << (state->hadException() ? QStringLiteral("no") : sum.toString(state).qstring());
        state->clearException();
    };
    recorder.onStatement = [&](ExecState* state) {
        if (state->context().curStmtFirstLine() == 4)
            inspect(state);
    };
    run("function f(a) {\n  var b = 2;\n  if (a) { let b = 3, c = 'in';\n    a++;\n  }\n}\nf(1)");
    const bool isDebug = GetParam();
    EXPECT_EQ(seen.join(" | "), isDebug ? "a=1,b=3,c=in | 4" : " | no");
    // at the top, the variables are the global object's
    seen.clear();
    bool isGlobal = false;
    recorder.onStatement = [&](ExecState* state) {
        isGlobal = state->context().variableObject().imp() == interpreter.globalObject().imp();
    };
    run("var top = 1; top++");
    EXPECT_TRUE(isGlobal);
}

TEST_P(DebuggerTest, InternalTextsAreNotAnnounced)
{
    interpreter.evaluate("function helper() {\n  return 1;\n}", Value(), true);
    EXPECT_EQ(recorder.log.filter("parsed").size(), 0);
    std::vector<int> ids;
    recorder.onStatement = [&](ExecState* state) { ids.push_back(state->context().sourceId()); };
    run("helper()");
    ASSERT_EQ(ids.size(), 2u);
    EXPECT_GT(ids[0], 0);
    EXPECT_EQ(ids[1], -1);
}

TEST_P(DebuggerTest, DeclaredFunctionsKnowTheirPlace)
{
    const int source = recorder.nextSourceId();
    run("\nfunction declared() {}\nvar arrow = () => 1, bound = declared.bind(null);");
    const Object global = interpreter.globalObject();
    const auto function = [&](const char* name) { return Object::dynamicCast(global.get(exec, name)); };
    ASSERT_TRUE(function("declared").inherits(&DeclaredFunctionImp::info));
    const auto* const declared = static_cast<DeclaredFunctionImp*>(function("declared").imp());
    const Object held = function("declared");
    EXPECT_EQ(static_cast<DeclaredFunctionImp*>(held.imp())->declarationLine(), 2);
    EXPECT_EQ(static_cast<DeclaredFunctionImp*>(held.imp())->sourceId(), source);
    EXPECT_EQ(static_cast<DeclaredFunctionImp*>(held.imp())->functionName(), UString("declared"));
    Q_UNUSED(declared)
    EXPECT_TRUE(function("arrow").inherits(&DeclaredFunctionImp::info));
    for (const char* const native : {"bound", "parseInt", "Array"}) {
        EXPECT_FALSE(function(native).inherits(&DeclaredFunctionImp::info)) << native;
        EXPECT_TRUE(function(native).inherits(&InternalFunctionImp::info)) << native;
    }
}

TEST(DebuggerLifeTest, EitherMayEndFirst)
{
    auto interpreter = std::make_unique<Interpreter>(Object(), testOptions());
    auto first = std::make_unique<Recorder>(), second = std::make_unique<Recorder>();
    first->attach(interpreter.get());
    second->attach(interpreter.get());
    EXPECT_EQ(first->interpreter(), nullptr);
    run(*interpreter, "1");
    EXPECT_TRUE(first->log.isEmpty());
    EXPECT_FALSE(second->log.isEmpty());
    second.reset();
    EXPECT_EQ(run(*interpreter, "2"), "2");
    first->attach(interpreter.get());
    interpreter.reset();
    EXPECT_EQ(first->interpreter(), nullptr);
    EXPECT_EQ(first->nextSourceId(), 0);
}

TEST_P(DebuggerTest, CppExceptionsOfHooksLeaveTheRun)
{
    recorder.onStatement = [](ExecState* state) {
        if (state->context().curStmtFirstLine() == 2)
            throw std::runtime_error("from a hook");
    };
    EXPECT_THROW(run("1;\n2;"), std::runtime_error);
    recorder.onStatement = nullptr;
    recorder.frames.clear();
    EXPECT_EQ(run("'alive'"), "alive");
}

} // namespace
} // namespace KJS
