#include "interpreter/js/apitest.h"

#include <chrono>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace Torvix {
namespace {

class EnvironmentRunner : public DummyRunnerInterface
{
public:
    TestEnvironment testEnvironment() override { return environment; }
    void serviceConnections() override { ++serviced; }

    TestEnvironment environment{"default", "device", "/s/tst_a//test.js", "tst_a", "s", QString()};
    int serviced = 0;
};

class JsScriptFunctionsTest : public ApiTest
{
protected:
    JsScriptFunctionsTest()
    {
        environmentRunner.environment.resultDir = directory.filePath("here/../out/results/");
        renewInterpreter(&environmentRunner);
    }
    ~JsScriptFunctionsTest() override { interpreter.reset(); }

    EnvironmentRunner environmentRunner;
};

TEST_F(JsScriptFunctionsTest, PrintWritesItsFirstArgumentAsUtf8)
{
    testing::internal::CaptureStdout();
    const QString given = text("String([print('gr\\u00fc\\u00df', 'more'), print(), print({})])");
    struct stat written = {};
    ASSERT_EQ(fstat(STDOUT_FILENO, &written), 0);
    EXPECT_EQ(written.st_size, 33) << "at once, although it is no terminal";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "gr\xc3\xbc\xc3\x9f\nundefined\n[object Object]\n");
    EXPECT_EQ(given, ",,");
    EXPECT_EQ(thrown("print({toString() { throw new RangeError('no text') }})"), "RangeError: no text");
}

TEST_F(JsScriptFunctionsTest, SourceRunsAFileInTheGlobalScope)
{
    const QString good = writeFile("good.js", "var loaded = (globalThis.loaded || 0) + 1;\n"
                                              "function fromFile() { return this === globalThis }\n");
    EXPECT_EQ(
        text(QStringLiteral("(function() { source('%1'); source('%1') })(); [loaded, fromFile()].join()")
                 .arg(good)),
        "2,true");
    EXPECT_EQ(text(QStringLiteral("typeof source('%1')").arg(writeFile("value.js", "42"))), "undefined");
    // Declarations of a sourced file are those of a script, for the files after it as well.
    const QString lexical = writeFile("lexical.js", "\xef\xbb\xbf"
                                                    "const fixed = 5; let open = 6");
    EXPECT_EQ(text(QStringLiteral("source('%1'); fixed + open").arg(lexical)), "11");
    const QString cut = writeFile("cut.js", QByteArray("loaded = 7;\0 syntax error (", 27));
    EXPECT_EQ(text(QStringLiteral("source('%1'); loaded").arg(cut)), "7");
    EXPECT_EQ(thrown("source()"), "Error: source() takes a string argument");
    EXPECT_EQ(thrown("source('a', 'b')"), "Error: source() takes a string argument");
    EXPECT_EQ(thrown("source('nofile.js')"), "Error: Couldn't open file nofile.js");
    EXPECT_EQ(thrown("source('.')"), "Error: Couldn't open file .");
    const QString wrong = writeFile("wrong.js", "\n\nfoo bar");
    EXPECT_EQ(text(QStringLiteral("try { source('%1') } catch (e) { e.name + e.line }").arg(wrong)),
              "SyntaxError3");
    // Neither a file that could not be read whole nor an empty one gives its name to what comes next.
    EXPECT_EQ(results(QStringLiteral("try { source('%1') } catch (e) {}\ntest.log('here')").arg(wrong)),
              "log|here|");
    EXPECT_EQ(entries().last().file, script);
    EXPECT_EQ(entries().last().line, 2);
    const QString primitive = writeFile("primitive.js", "throw 5");
    EXPECT_EQ(text(QStringLiteral("try { source('%1') } catch (e) { typeof e + e }").arg(primitive)),
              "number5");

    const QString bad = writeFile("bad.js", "\n\nthrow new RangeError('from below')");
    EXPECT_EQ(thrown(QStringLiteral("source('%1')").arg(bad)), "RangeError: from below");
    EXPECT_FALSE(run(QStringLiteral("\nsource('%1')").arg(bad)));
    EXPECT_EQ(QFileInfo(interpreter->errorFile()).fileName(), "bad.js");
    EXPECT_EQ(interpreter->errorLine(), 3);
}

