#include "interpreter/js/jsinterpreter.h"

#include "engine/error.h"
#include "interpreter/base/debugger.h"
#include "interpreter/js/bridge/jsobject.h"
#include "interpreter/js/kjs/ourkjsinterpreter.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "interpreter/js/scripttest.h"
#include "objectmodel/inspector.h"
#include "support/model/localmodel.h"

namespace Torvix {
namespace {

using JsInterpreterTest = ScriptTest;

KJS::Value failVerification(KJS::ExecState* exec, KJS::Object&, const KJS::List&)
{
    return jsScriptContextCall(exec, KJS::List(), [](ScriptContext* context) {
        context->setError("ended", ScriptContext::VerificationFailure);
    });
}

TEST_F(JsInterpreterTest, EvaluationGivesTheLastValueAsTextAndAsResult)
{
    EXPECT_EQ(interpreter->language(), 0);
    EXPECT_TRUE(run("var a = 20; a + 22"));
    EXPECT_EQ(interpreter->resultMessage(), "42");
    ASSERT_TRUE(bool(interpreter->lastResult()));
    EXPECT_EQ(interpreter->lastResult()->toInteger(), 42);

    EXPECT_TRUE(run("function later() {}"));
    EXPECT_FALSE(bool(interpreter->lastResult())) << "a text of declarations has no value";

    EXPECT_TRUE(run("Symbol('s')")) << "a value without a text";
    EXPECT_TRUE(interpreter->hasFunction("later"));

    EXPECT_FALSE(run("throw 'thrown'"));
    EXPECT_EQ(interpreter->resultMessage(), "thrown") << "also of what is thrown";
    EXPECT_EQ(interpreter->lastResult()->toString(), "thrown");

    writeFile("test.js", "");
    EXPECT_FALSE(interpreter->evaluate("throw new Error('x')", script, true, true));
    EXPECT_TRUE(interpreter->errorMessage().isEmpty()) << "silent";
}

TEST_F(JsInterpreterTest, ErrorsNameMessageFileAndLine)
{
    const QString other = directory.filePath("other.js");
    interpreter->evaluate("function fromOther(x) {\n  return x.y.z;\n}", other, false, false);
    struct Case
    {
        const char* code;
        const char* message;
        const char* file;
        int line;
    };
    const Case cases[] = {
        {"var a = 1;\n\nthrow new Error('third line');", "third line", "test.js", 3},
        {"\nthrow 42", "Script threw exception: 42", "test.js", 2},
        {"throw null", "Script threw exception: null", "test.js", 1},
        {"function f() {\n  throw 'deep';\n}\n\nf();", "Script threw exception: deep", "test.js", 2},
        {"\nfromOther({})", nullptr, "other.js", 2},
        {"\n\nvar = 5;", nullptr, "test.js", 3},
        {"throw {message: 'own', line: 7}", "own", "", 7},
        {"throw {message: 'own', line: '7'}", "own", "", 0},
        {"throw {message: 'own', line: -1, sourceId: 0}", "own", "", 0},
        {"throw {}", "undefined", "", 0},
        {"throw {message: 'own', line: 7, sourceId: 99}", "own", "", 7},
        {"var e = new Error('own'); e.line = 'x';\nthrow e", "own", "test.js", 0},
        {"var e = new Error('own'); e.line = 0;\nthrow e", "own", "test.js", 0},
        {"var e = new Error('own'); e.line = 1e300;\nthrow e", "own", "test.js", 0},
        {"var e = new Error('own'); e.line = 41;\nthrow e", "own", "test.js", 41},
        {"\nthrow Object.freeze(new Error('ice'))", "ice", "test.js", 2},
        {"\n'use strict';\nvar e = new Error('ice'); Object.preventExtensions(e); throw e", "ice", "test.js",
         3},
        {"throw {message: 'own', line: 3, sourceURL: 'test.js'}", "own", "", 3},
        {"\neval('\\n\\nthrow new Error(\"inner\")')", "inner", "test.js", 2},
        {"var e = new Error('odd'); e.torvixErrorType = 'Other'; throw e", "odd", "test.js", 1},
        {"throw {get message() { throw 1 }}", "undefined", "", 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.code);
        EXPECT_FALSE(run(c.code));
        if (c.message)
            EXPECT_EQ(interpreter->errorMessage(), QString(c.message));
        else
            EXPECT_FALSE(interpreter->errorMessage().isEmpty());
        EXPECT_EQ(interpreter->errorFile(), *c.file ? directory.filePath(c.file) : QString());
        EXPECT_EQ(interpreter->errorLine(), c.line);
    }
    EXPECT_TRUE(run("1"));
    EXPECT_TRUE(interpreter->errorMessage().isEmpty()) << "the fields tell of the latest run only";
}

TEST_F(JsInterpreterTest, NativeErrorsHaveThePositionOfTheCall)
{
    define("fail", [](KJS::ExecState* exec, KJS::Object&, const KJS::List&) {
        return argError(exec, KJS::RangeError, "from C++");
    });
    EXPECT_FALSE(run("function f() {\n  fail();\n}\nf();"));
    EXPECT_EQ(interpreter->errorMessage(), "from C++");
    EXPECT_EQ(interpreter->errorLine(), 2);
    EXPECT_EQ(interpreter->errorFile(), script);
    EXPECT_EQ(thrown("fail()"), "RangeError: from C++");
}

TEST_F(JsInterpreterTest, OnlyUncaughtExceptionsLeaveTheirCallStack)
{
    run("function inner() { throw 1; }\nfunction outer() {\n  inner();\n}\n"
        "function main() {\n  try { inner(); } catch (e) {}\n}");
    EXPECT_TRUE(interpreter->call("main", {}));
    EXPECT_TRUE(interpreter->errorCallStack().empty());

    EXPECT_FALSE(interpreter->call("outer", {}));
    const std::vector<LineInfo> stack = interpreter->errorCallStack();
    ASSERT_EQ(stack.size(), 2u);
    EXPECT_EQ(stack[0].line, 1);
    EXPECT_EQ(stack[0].function, "inner");
    EXPECT_EQ(stack[1].line, 3);
    EXPECT_EQ(stack[1].file, script);
    EXPECT_EQ(interpreter->errorMessage(), "Script threw exception: 1");
    EXPECT_EQ(interpreter->errorLine(), 1);
}

TEST_F(JsInterpreterTest, CallFindsFunctionsAndRefusesTheRest)
{
    run("var calls = 0; function main() { ++calls; return 'dropped'; } var number = 5; var nothing;");
    EXPECT_TRUE(interpreter->call("main", {}));
    EXPECT_EQ(text("calls"), "1");
    EXPECT_TRUE(interpreter->hasFunction("main"));
    EXPECT_FALSE(interpreter->hasFunction("number"));
    EXPECT_FALSE(interpreter->hasFunction("nosuch"));

    EXPECT_FALSE(interpreter->call("nosuch", {}));
    EXPECT_EQ(interpreter->errorMessage(), "Can't find function 'nosuch'");
    EXPECT_FALSE(interpreter->call("nothing", {}));
    EXPECT_EQ(interpreter->errorMessage(), "Can't find function 'nothing'");
    EXPECT_FALSE(interpreter->call("number", {}));
    EXPECT_EQ(interpreter->errorMessage(), "'number' is not a function");

    EXPECT_TRUE(interpreter->call("main", {})) << "earlier failures are forgotten";
    EXPECT_TRUE(interpreter->errorMessage().isEmpty());
}

TEST_F(JsInterpreterTest, CallGivesArgumentsAndTheGlobalObject)
{
    run("var seen; function f() { seen = [...arguments].join('|') + (this === globalThis); }");
    const Inspector* inspector = Inspector::self();
    EXPECT_TRUE(interpreter->call("f", {inspector->createInteger(3), inspector->createString(QString("x")),
                                        inspector->createBoolean(true)}));
    EXPECT_EQ(text("seen"), "3|x|truetrue");
}

TEST_F(JsInterpreterTest, TestOutcomesEndACallWithoutAnError)
{
    run("function outcome(type) { var e = new Error('ended'); e.torvixErrorType = type; return e; }\n"
        "function fails() { throw outcome('VerificationFailure'); }\n"
        "function skips() { throw outcome('TestcaseSkipped'); }\n"
        "function other() { throw outcome('testcaseSkipped'); }");
    for (const char* name : {"fails", "skips"}) {
        EXPECT_TRUE(interpreter->call(name, {})) << name;
        EXPECT_TRUE(interpreter->errorMessage().isEmpty()) << name;
        EXPECT_EQ(interpreter->errorLine(), 0) << name;
        EXPECT_TRUE(interpreter->errorCallStack().empty()) << name;
    }
    EXPECT_FALSE(interpreter->call("other", {}));
    EXPECT_EQ(interpreter->errorMessage(), "ended");

    EXPECT_FALSE(run("fails()")) << "at the top level it is a failure,";
    EXPECT_TRUE(interpreter->errorMessage().isEmpty()) << "but no error";
}

TEST_F(JsInterpreterTest, AnExceptionOfAnEarlierCallDisturbsNothing)
{
    run("function bad() { throw new Error('first'); }"
        "Object.defineProperty(globalThis, 'late', {get() { return function() {}; }, configurable: true});");
    EXPECT_FALSE(interpreter->call("bad", {}));
    EXPECT_TRUE(exec()->hadException()) << "it stays until the next call";
    EXPECT_TRUE(interpreter->hasFunction("late"));
    EXPECT_EQ(text("({toString() { return 'text' }})"), "text");
    EXPECT_EQ(interpreter->lastResult()->toString(), "text");
    EXPECT_FALSE(run("throw {get message() { return 'second' }, get line() { return 9 }}"));
    EXPECT_EQ(interpreter->errorMessage(), "second");
    EXPECT_EQ(interpreter->errorLine(), 9);
    EXPECT_TRUE(interpreter->call("late", {}));
    EXPECT_FALSE(exec()->hadException());
}

TEST_F(JsInterpreterTest, CallBacksAreCalledByIdentifier)
{
    run("var count = 0; var f = function() { ++count; }");
    const KJS::Object function = KJS::Object::dynamicCast(global().get(exec(), "f"));
    const QString identifier = interpreter->registerCallBack(function);
    EXPECT_EQ(identifier, "CallBack|0x" + QString::number(quintptr(function.imp()), 16));
    EXPECT_EQ(interpreter->registerCallBack(function), identifier);
    EXPECT_EQ(callBackIdentifier(function.imp()), identifier);

    run("f = null");
    EXPECT_FALSE(interpreter->hasFunction(identifier)) << "intended, although call() accepts it";
    EXPECT_TRUE(interpreter->call(identifier, {})) << "registration keeps the function";
    EXPECT_EQ(text("count"), "1");

    EXPECT_EQ(interpreter->unregisterCallBack(function), identifier);
    EXPECT_TRUE(interpreter->unregisterCallBack(function).isNull());
    EXPECT_FALSE(interpreter->call(identifier, {}));
    EXPECT_EQ(interpreter->errorMessage(), "Can't find function '" + identifier + "'");
}

TEST_F(JsInterpreterTest, SyntaxIsCheckedWithoutRunning)
{
    run("var result = 'kept'; result");
    EXPECT_TRUE(interpreter->checkSyntax("result = 'changed'", "a.js"));
    EXPECT_FALSE(interpreter->checkSyntax("\n\nfunction (", "broken.js"));
    EXPECT_EQ(interpreter->errorFile(), "broken.js");
    EXPECT_EQ(interpreter->errorLine(), 3);
    EXPECT_FALSE(interpreter->errorMessage().isEmpty());
    EXPECT_EQ(interpreter->lastResult()->toString(), "kept");
    const QString message = interpreter->errorMessage();
    EXPECT_TRUE(interpreter->checkSyntax("1", "a.js"));
    EXPECT_EQ(interpreter->errorMessage(), message) << "it clears nothing";
}

TEST_F(JsInterpreterTest, AnErrorSetFromOutsideEndsTheCallInProgress)
{
    static JsInterpreter* current = nullptr;
    current = interpreter.get();
    define("breakOff", [](KJS::ExecState*, KJS::Object&, const KJS::List&) -> KJS::Value {
        current->setError("broken off");
        return KJS::Undefined();
    });
    run("function main() { breakOff(); }");
    EXPECT_FALSE(interpreter->call("main", {}));
    EXPECT_EQ(interpreter->errorMessage(), "broken off");
}

TEST_F(JsInterpreterTest, EvaluatingForAValueTellsWhetherThereWasOne)
{
    bool hadValue = false;
    EXPECT_EQ(interpreter->evaluateJs("6 * 7", &hadValue, script, true, false).toNumber(exec()), 42);
    EXPECT_TRUE(hadValue);
    EXPECT_EQ(interpreter->lastResult()->toInteger(), 42);
    EXPECT_TRUE(interpreter->resultMessage().isNull()) << "no result message";

    EXPECT_TRUE(interpreter->evaluateJs("function f() {}", &hadValue, script, true, false).isNull());
    EXPECT_FALSE(hadValue);
    EXPECT_FALSE(bool(interpreter->lastResult()));

    EXPECT_EQ(interpreter->evaluateJs("throw 3", &hadValue, script, true, false).toNumber(exec()), 3);
    EXPECT_FALSE(hadValue);
    EXPECT_EQ(interpreter->errorMessage(), "Script threw exception: 3");
    interpreter->evaluateJs("throw 3", &hadValue, script, true, true);
    EXPECT_TRUE(interpreter->errorMessage().isEmpty());
}

TEST_F(JsInterpreterTest, ScriptArgumentsBeginWithTheScript)
{
    interpreter->setScriptArguments("test.js", {"a", "b"});
    EXPECT_EQ(interpreter->scriptArguments(), (QStringList{"test.js", "a", "b"}));
    EXPECT_EQ(interpreter->scriptName(), "test.js");
}

TEST_F(JsInterpreterTest, CallsLeaveTheDebuggersPosition)
{
    Debugger* debugger = interpreter->debugger();
    ASSERT_EQ(Debugger::self(), debugger);
    debugger->setCurrentLine(17);
    debugger->setCurrentSourceId(99);
    run("function main() {\n  throw new Error('x');\n}");
    EXPECT_FALSE(interpreter->call("main", {}));
    EXPECT_FALSE(interpreter->call("nosuch", {}));
    EXPECT_EQ(debugger->currentLine(), 17);
    EXPECT_EQ(debugger->currentSourceId(), 99);
    EXPECT_GT(debugger->sourceIdOf(script), 0);
    EXPECT_EQ(debugger->nextSourceId(), debugger->sourceIdOf(script) + 1);
}

TEST_F(JsInterpreterTest, UntaggedVerificationFailuresAreScriptErrors)
{
    define("wait", failVerification);
    run("function main() { wait(); }");
    EXPECT_FALSE(interpreter->call("main", {}));
    EXPECT_EQ(interpreter->errorMessage(), "ended");
}

/** Answers and counts how many of its objects live. */
class CountedImp : public KJS::ObjectImp
{
public:
    CountedImp() { ++alive; }
    ~CountedImp() override { --alive; }
    static int alive;
};
int CountedImp::alive = 0;

TEST_F(JsInterpreterTest, ItsEndLeavesNoObjectAlive)
{
    define("make",
           [](KJS::ExecState*, KJS::Object&, const KJS::List&) -> KJS::Value { return new CountedImp; });
    run("var kept = make(); var f = function() { return kept; }; make();\n"
        "class C { #o = make(); static s = new C; } ({held: make()})");
    interpreter->registerCallBack(KJS::Object::dynamicCast(global().get(exec(), "f")));
    global().put(exec(), "loop", new CountedImp);
    run("kept.self = kept; kept");
    EXPECT_GE(CountedImp::alive, 3);
    EXPECT_TRUE(bool(interpreter->lastResult()));
    interpreter.reset();
    EXPECT_EQ(CountedImp::alive, 0);
    EXPECT_EQ(Interpreter::self(), nullptr);
    EXPECT_EQ(ScriptContext::current(), nullptr);
}

/** An application in this process, there before the interpreter is made. */
class JsInterpreterWithApplicationTest : public testing::Test
{
protected:
    void SetUp() override
    {
        auto owned = std::make_unique<LocalModel>();
        model = owned.get();
        model->addClass("Base").enumerator("Corner", {{"TopLeft", 3}, {"Bottom", -1}});
        model->addClass("Global").superClass("Base").enumerator("Side", {{"Left", 7}});
        model->setGlobalClass("Global");
        model->addClass("Shape");
        model->addObject("Shape", "first");
        Inspector::self()->addApplication(std::move(owned));
        interpreter = std::make_unique<JsInterpreter>(&runner);
    }
    void TearDown() override
    {
        interpreter.reset();
        Inspector::self()->reset();
    }
    QString text(const char* code)
    {
        EXPECT_TRUE(interpreter->evaluate(code, "test.js", false, false))
            << interpreter->errorMessage().toStdString();
        return interpreter->resultMessage();
    }

