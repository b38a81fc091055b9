#include "gherkin/scriptactions.h"
#include "interpreter/js/context/jsscriptcontext.h"
#include "interpreter/js/scripttest.h"
#include "support/messagecapture.h"

namespace Torvix {
namespace {

using namespace Gherkin;

Step step(const QString& text, StepType type = Given)
{
    Step step;
    step.type = type;
    step.lineText = stepKeyword(type) + QLatin1Char(' ') + text;
    step.textOffset = step.lineText.size() - text.size();
    return step;
}

/** Steps and hooks as scripts register them. */
class JsStepsTest : public ScriptTest
{
protected:
    void SetUp() override
    {
        prepare(R"js(
            var log = [];
            var number = 0;
            function add(keyword, text, subroutine, more) {
                const place = { fileName: "steps.js", line: ++number };
                const step = Object.assign({ text, subroutine, filepos: place }, more);
                _step_functions.push({ [keyword]: { [text]: step } });
            }
            var _step_functions = [];
            var _hook_functions = {};
        )js");
        JSScriptContext context;
        context.setJSArguments(exec(), {});
        actions = context.gherkinScriptActions(QString());
    }

    void prepare(const QString& code) { ASSERT_TRUE(run(code)) << interpreter->errorMessage().toStdString(); }

    /** "status message file:line" */
    QString toText(const ScriptResult& result)
    {
        return QString("%1 %2 %3:%4")
            .arg(result.status)
            .arg(result.message.c_str(), QFileInfo(result.file.c_str()).fileName())
            .arg(result.line);
    }
    QString execute(const QString& text, StepType type = Given)
    {
        return toText(actions->lookupAndExecuteStep(step(text, type)));
    }
    QString hook(HookType type, HookPhase phase)
    {
        return toText(actions->executeHook(type, phase, "the title"));
    }

