// Completions, error objects and their positions, C++ exceptions, stopping, two interpreters.

#include "enginetest.h"

#include <chrono>
#include <memory>
#include <stdexcept>
#include <thread>

namespace KJS {
namespace {

class ErrorsTest : public EngineTest
{
protected:
    /** "Class: message @line#source" of what the code throws. */
    QString thrown(const QString& code)
    {
        const int source = nextSource++;
        const Completion done = interpreter.evaluate(UString(code));
        if (done.complType() != Throw)
            return "no throw";
        const Object error = Object::dynamicCast(done.value());
        if (error.isNull())
            return textOf(interpreter, done.value());
        const QString id = textOf(interpreter, error.get(exec, "sourceId"));
        return QStringLiteral("%1 @%2#%3")
            .arg(textOf(interpreter, error), textOf(interpreter, error.get(exec, "line")),
                 id == QString::number(source) ? "own" : id);
    }
    int nextSource = 1;
};

TEST_F(ErrorsTest, CompletionTypes)
{
    const struct
    {
        const char* code;
        ComplType type;
    } cases[] = {{"1 + 1", ReturnValue},
                 {"", Normal},
                 {"var x = 1;", Normal},
                 {"throw 3", Throw},
                 {"throw undefined", Throw},
                 {"null", ReturnValue},
                 {"if (true) 'v'", ReturnValue},
                 {"} {", Throw},
                 {"function f() { return 1 }", Normal}};
    for (const auto& each : cases) {
        const Completion done = interpreter.evaluate(each.code);
        EXPECT_EQ(done.complType(), each.type) << each.code;
        EXPECT_EQ(done.hasValue(), each.type != Normal) << each.code;
    }
    EXPECT_EQ(int(Throw), 4);
    EXPECT_EQ(int(ReturnValue), 3);
}

TEST_F(ErrorsTest, ThisValueOfAScript)
{
    EXPECT_EQ(textOf(interpreter, interpreter.evaluate("this.mark", object("({mark: 'm'})")).value()), "m");
    EXPECT_EQ(run("this === globalThis"), "true");
}

TEST_F(ErrorsTest, PositionsOfErrors)
{
    define("fail", [](ExecState* state, Object&, const List& arguments) -> Value {
        const Object error = Error::create(state, static_cast<ErrorType>(arguments.at(0).toInt32(state)),
                                           arguments.at(1).toString(state), -1, -1);
        state->setException(error);
        return error;
    });
    const char* const cases[][2] = {
        {"\n\nthrow new Error('three')", "Error: three @3#own"},
        {"var a = 1;\nfail(5, 'native')\nvar b;", "TypeError: native @2#own"},
        {"function f() {\n  fail(0, 'deep');\n}\n\nf()", "Error: deep @2#own"},
        {"fail(1, 'e'); ", "EvalError: e @1#own"},
        {"\nfail(2, 'r')", "RangeError: r @2#own"},
        {"fail(3, 'x')", "ReferenceError: x @1#own"},
        {"fail(4, 's')", "SyntaxError: s @1#own"},
        {"fail(6, 'u')", "URIError: u @1#own"},
        {"\n\n\nnothing.there", "ReferenceError: Can't find variable: nothing @4#own"},
        {"try { null.x } catch (e) { throw e }",
         "TypeError: null is not an object (evaluating 'null.x') @1#own"},
        {"var ok;\nvar = 5", "SyntaxError: Unexpected token '='. Expected a parameter pattern or a ')' in "
                             "parameter list. @2#own"},
        {"throw 'just text'", "just text"},
        {"f = function(n) { return f(n + 1) + 1 };\nf(0)",
         "RangeError: Maximum call stack size exceeded. @1#own"},
        {"[3, 1].sort(() => fail(0, 'in sort'))", "Error: in sort @1#own"},
    };
    for (const auto& each : cases) {
        QString expected = each[1];
        const QString result = thrown(each[0]);
        if (expected.startsWith("SyntaxError: Unexpected"))
            EXPECT_TRUE(result.startsWith("SyntaxError: ") && result.endsWith("@2#own"))
                << result.toStdString();
        else
            EXPECT_EQ(result, expected) << each[0];
    }
    // an error from an earlier text keeps that text's id
    run("kept = () => { throw new Error('kept') }");
    const int source = nextSource++;
    EXPECT_EQ(thrown("\n\n\n\nkept()"), QStringLiteral("Error: kept @1#%1").arg(source));
}

TEST_F(ErrorsTest, ErrorsWithoutRunningCodeHaveNoPosition)
{
    const Object error = Error::create(exec, GeneralError, "alone", -1, -1);
    EXPECT_EQ(error.get(exec, "line").toInt32(exec), -1);
    EXPECT_EQ(error.get(exec, "sourceId").toInt32(exec), -1);
    const Object placed = Error::create(exec, GeneralError, "placed", 12, 34);
    EXPECT_EQ(placed.get(exec, "line").toInt32(exec), 12);
    EXPECT_EQ(placed.get(exec, "sourceId").toInt32(exec), 34);
    global.put(exec, "placed", placed);
    EXPECT_EQ(run("placed.line = 5; placed.line + JSON.stringify(placed)"), "5{}");
    EXPECT_FALSE(exec->hadException());
}

TEST_F(ErrorsTest, SyntaxIsCheckedWithoutRunning)
{
    int line = 0;
    UString message;
    EXPECT_TRUE(interpreter.checkSyntax("ran = true; function f() {}", &line, &message));
    EXPECT_FALSE(interpreter.checkSyntax("ran = true;\n\nif (", &line, &message));
    EXPECT_EQ(line, 3);
    EXPECT_FALSE(message.isEmpty());
    EXPECT_EQ(run("typeof ran"), "undefined");
}

TEST_F(ErrorsTest, ExceptionsOfScriptReachCppAndBack)
{
    Object function = object("(function(){ throw this.what })");
    Object receiver = object("({what: 'thrown'})");
    EXPECT_TRUE(function.call(exec, receiver, List::empty()).isUndefined());
    EXPECT_EQ(textOf(interpreter, exec->exception()), "thrown");
    exec->clearException();
    // a native function that passes it on, and one that swallows it
    define("passOn", [](ExecState* state, Object& self, const List& arguments) -> Value {
        Object callee = Object::dynamicCast(arguments.at(0));
        return callee.call(state, self, List::empty());
    });
    define("swallow", [](ExecState* state, Object& self, const List& arguments) -> Value {
        Object callee = Object::dynamicCast(arguments.at(0));
        callee.call(state, self, List::empty());
        const Value exception = state->exception();
        state->clearException();
        return exception;
    });
    EXPECT_EQ(run("try { passOn(() => { throw 'a' }) } catch (e) { 'caught ' + e }"), "caught a");
    EXPECT_EQ(run("swallow(() => { throw 'b' })"), "b");
    // what was left in the global state before is neither seen nor lost
    exec->setException(String("older"));
    EXPECT_EQ(run("1 + 1"), "2");
    EXPECT_EQ(textOf(interpreter, exec->exception()), "older");
}

// C++ exceptions --------------------------------------------------------------------------------

TEST_F(ErrorsTest, CppExceptionsPassThroughScript)
{
    define("boom", [](ExecState*, Object&, const List&) -> Value { throw std::runtime_error("boom"); });
    define("reenter", [](ExecState* state, Object& self, const List& arguments) -> Value {
        return Object(Object::dynamicCast(arguments.at(0))).call(state, self, List::empty());
    });
    run("finallies = 0; caught = 0;");
    for (const char* const code :
         {"boom()", "try { boom() } catch (e) { caught++ } finally { finallies++ }",
          "[2, 1, 3].sort(() => { try { boom() } catch { caught++ } return 0 })",
          "function* g() { try { yield boom() } catch { caught++ } } for (const x of g()) {}",
          "Array.from({length: 3}, boom)",
          "new (class { constructor() { try { boom() } catch { caught++ } } })",
          "({get x() { return boom() }}).x", "reenter(() => { try { boom() } catch { caught++ } })",
          "JSON.stringify({toJSON: boom})", "eval('boom()')"}) {
        try {
            interpreter.evaluate(code);
            ADD_FAILURE() << "not thrown: " << code;
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "boom");
        }
        EXPECT_EQ(interpreter.frameCount(), 0) << code;
        EXPECT_EQ(run("1 + 1"), "2") << code;
    }
    EXPECT_EQ(run("caught"), "0");
    EXPECT_GE(value("finallies").toInt32(exec), 1);
    Object nothing;
    EXPECT_THROW(object("boom").call(exec, nothing, List::empty()), std::runtime_error);
    EXPECT_THROW(object("(() => boom())").call(exec, nothing, List::empty()), std::runtime_error);
}

TEST_F(ErrorsTest, PromiseJobsRunWhenTheOutermostCallEnds)
{
    QStringList order;
    define("note", [&](ExecState* state, Object&, const List& arguments) -> Value {
        order << arguments.at(0).toString(state).qstring();
        return Undefined();
    });
    define("nested", [&](ExecState* state, Object&, const List&) -> Value {
        state->interpreter()->evaluate("Promise.resolve().then(() => note('inner job')); note('inner')");
        order << "after inner";
        return Undefined();
    });
    run("(async () => { note('start'); await null; note('resumed') })(); nested(); note('end')");
    EXPECT_EQ(order.join(","), "start,inner,after inner,end,resumed,inner job");
}

// Stopping --------------------------------------------------------------------------------------

TEST_F(ErrorsTest, RunawayScriptsAreStopped)
{
    interpreter.setTimeLimit(200);
    const QString result = run("cleaned = false; try { for (;;); } catch (e) {} finally { cleaned = true }");
    EXPECT_EQ(result, "throws Error: Script stopped after 200 ms");
    EXPECT_EQ(run("cleaned"), "false");
    EXPECT_EQ(interpreter.frameCount(), 0);
    Object endless = object("(function() { while (true) {} })"), receiver;
    endless.call(exec, receiver, List::empty());
    EXPECT_EQ(textOf(interpreter, exec->exception()), "Error: Script stopped after 200 ms");
    exec->clearException();
    interpreter.setTimeLimit(0);
    EXPECT_EQ(run("var end = Date.now() + 400; while (Date.now() < end); 'done'"), "done");
}

TEST_F(ErrorsTest, AnotherThreadInterrupts)
{
    std::thread other([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
        interpreter.interrupt();
    });
    EXPECT_EQ(run("for (;;);"), "throws Error: Script interrupted");
    other.join();
    EXPECT_EQ(run("'alive'"), "alive");
}

/** A native function that takes its time and uses none of the processor's. */
class Nap : public ObjectImp
{
public:
    bool implementsCall() const override { return true; }
    Value call(ExecState*, Object&, const List&) override
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        return Undefined();
    }
};

