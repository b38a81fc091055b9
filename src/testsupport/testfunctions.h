#pragma once

#include "testsupport/export.h"

/**
 * What scripts call as `test.*`, in every language. Each reads its arguments from the context and
 * reports to the context's TestResult; without one, results go nowhere.
 *
 * Where nothing else is said the last two arguments are an optional message and an optional detail.
 * A failure is a result, not an error: the script goes on, unless the result sink ends on failures
 * or the function says that it ends the test case. Wrong arguments are errors with a text.
 */
namespace Torvix {

class ScriptContext;

// Checks: (condition), (actual, expected), (code that must throw).
TORVIXTEST_EXPORT void testVerify(ScriptContext* context);
TORVIXTEST_EXPORT void testXVerify(ScriptContext* context);
TORVIXTEST_EXPORT void testCompare(ScriptContext* context);
TORVIXTEST_EXPORT void testXCompare(ScriptContext* context);
TORVIXTEST_EXPORT void testException(ScriptContext* context);

// Results as such: (message, detail).
TORVIXTEST_EXPORT void testPass(ScriptContext* context);
TORVIXTEST_EXPORT void testXPass(ScriptContext* context);
TORVIXTEST_EXPORT void testFail(ScriptContext* context);
TORVIXTEST_EXPORT void testXFail(ScriptContext* context);
/** Ends the test case as failed. */
TORVIXTEST_EXPORT void testFatal(ScriptContext* context);
TORVIXTEST_EXPORT void testLog(ScriptContext* context);
TORVIXTEST_EXPORT void testWarning(ScriptContext* context);
/** Ends the test case as skipped. */
TORVIXTEST_EXPORT void testSkip(ScriptContext* context);

/** (name): how many results there are of "passes", "fails", "xfails", "xpasses", "fatals", "errors",
 *  "skips", "warnings", "logs", or of checks: "tests". */
TORVIXTEST_EXPORT void testResultCount(ScriptContext* context);
/** (first, count): the frames of the script, innermost first, from the first one on (0); each is
 *  the place of a call. */
TORVIXTEST_EXPORT void testStackTrace(ScriptContext* context);
/** (frames = 1): results get the place that many callers up until testRestoreResultContext. */
TORVIXTEST_EXPORT void testFixateResultContext(ScriptContext* context);
TORVIXTEST_EXPORT void testRestoreResultContext(ScriptContext* context);
/** (title, description). */
TORVIXTEST_EXPORT void testStartSection(ScriptContext* context);
TORVIXTEST_EXPORT void testEndSection(ScriptContext* context);
// Files: (expected, actual, options). The third argument is the message, or a map: "message",
// "detail", "xfail" (a difference is expected), and for text "ignoreCase", "ignoreWhitespace" and
// "filters" (regular expressions; what they match is taken out of each line). A file that cannot be
// read or parsed is an error.
TORVIXTEST_EXPORT void testCompareTextFiles(ScriptContext* context);
TORVIXTEST_EXPORT void testCompareXMLFiles(ScriptContext* context);
TORVIXTEST_EXPORT void testCompareJSONFiles(ScriptContext* context);

/** Stops in the debugger when there is one that people use; does nothing otherwise. */
TORVIXTEST_EXPORT void testBreakpoint(ScriptContext* context);

} // namespace Torvix
