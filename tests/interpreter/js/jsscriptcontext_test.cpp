#include "interpreter/base/applicationcontext.h"
#include "interpreter/js/context/jsscriptcontext.h"

#include "interpreter/js/bridge/jsarguments.h"
#include "interpreter/js/bridge/jsscriptargument.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "interpreter/js/scripttest.h"
#include "objectmodel/inspector.h"
#include "testsupport/testresult.h"

#include <QDateTime>

#include <stdexcept>

namespace Torvix {
namespace {

void addUp(ScriptContext* context)
{
    int sum = 0;
    for (const SharedPtr<ScriptArgument>& argument : context->arguments())
        sum += argument->toInteger();
    context->setResult(context->toArgument(sum));
}

void nothing(ScriptContext*) {}

template <ScriptContext::ErrorType type>
void fail(ScriptContext* context)
{
    context->setError("failed on purpose", type);
}

struct Warnings
{
    static QStringList list;
    QtMessageHandler before;
    Warnings() : before(qInstallMessageHandler(handler)) { list.clear(); }
    ~Warnings() { qInstallMessageHandler(before); }
    static void handler(QtMsgType, const QMessageLogContext&, const QString& text) { list.append(text); }
};
QStringList Warnings::list;

using JsScriptContextTest = ScriptTest;

TEST_F(JsScriptContextTest, ResultsComeBackOnEveryRoad)
{
    define(
        "stack",
        [](KJS::ExecState* exec, KJS::Object&, const KJS::List& args) {
            return jsScriptContextCall(exec, args, addUp);
        },
        3);
    onStack("stackNothing", nothing);
    onCurrent("current", addUp);
    define("other", [](KJS::ExecState* exec, KJS::Object&, const KJS::List& args) {
        return dispatchGenericScriptFunction(exec, &addUp, args);
    });
    EXPECT_EQ(text("[stack(1, 2, 3), current(4, 5), other(6), stack(), String(stackNothing())].join()"),
              "6,9,6,0,undefined");
    EXPECT_EQ(text("[stack.length, typeof stack.call, typeof stack, 'apply' in stack].join()"),
              "3,undefined,function,false");

    JSScriptContext* context = static_cast<JSScriptContext*>(ScriptContext::current());
    EXPECT_TRUE(dispatchGenericScriptFunction(exec(), KJS::List(), &nothing).isNull())
        << "the current context puts nothing in the place of no result";
    EXPECT_EQ(context->execState(), exec()) << "the state that was there before";
}

TEST_F(JsScriptContextTest, ErrorsHaveTheClassAndMarkOfTheirRoad)
{
    onStack("stackError", fail<ScriptContext::OrdinaryError>);
    onStack("stackFailure", fail<ScriptContext::VerificationFailure>);
    onCurrent("currentError", fail<ScriptContext::OrdinaryError>);
    onCurrent("currentFailure", fail<ScriptContext::VerificationFailure>);
    onCurrent("currentSkip", fail<ScriptContext::TestCaseSkipped>);
    define("raised", [](KJS::ExecState* exec, KJS::Object&, const KJS::List& args) {
        JSScriptContext context;
        context.setJSArguments(exec, args);
        context.setError("failed on purpose", ScriptContext::TestCaseSkipped);
        return context.raiseJSException();
    });
    const std::pair<const char*, const char*> cases[] = {
        {"stackError", "TypeError undefined false"},
        {"stackFailure", "TypeError undefined false"},
        {"currentError", "TypeError undefined false"},
        {"currentFailure", "TypeError VerificationFailure true"},
        {"currentSkip", "TypeError TestcaseSkipped true"},
        {"raised", "Error TestcaseSkipped true"},
    };
    for (const auto& [name, expected] : cases)
        EXPECT_EQ(text(QString("try { %1() } catch (e) { e.message == 'failed on purpose' && "
                               "e.name + ' ' + e.torvixErrorType + ' ' + ('torvixErrorType' in e) }")
                           .arg(name)),
                  expected)
            << name;

    run("function main() { currentSkip(); }");
    EXPECT_TRUE(interpreter->call("main", {}));
}

TEST_F(JsScriptContextTest, NestedCallsOfTheCurrentContextKeepTheirOwnStatus)
{
    onCurrent("inner", fail<ScriptContext::VerificationFailure>);
    onCurrent("outer", [](ScriptContext* context) {
        const auto [pass, failure] = context->catchException(context->argument(0));
        context->clearResult();
        context->setResult(context->toArgument(pass + "|" + failure));
    });
    EXPECT_EQ(text("outer('inner()')"), "Caught expected error|");
    EXPECT_EQ(text("outer('1')"), "|Unexpected pass");
    EXPECT_EQ(text("outer('this === globalThis ? 1 : nosuch')"), "|Unexpected pass");
    EXPECT_EQ(text("var e = eval; eval = 5; var t = outer('1'); eval = {}; t += outer('1'); eval = e; t"),
              "|'eval' not an object|'eval' not a function");
}

TEST_F(JsScriptContextTest, ValuesForScripts)
{
    onStack("values", [](ScriptContext* context) {
        const QDateTime time(QDate(2024, 2, 29), QTime(13, 45, 59, 7));
        ScriptArgument::List list{context->nullArgument(),   context->toArgument(true),
                                  context->toArgument(-3),   context->toArgument(9007199254740993LL),
                                  context->toArgument(2.5),  context->toArgument("t\u00e4xt"),
                                  context->toArgument(time), context->toArgument(LineInfo{"/a.js", 12})};
        ScriptArgument::Map map{{"list", context->toArgument(list)},
                                {"empty", context->toArgument(ScriptArgument::List())},
                                {"none", context->toArgument(SharedPtr<Object>())}};
        context->setResult(context->toArgument(map));
    });
    run("var v = values(); var l = v.list;");
    EXPECT_EQ(text("Object.keys(v).join() + v.empty.length + Array.isArray(v.empty) + v.none"),
              "empty,list,none0truenull");
    EXPECT_EQ(text("l.slice(0, 6).map(x => x === null ? 'null' : typeof x + x).join()"),
              QString::fromUtf8("null,booleantrue,number-3,number9007199254740992,number2.5,stringtäxt"));
    EXPECT_EQ(text("var d = l[6]; [d instanceof Date, d.getFullYear(), d.getMonth(), d.getDate(),"
                   "d.getHours(), d.getMinutes(), d.getSeconds(), d.getMilliseconds()].join()"),
              "true,2024,1,29,13,45,59,7");
    EXPECT_EQ(text("[Array.isArray(l[7]), l[7].length, l[7].fileName, l[7].line].join()"), "true,0,/a.js,12");
}

TEST_F(JsScriptContextTest, ASecondResultWinsAndIsWarnedOf)
{
    onStack("twice", [](ScriptContext* context) {
        context->setResult(context->toArgument(1));
        context->setResult(context->toArgument(2));
    });
    onCurrent("current", addUp);
    const Warnings warnings;
    EXPECT_EQ(text("twice()"), "2");
    EXPECT_EQ(Warnings::list, QStringList{"JSScript::setResult() overriding result"});
    EXPECT_EQ(text("current(1); current(2)"), "2");
    EXPECT_EQ(Warnings::list.size(), 1) << "the current context starts each call free";
}

TEST_F(JsScriptContextTest, LooseEqualityTruthAndExpressions)
{
    onStack("same", [](ScriptContext* context) {
        const bool equal = context->compare(context->argument(0), context->argument(1));
        context->setResult(context->toArgument(equal));
    });
    onStack("truth", [](ScriptContext* context) {
        context->setResult(context->toArgument(context->verify(context->argument(0))));
    });
    onStack("expression", [](ScriptContext* context) {
        QString error = "left over";
        const bool holds = context->evaluateExpression(context->argument(0)->toString(), &error, QString());
        context->setResult(context->toArgument(error + (holds ? "|true" : "|false")));
    });
    EXPECT_EQ(
        text("[same('1', 1), same(null, undefined), same(null, 0), same([1], '1'), truth([]), truth('')]"
             ".join()"),
        "true,true,false,true,true,false");
    EXPECT_EQ(text("expression('1 + 1 == 2')"), "|true");
    EXPECT_EQ(text("expression('0')"), "|false");
    EXPECT_EQ(text("expression('var x')"), "|false");
    EXPECT_EQ(text("expression('throw new Error(\"why\")')"), "why|false");
    EXPECT_EQ(text("expression('throw \"bare\"')"), "bare|false");
}

TEST_F(JsScriptContextTest, TheLongLivedContextWorksOutsideOfCalls)
{
    ScriptContext* context = ScriptContext::current();
    QString error;
    ASSERT_TRUE(run("var limit = 3"));
    EXPECT_TRUE(context->evaluateExpression("limit == 3", &error, QString()));
    EXPECT_FALSE(context->evaluateExpression("nosuch", &error, QString()));
    EXPECT_THAT(error.toStdString(), testing::HasSubstr("nosuch"));
    const SharedPtr<ScriptArgument> date = context->toArgument(QDateTime({2024, 2, 29}, {12, 30}));
    EXPECT_EQ(date->typeName(), "Date");
    EXPECT_THAT(date->toString().toStdString(), testing::HasSubstr("Feb 29 2024 12:30:00"));
    const ScriptArgument::Map entries{{"__proto__", context->toArgument(5)}, {"a", context->toArgument(6)}};
    const SharedPtr<ScriptArgument> map = context->toArgument(entries);
    EXPECT_EQ(map->toMap().size(), 2u);
    LineInfo info;
    EXPECT_FALSE(context->lineInfo(&info, 0));
}

TEST_F(JsScriptContextTest, PositionsOfTheRunningScriptByDepth)
{
    onStack("where", [](ScriptContext* context) {
        QStringList lines;
        LineInfo info{"untouched", -7};
        unsigned depth = 0;
        for (; context->lineInfo(&info, depth); ++depth)
            lines.append(QString("%1:%2").arg(info.file.section('/', -1)).arg(info.line));
        LineInfo beyond{"untouched", -7};
        EXPECT_FALSE(context->lineInfo(&beyond, depth));
        EXPECT_EQ(beyond.line, -7);
        context->setResult(context->toArgument(lines.join(" ")));
    });
    interpreter->evaluate("function lib() {\n\n  return where();\n}", "lib.js", false, false);
    EXPECT_EQ(text("function mine() {\n  return lib();\n}\nmine()"), "lib.js:3 test.js:2 test.js:4");
    EXPECT_EQ(text("\n\neval('\\n where()')"), ":2 test.js:3") << "text for eval has no file";
}

TEST_F(JsScriptContextTest, CopiesShareTheSinkAndNothingElse)
{
    JSScriptContext* current = static_cast<JSScriptContext*>(ScriptContext::current());
    auto* sink = reinterpret_cast<TestResult*>(this);
    interpreter->initTestFunctions(sink);
    EXPECT_EQ(current->testResult(), sink);
    dispatchGenericScriptFunction(exec(), KJS::List{KJS::Number(1)}, &fail<ScriptContext::TestCaseSkipped>);
    exec()->clearException();
    const std::unique_ptr<ScriptContext> copy(current->lightCopy());
    EXPECT_EQ(copy->testResult(), sink);
    EXPECT_TRUE(copy->errorMessage().isEmpty());
    EXPECT_EQ(copy->errorType(), ScriptContext::OrdinaryError);
    EXPECT_EQ(copy->argumentCount(), 0);
}

TEST_F(JsScriptContextTest, OnlyTheLongLivedContextCarriesTheResultSink)
{
    TestResult result(nullptr);
    interpreter->initTestFunctions(&result);
    const auto hasResults = [](ScriptContext* context) {
        context->setResult(context->toArgument(context->testResult() != nullptr));
    };
    onStack("onStack", hasResults);
    onCurrent("onCurrent", hasResults);
    EXPECT_EQ(text("[onStack(), onCurrent()].join()"), "false,true");
    // Read as a value and called, each function of `test` is one and the same.
    EXPECT_EQ(text("test.verify === test.verify && typeof test.verify"), "function");
    EXPECT_EQ(text("test.log = 5; test.log"), "5");
}

TEST_F(JsScriptContextTest, ApplicationContextsGoThroughScripts)
{
    onStack("give", [](ScriptContext* context) {
        SharedPtr<ApplicationContext> given = new ApplicationContext;
        given->id = 3;
        given->name = "shop";
        context->setResult(context->toArgument(given));
    });
    onStack("idOf", [](ScriptContext* context) {
        context->setResult(context->toArgument(context->argument(0)->toApplicationContext()->id));
    });
    EXPECT_EQ(text("[give().name, idOf(give()), idOf(5)].join()"), "shop,3,-1");
}

TEST_F(JsScriptContextTest, StaticMembersAreGlobalsWithAnUnderscore)
{
    JSScriptContext context;
    context.addStaticMemberFunction("Remote", "connect", nothing);
    EXPECT_TRUE(context.hasGlobalFunction("Remote_connect"));
    EXPECT_FALSE(context.hasGlobalFunction("Remote.connect"));
}

TEST_F(JsScriptContextTest, CppExceptionsPassThroughScriptToTheRunner)
{
    onStack("burst", [](ScriptContext*) { throw std::runtime_error("socket is closed"); });
    EXPECT_THROW(run("try { burst() } catch (e) { 'script must not see it' }"), std::runtime_error);
    run("function main() { burst(); }");
    EXPECT_THROW(interpreter->call("main", {}), std::runtime_error);
    EXPECT_EQ(text("1 + 1"), "2");
}

// Argument helpers -----------------------------------------------------------------------------------

KJS::Value parsed(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    QString out;
    return parseArg(exec, args, "parsed", &out) ? KJS::Value(KJS::String(out)) : exec->exception();
}

KJS::Value named(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    QString out;
    return parseObjectNameArg(exec, args, "named", &out) ? KJS::Value(KJS::String(out)) : exec->exception();
}

KJS::Value stringOrObject(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    QString out;
    return qstrFromStringOrObjectArg(exec, args, "stringOrObject", &out) ? KJS::Value(KJS::String(out))
                                                                         : exec->exception();
}

KJS::Value single(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    const SharedPtr<Object> object = unwrapSingleArg(exec, args, "single");
    return object ? KJS::Value(KJS::String(object->toString())) : exec->exception();
}

TEST_F(JsScriptContextTest, ArgumentHelpersAcceptAndRefuse)
{
    define("parsed", parsed);
    define("named", named);
    define("stringOrObject", stringOrObject);
    define("single", single);
    const std::pair<const char*, const char*> accepted[] = {
        {"parsed('x')", "x"},
        {"named('names.a')", "names.a"},
        {"named({type: 'QLabel'}, 1, 2)", "{type='QLabel'}"},
        {"stringOrObject('x')", "x"},
        {"single(5)", "5"},
        {"single('x')", "x"},
        {"single(true)", "true"},
    };
    for (const auto& [code, expected] : accepted)
        EXPECT_EQ(text(code), expected) << code;
    const std::pair<const char*, const char*> refused[] = {
        {"parsed()", "Error: parsed() takes a string argument"},
        {"parsed(5)", "Error: parsed() takes a string argument"},
        {"parsed('x', 'y')", "Error: parsed() takes a string argument"},
        {"named(null)", "Error: named() takes a string argument"},
        {"named(new Date)", "Error: named() takes a string argument"},
        {"stringOrObject()", "SyntaxError: Expected exactly a single argument in call to stringOrObject()"},
        {"stringOrObject('a', 'b')",
         "SyntaxError: Expected exactly a single argument in call to stringOrObject()"},
        {"stringOrObject(5)", "TypeError: Invalid argument type"},
        {"single()", "SyntaxError: Expected exactly a single argument in call to single()"},
        {"single({})", "TypeError: Invalid argument type"},
        {"single(null)", "TypeError: Invalid argument type"},
    };
    for (const auto& [code, expected] : refused)
        EXPECT_EQ(thrown(code), expected) << code;
}

TEST_F(JsScriptContextTest, StringListsBothWays)
{
    const auto list = [this](const QString& expression) {
        run("var value = (" + expression + ")");
        return JSScriptContext::toQStringList(exec(), global().get(exec(), "value"));
    };
    EXPECT_EQ(list("['a', undefined, 3, null]"), (QStringList{"a", "undefined", "3", "null"}));
    EXPECT_EQ(list("[]"), QStringList());
    EXPECT_EQ(list("undefined"), QStringList());
    EXPECT_EQ(list("null"), QStringList());
    EXPECT_EQ(list("'one'"), QStringList{"one"});
    EXPECT_EQ(list("({length: 2})"), QStringList{"[object Object]"});
    global().put(exec(), "strings", JSScriptContext::stringList(exec(), {"x", "", "z"}));
    EXPECT_EQ(text("JSON.stringify(strings)"), "[\"x\",\"\",\"z\"]");
}

} // namespace
} // namespace Torvix