TEST_F(JsScriptFunctionsTest, WaitForPollsUntilTrueOrTheTimeIsOver)
{
    EXPECT_EQ(text("waitFor('1 == 1') && waitFor(() => 'yes', 5)"), "true");
    EXPECT_EQ(environmentRunner.serviced, 0) << "true at once does not sleep";
    EXPECT_EQ(text("var n = 0; [waitFor(function() { return ++n == 3 }), n].join()"), "true,3");
    EXPECT_EQ(environmentRunner.serviced, 2);
    EXPECT_EQ(text("n = 0; [waitFor(() => { ++n; return false }, 0), n <= 2].join()"), "false,true");
    EXPECT_EQ(text("n = 0; waitFor(() => ++n > 1 || n > 9, -5)"), "true");
    EXPECT_EQ(text("(function() { 'use strict'; return waitFor(function() { return this.mark == 4 }, 0) })"
                   ".call({mark: 4})"),
              "true");

    EXPECT_EQ(text("waitFor(print, 0)"), "false");
    EXPECT_EQ(text("waitFor(function() { return arguments.length === 0 }, Infinity)"), "true");
    EXPECT_EQ(text("var seen; waitFor('waitFor(\"seen = 3\")', 0) && seen"), "3") << "in itself";

    const std::pair<const char*, const char*> cases[] = {
        {"waitFor()", "SyntaxError: waitFor(expression, [timeout])"},
        {"waitFor('1', 2, 3)", "SyntaxError: waitFor(expression, [timeout])"},
        {"waitFor(5, 'x')", "TypeError: waitFor() expression has to be of type string or function"},
        {"waitFor({})", "TypeError: waitFor() expression has to be of type string or function"},
        {"waitFor(null)", "TypeError: waitFor() expression has to be of type string or function"},
        {"waitFor(new String('1'))", "TypeError: waitFor() expression has to be of type string or function"},
        {"waitFor('1', undefined)", "TypeError: Invalid type of timeout value"},
        {"waitFor('1', new Number(5))", "TypeError: Invalid type of timeout value"},
        {"class A {}; class B extends A { constructor() { waitFor('1'); super() } }; new B",
         "ReferenceError: 'this' is not there before super() has returned"},
        {"waitFor('1', '1000')", "TypeError: Invalid type of timeout value"},
        {"waitFor('1', NaN)", "TypeError: Timeout value is not a number"},
        {"waitFor(() => { throw new RangeError('inside') })", "RangeError: inside"},
        {"var e = eval; eval = 5; try { waitFor('1') } finally { eval = e }",
         "Error: Internal waitFor() failure: 'eval' is not a function object or not found!"},
        {"var e = eval; eval = {}; try { waitFor('1') } finally { eval = e }",
         "Error: Internal waitFor() failure: object named 'eval' is not callable!"},
    };
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(thrown(code), expected) << code;
    EXPECT_EQ(thrown("waitFor('nosuch.member')").left(16), "ReferenceError: ");
}

TEST_F(JsScriptFunctionsTest, StringsThatAreEvaluatedSeeGlobalNamesOnly)
{
    const char* const function =
        "var outside = 1; (function() { var inside = 2; return %1 }).call({mark: 1})";
    EXPECT_EQ(text(QString(function).arg("waitFor('this === globalThis && outside == 1', 0)")), "true");
    EXPECT_EQ(text(QString(function).arg("waitFor('typeof inside != \"undefined\"', 0)")), "false");
    EXPECT_EQ(text(QString(function).arg("waitFor('var made = 3', 0), waitFor('made = 3', 0), made")), "3");
    EXPECT_EQ(text("try { waitFor('\\n\\nnosuch.member') } catch (e) { e.name + e.line }"),
              "ReferenceError3");
    EXPECT_EQ(text("try {\n waitFor('1 +') } catch (e) { e.name + e.line }"), "SyntaxError2");
    EXPECT_EQ(results(QString(function).arg("test.exception('inside')")),
              "pass|Exception|Caught expected error");
    EXPECT_EQ(results(QString(function).arg("test.exception('outside; if (this !== globalThis) throw 1')")),
              "fail|Exception|Unexpected pass");
}

TEST_F(JsScriptFunctionsTest, WaitForEndsWithItsScript)
{
    for (const char* const code :
         {"waitFor(() => false); test.log('on')", "waitFor(print); test.log('on')"}) {
        testing::internal::CaptureStdout();
        JsInterpreter* const running = interpreter.get();
        std::thread stopper([running] {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            running->interrupt();
        });
        const int before = entries().size();
        EXPECT_FALSE(run(code)) << code;
        stopper.join();
        testing::internal::GetCapturedStdout();
        EXPECT_EQ(interpreter->errorMessage(), "Script interrupted") << code;
        EXPECT_EQ(entries().size(), before) << code;
    }
    EXPECT_EQ(text("waitFor('1')"), "true") << "the interpreter stays usable";
}