TEST_F(ErrorsTest, AnotherThreadInterruptsAlsoAScriptThatOnlyWaits)
{
    global.put(exec, "nap", Object(new Nap));
    std::thread other([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
        interpreter.interrupt();
    });
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(run("function wait() {\n"
                  "  try {\n    nap();\n  } catch (e) {\n    caught = true;\n  }\n}\n"
                  "var caught = false;\nfor (;;)\n  wait();"),
              "throws Error: Script interrupted");
    // generous for a machine that is busy; without a look at each return it takes ten times as long
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    other.join();
    EXPECT_EQ(run("caught"), "false");
}

// Several interpreters --------------------------------------------------------------------------

TEST_F(ErrorsTest, InterpretersAreApart)
{
    auto other = std::make_unique<Interpreter>(Object(), testOptions());
    run("shared = 'first'");
    KJS::run(*other, "shared = 'second'");
    EXPECT_EQ(run("shared"), "first");
    EXPECT_EQ(KJS::run(*other, "shared"), "second");
    // an object of one is refused by the other, before and after its end
    Object foreign = Object::dynamicCast(other->evaluate("({a: 1})").value());
    global.put(exec, "foreign", foreign);
    EXPECT_EQ(textOf(interpreter, exec->exception()), "TypeError: The object belongs to another interpreter");
    exec->clearException();
    other.reset();
    EXPECT_TRUE(foreign.get(exec, "a").isUndefined());
    global.put(exec, "foreign", foreign);
    EXPECT_EQ(textOf(interpreter, exec->exception()), "TypeError: The object's interpreter has ended");
    exec->clearException();
}