    std::unique_ptr<ScriptActions> actions;
};

TEST_F(JsStepsTest, EveryAnswerOfAStepFunctionIsAStatus)
{
    prepare(R"js(
        const answers = {
            nothing() {}, one: () => 1, two: () => 2, text: () => "a", no: () => false,
            abort: () => "__TorvixAbortScenario", many: () => "__TorvixMultipleMatches of my own",
            throwText() { throw "oops" }, throwNothing() { throw undefined },
            throwError() {
                throw new TypeError("bad"); },
            throwObject() { throw { message: 5, sourceId: 0, line: 9 } },
            throwOutcome() { throw { torvixErrorType: "VerificationFailure", message: "told" } },
            throwSkip() { throw { torvixErrorType: "TestcaseSkipped" } },
            throwOther() { throw { torvixErrorType: "?", message: "other" } },
        };
        for (const name in answers)
            add("Given", name, answers[name]);
        add("", "nothing", () => {});
        add("When", "only when", () => {});
        add("When", "twice", () => {}); add("When", "twice", () => { throw 1 });
        )js");
    const struct
    {
        const char* text;
        const char* result;
    } cases[] = {
        {"one", "1  :-1"},
        {"unknown", "1  :-1"},
        {"only when", "1  :-1"},
        {"two", "5  :-1"},
        {"text", "0  :-1"},
        {"no", "0  :-1"},
        {"abort", "6  :-1"},
        {"many", "2 of my own :-1"},
        {"nothing", "2 2 steps match the step text :-1"}, // one of any type
        {"throwText", "4 oops :-1"},
        {"throwNothing", "4 undefined :-1"},
        {"throwError", "4 bad test.js:7"},
        {"throwObject", "4 5 :-1"},
        {"throwOutcome", "6  :-1"},
        {"throwSkip", "6  :-1"},
        {"throwOther", "4 other :-1"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(QString(c.result), execute(c.text)) << c.text;
        EXPECT_FALSE(exec()->hadException()) << c.text;
    }
    EXPECT_EQ("0  :-1", execute("twice", When)); // the same pattern twice counts once, the first one
    EXPECT_EQ("0  :-1", execute("only when", When));
}

TEST_F(JsStepsTest, TheContextCarriesTheStepAndItsUserData)
{
    prepare(R"js(
        add("Given", "count", (context, count, what) => {
            log.push([typeof count, count, what, context.multiLineText, JSON.stringify(context.table)].join());
            log.push(Array.isArray(context.userData), context.userData.length);
            context.userData = { count };
            log.push(context.userData.count);
            kept = context;
        }, { regex: /^(\d+) of (\w+)$/, placeholders: [Number, String] });
        add("Then", "bare", (context) => {
            log.push(Object.keys(context), context.userData.count);
            try { context.title = "mine" } catch (e) { log.push(e.message) }
        });
        add("Then", "two", (context, ...rest) => { log.push(rest.map(x => x + typeof x).join()) },
            { regex: /(a)(b)/, placeholders: [Number] });
        var kept;
        _hook_functions = { OnScenarioEnd: [(c) => log.push(c.title, c.userData.count), () => log.push("second")] };
    )js");
    Step rich = step("3 of cups");
    rich.multiLineText = QStringList{"l1", ""};
    rich.table = {{"a", "b"}, {"c", ""}};
    EXPECT_EQ(0, actions->lookupAndExecuteStep(rich).status);
    EXPECT_EQ("0  :-1", execute("bare", Then));
    EXPECT_EQ("0  :-1", execute("ab", Then));
    EXPECT_EQ("0  :-1", hook(ScenarioHook, HookEnd));
    EXPECT_EQ(
        "number,3,cups,l1,,[[\"a\",\"b\"],[\"c\",\"\"]]|true|0|3|userData|3|"
        "Failure to set property. Use context.userData for custom data.|astring,bstring|the title|3|second",
        text("log.join('|')"));
    EXPECT_EQ("GeneralError: Failure to set property. Context is destroyed.",
              thrown("kept.userData = 1")
                  .replace("Error: ", "GeneralError: ")
                  .replace("GeneralGeneral", "General"));
}

TEST_F(JsStepsTest, HooksAnswerWithTheirStatus)
{
    prepare(R"js(
        _hook_functions = {
            OnFeatureStart: [() => { throw new Error("bad hook") }, () => log.push("never")],
            OnFeatureEnd: [() => { throw { torvixErrorType: "TestcaseSkipped" } }],
            OnStepStart: [() => 1], OnStepEnd: [() => { throw 7 }],
        };)js");
    EXPECT_EQ("1 bad hook test.js:3", hook(FeatureHook, HookStart));
    EXPECT_EQ("3  :-1", hook(FeatureHook, HookEnd));
    EXPECT_EQ("0  :-1", hook(ScenarioHook, HookStart));
    EXPECT_EQ("0  :-1", hook(StepHook, HookStart));
    EXPECT_EQ("1 7 :-1", hook(StepHook, HookEnd));
    EXPECT_EQ("0  :-1", hook(HookType(3), HookStart));
    EXPECT_EQ("0  :-1", hook(FeatureHook, HookPhase(2)));
    EXPECT_EQ("0", text("log.length"));
}

TEST_F(JsStepsTest, AScriptWithoutTheFunctionsSaysSoEachTime)
{
    JSScriptContext context;
    context.setJSArguments(exec(), {});
    ASSERT_TRUE(run("var notCallable = 5; var _torvixExecuteHook = 1; function mine() { return 1 }"));
    const struct
    {
        const char* function;
        const char* text;
    } cases[] = {
        {"missing", "Can't find function 'missing'"},
        {"notCallable", "'notCallable' is not a function"},
        {"mine", "'_torvixExecuteHook' is not a function"},
    };
    for (const auto& c : cases) {
        actions = context.gherkinScriptActions(c.function);
        EXPECT_EQ(QString("5 %1 :-1").arg(c.text), execute("x"));
        EXPECT_EQ(QString("2 %1 :-1").arg(c.text), hook(StepHook, HookEnd));
    }
}

TEST_F(JsStepsTest, PatternsAndPlacesAreFoundWithoutRunning)
{
    prepare(R"js(
        add("Given", "c.*", null, { regex: /c.*/ });
        add("Given", "cup", null);
        add("", "any", null); add("Then", "then", null); add("", "", null);
        )js");
    const auto places = [this](const QString& text, StepType type) {
        QString all;
        for (const ScriptLocation& place : interpreter->matchingSteps(step(text, type)))
            all += QString("%1:%2 ").arg(place.fileName.c_str()).arg(place.line);
        return all;
    };
    EXPECT_EQ("steps.js:2 ", places("cup", Given)); // a plain text before every regular expression
    EXPECT_EQ("steps.js:1 ", places("cap", Given));
    EXPECT_EQ("steps.js:3 ", places("any", When));
    EXPECT_EQ("", places("toString", When));
    EXPECT_EQ(QStringList({"c.*", "cup", "any"}), interpreter->registeredStepPatterns(Given));
    EXPECT_EQ(QStringList("any"), interpreter->registeredStepPatterns(When));

    MessageCapture log;
    const struct
    {
        const char* code;
        const char* match;
        const char* fetch;
    } cases[] = {
        {"= undefined", "Can't find function '_torvixMatchSteps",
         "Can't find function '_torvixFetchPatterns'"},
        {"= 5", "'_torvixMatchSteps' is not a function", "'_torvixFetchPatterns' is not a function"},
        {"= () => { throw new Error('bad') }", "Error in matchingSteps: Error: bad",
         "Error in fetchPatterns: Error: bad"},
        {"= () => 'text'", "Error in matchingSteps: unexpected type 4",
         "Error in fetchPatterns: unexpected type 4"},
        {"= () => [1]", "Invalid source location at 0 in matchingSteps", nullptr},
    };
    for (const auto& c : cases) {
        ASSERT_TRUE(run(QString("_torvixMatchSteps %1; _torvixFetchPatterns %1").arg(c.code)));
        EXPECT_TRUE(interpreter->matchingSteps(step("x")).empty());
        EXPECT_EQ(QStringList(c.match), log.take());
        EXPECT_EQ(QStringList(c.fetch ? "" : "1").join(""),
                  interpreter->registeredStepPatterns(Given).join(""));
        EXPECT_EQ(c.fetch ? QStringList(c.fetch) : QStringList(), log.take());
    }
}

} // namespace
} // namespace Torvix
