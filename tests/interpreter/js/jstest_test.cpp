#include "interpreter/base/debugger.h"
#include "interpreter/js/apitest.h"
#include "interpreter/js/objects/jstest.h"

namespace Torvix {
namespace {

using JsTestTest = ApiTest;

TEST_F(JsTestTest, FunctionsComeIntoBeingOnFirstUse)
{
    EXPECT_EQ(
        text("['verify', 'xverify', 'compare', 'xcompare', 'exception', 'vp', 'xvp', 'vpWithObject', 'pass',"
             "'xpass', 'fail', 'xfail', 'fatal', 'log', 'warning', 'skip', 'resultCount', 'stackTrace',"
             "'fixateResultContext', 'restoreResultContext', 'startSection', 'endSection',"
             "'compareTextFiles', 'compareXMLFiles', 'compareJSONFiles', 'breakpoint', 'imageNotPresent',"
             "'imagePresent', 'ocrTextNotPresent', 'ocrTextPresent', 'attachFile',"
             "'attachDesktopScreenshot', 'attachImage', 'startVideoCapture', 'stopVideoCapture']"
             ".map(n => typeof test[n] == 'function' ? test[n].length : n).join('')"),
        "1122111111111111121020333111112"
        "1110");
    EXPECT_EQ(text("[test.log === test.log, typeof test.log.call, typeof test.nosuchfunction].join()"),
              "true,undefined,undefined");
    EXPECT_EQ(text("var d = Object.getOwnPropertyDescriptor(test.log, 'length');"
                   "[d.writable, d.enumerable, d.configurable, Object.getPrototypeOf(test.log)].join()"),
              "false,false,false,");
    EXPECT_EQ(text("test.log.call === undefined && Object.getPrototypeOf(test) === Object.prototype"),
              "true");
    EXPECT_TRUE(thrown("test.nosuchfunction()").startsWith("TypeError: "));
    EXPECT_EQ(text("String(test)"), "[object test]");
    EXPECT_EQ(text("test.log = function() { return 'mine' }; test.log()"), "mine");
    EXPECT_EQ(results("delete test.log; test.log('again')"), "log|again|");
    EXPECT_EQ(results("var free = test.pass; free('alone'); ['x'].forEach(function(x) { free(x) })"),
              "pass|alone|\npass|x|")
        << "what a function is called on does not matter";
    global().put(exec(), "beyond", new JsTestFunctionImp(35, 0, &result));
    EXPECT_EQ(text("String([beyond()])"), "");
}

TEST_F(JsTestTest, UsedFunctionsShowAndUnusedOnesDoNot)
{
    EXPECT_EQ(text("var seen = []; for (var n in test) seen.push(n); seen.join()"), "");
    EXPECT_EQ(text("test.fail; test.log; for (n in test) seen.push(n); seen.join()"), "fail,log");
}

TEST_F(JsTestTest, TextsThatAreLeftOutAsNullOrUndefinedAreNotShown)
{
    const std::pair<const char*, const char*> cases[] = {
        {"test.verify(true, undefined, 'why')", "pass|Verification|why"},
        {"test.compare(1, 1, null, undefined)", "pass|Comparison|'1' (Number) and '1' (Number) are equal"},
        {"test.pass(undefined, null)", "pass|undefined|"},
        {"test.log(null)", "log|null|"},
        {"test.exception('throw 1', '')", "pass|Exception|Caught expected error"},
        {"test.startSection('s', undefined); test.endSection()", ""},
        {"(function() { test.stackTrace(undefined, 1); test.fixateResultContext(undefined) })();"
         "test.restoreResultContext()",
         ""},
    };
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(results(code), QString::fromUtf8(expected)) << code;
}

TEST_F(JsTestTest, ChecksMayRunCodeThatChecksItself)
{
    EXPECT_EQ(results("test.exception(\"test.pass('inner', 'own detail'); throw 1\", 'outer', 'detail')"),
              "pass|inner|own detail\npass|outer|Caught expected error\ndetail");
    testing::internal::CaptureStderr();
    EXPECT_EQ(text("test.exception(\"test.verify(false); throw 1\")"), "true") << "that of the outer check";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    writeFile("a.txt", "a");
    EXPECT_EQ(
        results("test.compareTextFiles({toString() { test.restoreResultContext; test.resultCount('fails');"
                "return 'a.txt' }}, 'a.txt')"),
        "pass|Text file comparison|'a.txt' and 'a.txt' are alike");
}

TEST_F(JsTestTest, ChecksReportWhatTheyCompared)
{
    const std::pair<const char*, const char*> cases[] = {
        {"test.verify(true)", "pass|Verification|"},
        {"test.verify(1 == 2, 'sum', 'more')", "fail|sum|more"},
        {"test.verify('')", "fail|Verification|'' (String)"},
        {"test.verify([], 'list')", "pass|list|'' (Array)"},
        {"test.xverify(false, 'known')", "expected-fail|known|"},
        {"test.xverify(1)", "unexpected-pass|Verification|'1' (Number)"},
        {"test.compare('1', 1)", "pass|Comparison|'1' (String) and '1' (Number) are equal"},
        {"test.compare(null, 0, 'null')", "fail|null|'null' (Null) and '0' (Number) are not equal"},
        {"test.compare(undefined, null)",
         "pass|Comparison|'undefined' (Undefined) and 'null' (Null) are equal"},
        {"test.compare(NaN, NaN, 'm', 'd')", "fail|m|'NaN' (Number) and 'NaN' (Number) are not equal\nd"},
        {"test.xcompare(1, 2)", "expected-fail|Comparison|'1' (Number) and '2' (Number) are not equal"},
        {"test.xcompare(2, 2)", "unexpected-pass|Comparison|'2' (Number) and '2' (Number) are equal"},
        {"test.compare('a\\nb', 'a\\nc')",
         "fail|Comparison|The texts are not equal (- expected, + seen)\n  a\n- c\n+ b"},
        {"test.xcompare('', 'a', 'm', 'more')",
         "expected-fail|m|The texts are not equal (- expected, + seen)\nmore\n- a\n+ "},
        {"test.compare([1], [1])",
         "fail|Comparison|'1' (Array) and '1' (Array) are not equal: they are two objects; compare their "
         "contents, as with JSON.stringify()"},
        {"test.compare([1], 1)", "pass|Comparison|'1' (Array) and '1' (Number) are equal"},
        {"test.exception('throw 1')", "pass|Exception|Caught expected error"},
        {"test.exception('1', 'calm')", "fail|calm|Unexpected pass"},
        {"test.pass('p', 'd')", "pass|p|d"},
        {"test.xpass('p')", "unexpected-pass|p|"},
        {"test.fail('f')", "fail|f|"},
        {"test.xfail('f')", "expected-fail|f|"},
        {"test.log(5)", "log|5|"},
        {"test.warning('w', 'why')", "warning|w|why"},
        {"test.breakpoint()", ""},
    };
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(results(code), QString::fromUtf8(expected)) << code;
    EXPECT_EQ(text("['tests', 'passes', 'fails', 'xfails', 'xpasses', 'warnings', 'logs', 'fatals', 'skips',"
                   "'errors'].map(n => test.resultCount(n)).join()"),
              "22,7,8,4,3,1,1,0,0,0");
    EXPECT_EQ(result.outcome(), CaseOutcome::Failed);
}

TEST_F(JsTestTest, WrongCallsAreErrorsOfTheScript)
{
    const std::pair<const char*, const char*> cases[] = {
        {"test.verify()",
         "TypeError: Wrong number of arguments (0), use test.verify(condition[, message[, detail]])"},
        {"test.xcompare(1)", "TypeError: Wrong number of arguments (1), use test.xcompare(actual, expected[, "
                             "message[, detail]])"},
        {"test.log()", "TypeError: Wrong number of arguments (0), use test.log(message[, detail])"},
        {"test.resultCount('nothing')",
         "TypeError: test.resultCount() does not know 'nothing', only tests, passes, fails, xfails, xpasses, "
         "fatals, errors, skips, warnings, logs"},
        {"test.stackTrace(-1)", "TypeError: The first frame has to be a whole number from 0, not '-1'"},
        {"test.fixateResultContext(99)", "TypeError: There are not 99 callers here"},
        {"test.restoreResultContext()",
         "TypeError: test.restoreResultContext() without test.fixateResultContext()"},
        {"test.endSection()", "TypeError: test.endSection() without test.startSection()"},
        {"test.exception()",
         "TypeError: Wrong number of arguments (0), use test.exception(code[, message[, detail]])"},
        {"test.vp()", "TypeError: Wrong number of arguments (0), use test.vp(name[, message[, detail]])"},
        {"test.xvp(1, 2, 3, 4)",
         "TypeError: Wrong number of arguments (4), use test.xvp(name[, message[, detail]])"},
        {"test.vpWithObject('a')", "TypeError: Wrong number of arguments (1), use test.vpWithObject(name, "
                                   "object[, message[, detail]])"},
        {"test.pass(1, 2, 3)", "TypeError: Wrong number of arguments (3), use test.pass(message[, detail])"},
        {"test.xpass()", "TypeError: Wrong number of arguments (0), use test.xpass(message[, detail])"},
        {"test.fail()", "TypeError: Wrong number of arguments (0), use test.fail(message[, detail])"},
        {"test.xfail()", "TypeError: Wrong number of arguments (0), use test.xfail(message[, detail])"},
        {"test.fatal()", "TypeError: Wrong number of arguments (0), use test.fatal(message[, detail])"},
        {"test.warning()", "TypeError: Wrong number of arguments (0), use test.warning(message[, detail])"},
        {"test.skip()", "TypeError: Wrong number of arguments (0), use test.skip(message[, detail])"},
        {"test.xverify()",
         "TypeError: Wrong number of arguments (0), use test.xverify(condition[, message[, detail]])"},
        {"test.compare(1, 2, 3, 4, 5)",
         "TypeError: Wrong number of arguments (5), use test.compare(actual, expected[, message[, detail]])"},
        {"test.resultCount()", "TypeError: Wrong number of arguments (0), use test.resultCount(name)"},
        {"test.stackTrace(0, 1.5)",
         "TypeError: The number of frames has to be a whole number from 0, not '1.5'"},
        {"test.fixateResultContext('x')",
         "TypeError: The number of frames has to be a whole number from 0, not 'x'"},
        {"test.restoreResultContext(1)",
         "TypeError: Wrong number of arguments (1), use test.restoreResultContext()"},
        {"test.startSection()",
         "TypeError: Wrong number of arguments (0), use test.startSection(title[, description])"},
        {"test.endSection(1)", "TypeError: Wrong number of arguments (1), use test.endSection()"},
        {"test.compareXMLFiles('a', 'b', {}, 4)",
         "TypeError: Wrong number of arguments (4), use "
         "test.compareXMLFiles(expectedFile, actualFile[, options])"},
        {"test.compareJSONFiles()", "TypeError: Wrong number of arguments (0), use "
                                    "test.compareJSONFiles(expectedFile, actualFile[, options])"},
        {"test.compareJSONFiles('a', 'b', {ignoreCase: true})",
         "TypeError: There is no option 'ignoreCase' here, only message, detail, xfail"},
        {"test.compareTextFiles('a', 'b', {ignoreCse: true})",
         "TypeError: There is no option 'ignoreCse' here, only message, detail, xfail, ignoreCase, "
         "ignoreWhitespace, filters"},
        {"test.imagePresent()",
         "TypeError: Wrong number of arguments (0), use test.imagePresent(file[, options])"},
        {"test.imageNotPresent(1, 2, 3)",
         "TypeError: Wrong number of arguments (3), use test.imageNotPresent(file[, options])"},
        {"test.ocrTextPresent()",
         "TypeError: Wrong number of arguments (0), use test.ocrTextPresent(text[, options])"},
        {"test.ocrTextNotPresent()",
         "TypeError: Wrong number of arguments (0), use test.ocrTextNotPresent(text[, options])"},
        {"test.attachFile()",
         "TypeError: Wrong number of arguments (0), use test.attachFile(file[, message])"},
        {"test.attachDesktopScreenshot(1, 2)",
         "TypeError: Wrong number of arguments (2), use test.attachDesktopScreenshot([message])"},
        {"test.attachImage()",
         "TypeError: Wrong number of arguments (0), use test.attachImage(file or object[, message])"},
        {"test.startVideoCapture(1, 2)",
         "TypeError: Wrong number of arguments (2), use test.startVideoCapture([message])"},
        {"test.stopVideoCapture(1)", "TypeError: Wrong number of arguments (1), use test.stopVideoCapture()"},
        {"test.compareTextFiles('a')",
         "TypeError: Wrong number of arguments (1), use test.compareTextFiles(expectedFile, actualFile[, "
         "options])"},
    };
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(thrown(code), expected) << code;
    EXPECT_EQ(entries().size(), 0) << "an error is no result";
    EXPECT_EQ(text("try { test.verify() } catch (e) { 'torvixErrorType' in e }"), "false");
}

TEST_F(JsTestTest, OutcomesThatEndTheCaseCarryTheirMark)
{
    EXPECT_EQ(text("try { test.fatal('no way on') } catch (e) { e.name + e.message + e.torvixErrorType }"),
              "TypeErrorno way onVerificationFailure");
    EXPECT_EQ(text("try { test.skip('not here') } catch (e) { e.message + e.torvixErrorType }"),
              "not hereTestcaseSkipped");
    EXPECT_EQ(text("test.fail('goes on'); 'here'"), "here");
    result.setEndsOnFailure(true);
    EXPECT_EQ(text("test.xfail('goes on'); test.xcompare(1, 2); 'here'"), "here");
    EXPECT_EQ(text("try { test.compare(1, 2, 'differs') } catch (e) { e.message + e.torvixErrorType }"),
              "differsVerificationFailure");

    ASSERT_TRUE(run("function main() { test.skip('whole case'); test.pass('never') }"));
    EXPECT_TRUE(interpreter->call("main", {})) << "an outcome is no error";
    EXPECT_EQ(interpreter->errorMessage(), "");
    EXPECT_EQ(entries().last().message, "whole case");
}

TEST_F(JsTestTest, ResultsHaveThePlaceOfTheScript)
{
    const QString other = writeFile("other.js", "\nfunction checked(value) {\n"
                                                "    [1].forEach(() => test.verify(value, 'deep'))\n}\n"
                                                "function at(frames) {\n"
                                                "    test.fixateResultContext(frames)\n"
                                                "    test.fail('fixed')\n"
                                                "    test.restoreResultContext()\n}\n"
                                                "test.log('while sourced')\n");
    ASSERT_TRUE(run(QStringLiteral("source('%1')\n\n"
                                   "function outer() {\n"
                                   "    checked(false)\n"
                                   "    at(1)\n"
                                   "}\n"
                                   "outer()\n"
                                   "test.pass('here'); at(1)\n"
                                   "class C { m() {\n test.log('method') } }\n new C().m()\n")
                        .arg(other)))
        << interpreter->errorMessage().toStdString();
    QStringList places;
    for (const ResultEntry& entry : entries())
        places +=
            QStringLiteral("%1 %2:%3").arg(entry.message, QFileInfo(entry.file).fileName()).arg(entry.line);
    EXPECT_EQ(places.join('\n'), "while sourced other.js:10\n"
                                 "deep other.js:3\n"
                                 "fixed test.js:5\n"
                                 "here test.js:8\n"
                                 "fixed test.js:8\n"
                                 "method test.js:10");
    const ResultEntry deep = entries()[1];
    EXPECT_EQ(deep.source.lines.value(3 - deep.source.firstLine),
              "    [1].forEach(() => test.verify(value, 'deep'))");
}

TEST_F(JsTestTest, StackTracesTellEachCallInnermostFirst)
{
    ASSERT_TRUE(run("function inner() {\n return test.stackTrace() }\n"
                    "function outer() {\n return inner() }\n"
                    "var frames = outer(), last = test.stackTrace(0, 1);"));
    EXPECT_EQ(text("frames.length === 0"), "false");
    EXPECT_EQ(text("frames.map(f => f.line).join()"), "2,4,5");
    EXPECT_EQ(text("frames[0].fileName.endsWith('test.js')"), "true");
    EXPECT_EQ(text("last.length"), "1");
    EXPECT_EQ(text("(function() { return test.stackTrace(1) })().length"), "1");
}

TEST_F(JsTestTest, ABreakpointStopsWhereSomebodyDebugs)
{
    Debugger* debugger = interpreter->debugger();
    QStringList stops;
    QObject::connect(debugger, &Debugger::stopped, debugger, [&] {
        stops += QStringLiteral("%1:%2")
                     .arg(QFileInfo(debugger->findSourceId(debugger->currentSourceId())).fileName())
                     .arg(debugger->currentLine());
    });
    const char* code =
        "test.breakpoint();\n\nfunction f() {\n  test.breakpoint('why');\n  test.log('on');\n}\n"
        "f()";
    EXPECT_EQ(results(code), "log|on|");
    EXPECT_EQ(stops.join(' '), "") << "nobody is there";
    debugger->setInteractive(true);
    EXPECT_EQ(results(code), "log|on|");
    EXPECT_EQ(stops.join(' '), "test.js:1 test.js:4");
}

TEST_F(JsTestTest, SectionsNestAndDescribe)
{
    EXPECT_EQ(results("test.startSection('outer', 'what for'); test.startSection('inner'); test.log('in');"
                      "test.endSection(); test.log('mid'); test.endSection(); test.log('out')"),
              "log|what for|\nlog|in|\nlog|mid|\nlog|out|");
    QStringList sections;
    for (const ResultEntry& entry : entries())
        sections += entry.sections.join('/');
    EXPECT_EQ(sections.join('|'), "outer|outer/inner|outer|");
}

TEST_F(JsTestTest, FilesAreComparedAsTextXmlAndJson)
{
    writeFile("a.txt", "one\ntwo  \nat 12:30\n");
    writeFile("b.txt", "one\r\nTWO\r\nat 13:59\r\n");
    writeFile("a.xml", "<r><i a='1' b='2'/><!-- c --></r>");
    writeFile("b.xml", "<r>\n <i b='2' a='1'></i>\n</r>");
    writeFile("c.xml", "<r><i a='1' b='3'/></r>");
    writeFile("a.json", "{\"a\": 1, \"b\": [1, 2]}");
    writeFile("b.json", "{\"b\": [1, 3], \"a\": 1.0}");
    EXPECT_EQ(results("test.compareTextFiles('a.txt', 'b.txt', {ignoreCase: true, ignoreWhitespace: true, "
                      "filters: ['\\\\d+:\\\\d+']})"),
              "pass|Text file comparison|'a.txt' and 'b.txt' are alike");
    EXPECT_EQ(results("test.compareTextFiles('a.txt', 'b.txt', 'times')"),
              "fail|times|'a.txt' and 'b.txt' are not alike (- expected, + seen)\n  one\n- two  \n- at "
              "12:30\n+ TWO\n+ at 13:59\n  ");
    EXPECT_EQ(results("test.compareXMLFiles('a.xml', 'b.xml')"),
              "pass|XML file comparison|'a.xml' and 'b.xml' are alike");
    EXPECT_TRUE(results("test.compareXMLFiles('a.xml', 'c.xml', {xfail: true, message: 'm'})")
                    .startsWith("expected-fail|m|'a.xml' and 'c.xml' are not alike\n/r/i"));
    EXPECT_TRUE(results("test.compareJSONFiles('a.json', 'b.json')").contains("expected 2, found 3"));
    EXPECT_TRUE(
        thrown("test.compareTextFiles('nofile', 'a.txt')").startsWith("TypeError: Cannot read file '"));
    EXPECT_TRUE(thrown("test.compareXMLFiles('a.txt', 'a.xml')").startsWith("TypeError: "));
}

TEST_F(JsTestTest, WithoutASinkResultsGoNowhere)
{
    interpreter->initTestFunctions(nullptr);
    EXPECT_EQ(text("test.fail('x'); test.startSection('y'); test.resultCount('fails')"), "0");
    EXPECT_EQ(text("try { test.skip('ends') } catch (e) { e.message + e.torvixErrorType }"),
              "endsTestcaseSkipped");
}

} // namespace
} // namespace Torvix