TEST_F(JsScriptFunctionsTest, ConsoleAssertsAndItsMisspeltTwinComplains)
{
    EXPECT_EQ(text("[console.assert(1), console.assert.length, typeof console.log].join()"), ",1,undefined");
    EXPECT_EQ(text("console.mine = 4; Console.mine = 5; [console.mine, typeof Console].join()"), "4,object");
    const QString typo =
        "ReferenceError: The 'Console' object was result of a typo. Please use 'console' instead.";
    const std::pair<const char*, QString> cases[] = {
        {"console.assert()", "SyntaxError: Function Console.assert() requires 1 or 2 parameters"},
        {"console.assert(1, 2, 3)", "SyntaxError: Function Console.assert() requires 1 or 2 parameters"},
        {"console.assert(false)", "Error: ERROR: Assertion in script"},
        {"console.assert(0, 5)", "Error: ERROR: Assertion in script: 5"},
        {"console.assert('', undefined)", "Error: ERROR: Assertion in script: undefined"},
        {"console.assert(0, {toString() { throw new RangeError('own') }})", "RangeError: own"},
        {"console.log('x', {a: 1})",
         "TypeError: console.log is not a function. (In 'console.log('x', {a: 1})', 'console.log' is "
         "undefined)"
         ". console has only assert(): test.log() writes into the report, print() to the terminal"},
        {"console.mine()",
         "TypeError: console.mine is not a function. (In 'console.mine()', 'console.mine' is 4)"
         ". console has only assert(): test.log() writes into the report, print() to the "
         "terminal"},
        {"Console.log('x')", typo},
        {"Console.anything", typo},
        {"String(Console)", typo},
    };
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(thrown(code), expected) << code;
}

TEST_F(JsScriptFunctionsTest, InputConstantsCannotBeChanged)
{
    EXPECT_EQ(text("var all = []; for (var n in MouseButton) all.push(n + MouseButton[n]); all.join()"),
              "None0,LeftButton1,MiddleButton2,RightButton4,Wheel8,PrimaryButton16,SecondaryButton32,"
              "XButton164,XButton2128");
    EXPECT_EQ(text("all = []; for (n in Modifier) all.push(n + Modifier[n]); all.join()"),
              "None0,Control128,Shift256,Alt512,Win1024,Command2048");
    EXPECT_EQ(text("MouseButton.x = 1; MouseButton.None = 5; delete Modifier.Shift;"
                   "[MouseButton.x, MouseButton.None, Modifier.Shift].join()"),
              ",0,256");
    EXPECT_EQ(text("[console, Console, MouseButton, Modifier].filter(o => Object.getPrototypeOf(o)).length"),
              "0");
    EXPECT_EQ(text("var d = Object.getOwnPropertyDescriptor(Modifier, 'Alt');"
                   "[d.value, d.writable, d.enumerable, d.configurable].join()"),
              "512,false,true,false");
}

TEST_F(JsScriptFunctionsTest, TorvixinfoTellsVersionAndTest)
{
    EXPECT_EQ(text("[torvixinfo.version, torvixinfo.major, torvixinfo.minor, torvixinfo.patch,"
                   "torvixinfo.version_str].join()"),
              "117506288,7,1,0,7.1.0");
    const QString resultDir = directory.filePath("out/results");
    EXPECT_FALSE(QFileInfo::exists(resultDir));
    EXPECT_EQ(text("[torvixinfo.settingsGroup, torvixinfo.defaultDevice, torvixinfo.resultDir].join()"),
              "default,device," + resultDir);
    EXPECT_EQ(text("[torvixinfo.testCase, torvixinfo.testCaseName, torvixinfo.testSuiteName].join()"),
              "/s/tst_a,tst_a,s");
    EXPECT_TRUE(QFileInfo(resultDir).isDir()) << "there once it has been asked for";
    EXPECT_FALSE(QFileInfo::exists(directory.filePath("here")));
    for (const char* name : {"testCase", "resultDir", "version"})
        EXPECT_EQ(text(QStringLiteral("d = Object.getOwnPropertyDescriptor(torvixinfo, '%1');"
                                      "[d.writable, d.enumerable, d.configurable].join()")
                           .arg(QLatin1String(name))),
                  "false,true,false")
            << name;
    environmentRunner.environment.testCase = "/s/tst_b/test.js";
    EXPECT_EQ(text("d = Object.getOwnPropertyDescriptor(torvixinfo, 'major');"
                   "[d.writable, d.enumerable, d.configurable].join()"),
              "false,true,false");
    EXPECT_EQ(text("torvixinfo.major = 8; [torvixinfo.major, torvixinfo.nosuch, typeof torvixinfo.toString]"
                   ".join()"),
              "7,,function");
    EXPECT_EQ(text("torvixinfo.testCase = 5; torvixinfo.testCase"), "/s/tst_b") << "asked on each read";
    environmentRunner.environment.testCase.clear();
    EXPECT_EQ(text("[torvixinfo.testCase, torvixinfo.testCaseName].join()"), "/s/tst_a//test.js,");
}

} // namespace
} // namespace Torvix