    LocalModel* model = nullptr;
    DummyRunnerInterface runner;
    std::unique_ptr<JsInterpreter> interpreter;
};

TEST_F(JsInterpreterWithApplicationTest, EnumeratorsOfTheGlobalClassAreHiddenConstants)
{
    EXPECT_EQ(text("[TopLeft, Bottom, Left, 'Left' in globalThis].join()"), "3,-1,7,true");
    EXPECT_EQ(text("var found = 'no'; for (var name in globalThis) if (name == 'Left') found = 'yes'; found"),
              "no");
}

TEST_F(JsInterpreterWithApplicationTest, ItsEndReleasesEveryObjectOfTheApplication)
{
    const auto find = [](KJS::ExecState* exec, KJS::Object&, const KJS::List&) {
        return jsWrap(exec, *Inspector::self()->findObject(QString("{name='first'}")));
    };
    KJS::ExecState* exec = interpreter->getGlobalExecState();
    KJS::Object global = exec->interpreter()->globalObject();
    global.put(exec, "find", new ExtraFunctionImp(find, 0));
    text("var kept = find(), list = [find(), {deep: find()}];"
         "var f = (function() { var inner = find(); return function() { return inner; }; })();"
         "class Holder { #held = find(); static one = new Holder; } find()");
    interpreter->registerCallBack(KJS::Object::dynamicCast(global.get(exec, "f")));
    EXPECT_FALSE(interpreter->evaluate("throw find()", "test.js", false, false));
    EXPECT_GE(model->references(), 6);
    interpreter.reset();
    Inspector::self()->processEvents(0); // releases travel with the next exchange
    EXPECT_EQ(model->references(), 0);
}

TEST_F(JsInterpreterTest, ARunawayScriptIsEnded)
{
    interpreter->setTimeLimit(50);
    EXPECT_FALSE(run("\nfor (;;) { try { for (;;); } catch (e) {} finally { continue; } }"));
    EXPECT_EQ(interpreter->errorMessage(), "Script stopped after 50 ms");
    interpreter->setTimeLimit(0);
    EXPECT_EQ(text("1 + 1"), "2");
}

TEST_F(JsInterpreterTest, ErrorsBelongToTheInterpreterThatThrew)
{
    DummyRunnerInterface otherRunner;
    JsInterpreter other(&otherRunner);
    ASSERT_EQ(Interpreter::self(), &other);
    EXPECT_FALSE(run("\nthrow 'here'"));
    EXPECT_EQ(interpreter->errorFile(), script);
    EXPECT_EQ(interpreter->errorLine(), 2);
    EXPECT_FALSE(run("\n\nthrow new Error('here')"));
    EXPECT_EQ(interpreter->errorFile(), script);
    EXPECT_TRUE(other.errorCallStack().empty());
    Interpreter::setSelf(nullptr);
    EXPECT_FALSE(run("\n\n\nthrow 'here'"));
    EXPECT_EQ(interpreter->errorLine(), 4);
}

TEST_F(JsInterpreterTest, InterpretersNest)
{
    static JsInterpreter* outer = nullptr;
    outer = interpreter.get();
    define("other", [](KJS::ExecState*, KJS::Object&, const KJS::List&) -> KJS::Value {
        ScriptContext* context = ScriptContext::current();
        QString answer;
        {
            JsInterpreter inner(outer->runnerInterface());
            inner.evaluate("typeof mine + [1, 2].length", "inner.js", false, false);
            answer = inner.resultMessage();
        }
        Interpreter::setSelf(outer);
        ScriptContext::setCurrent(context);
        return KJS::String(answer);
    });
    EXPECT_EQ(text("var mine = 1; other() + typeof mine"), "undefined2number");
    EXPECT_FALSE(run("\nother(); throw 1"));
    EXPECT_EQ(interpreter->errorLine(), 2);
}

} // namespace
} // namespace Torvix