TEST_F(ErrorsTest, AnInterpreterInsideACallOfAnother)
{
    define("inside", [](ExecState* state, Object&, const List& arguments) -> Value {
        Interpreter inner(Object(), testOptions());
        KJS::define(inner, "outer", [&](ExecState*, Object&, const List&) -> Value {
            return String(KJS::run(*state->interpreter(), "garbage = []; for (let i = 0; i < 1e4; i++) "
                                                          "garbage.push({i}); 'outer again'"));
        });
        const QString text = KJS::run(inner, arguments.at(0).toString(state).qstring());
        Collector::collect();
        return String(text);
    });
    EXPECT_EQ(run("const kept = {v: 'kept'}; inside('outer()') + '/' + inside('throw 1') + '/' + kept.v"),
              "outer again/throws 1/kept");
    EXPECT_EQ(interpreter.frameCount(), 0);
}

// Odd input -------------------------------------------------------------------------------------

TEST_F(ErrorsTest, OddTextsWorkOrFailClearly)
{
    EXPECT_EQ(run("1;\r\n2;\r\n'last'"), "last");
    EXPECT_EQ(thrown("1;\r\n2;\r\nthrow new Error('crlf')").section('@', 1).section('#', 0, 0), "3");
    EXPECT_EQ(run(QStringLiteral("'a%1b'.length").arg(QChar(0))), "3");
    EXPECT_EQ(run(QStringLiteral("1 %1 2").arg(QChar(0))).left(19), "throws SyntaxError:");
    EXPECT_EQ(run(QStringLiteral("'%1'.charCodeAt(0)").arg(QChar(0xD800))), "55296");
    EXPECT_EQ(run("'" + QString(1 << 20, 'x') + "'.length"), QString::number(1 << 20));
    QString large;
    while (large.size() < 1 << 20)
        large += "function f(a) { return a + 1 }\nvar x = f(1);\n";
    EXPECT_EQ(run(large + "x"), "2");
}

} // namespace
} // namespace KJS
