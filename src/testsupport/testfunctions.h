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

// Verification points, files of expectations (docs/verification-points.md): (name), (name, object).
// What was seen is attached beside what was expected when they do not hold.
TORVIXTEST_EXPORT void testVP(ScriptContext* context);
TORVIXTEST_EXPORT void testXVP(ScriptContext* context);
TORVIXTEST_EXPORT void testVPWithObject(ScriptContext* context);

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

// Whether a picture, or a text, is on the screen now or within the time: (file, options), (text, options).
// Options of both: "message", "detail", "timeout" in ms, "object" to look in instead of the screen.
// Of pictures: "tolerance" (0 to 255 for each of red, green and blue), "differingPixels". Of texts:
// "language" as tesseract names it, "ignoreCase". Presence is waited for as for objects unless a timeout
// is given; absence is looked at once.
TORVIXTEST_EXPORT void testImageNotPresent(ScriptContext* context);
TORVIXTEST_EXPORT void testImagePresent(ScriptContext* context);
TORVIXTEST_EXPORT void testOcrTextNotPresent(ScriptContext* context);
TORVIXTEST_EXPORT void testOcrTextPresent(ScriptContext* context);

// What is kept with the results: (file[, message]), ([message]), (image file or object[, message]).
TORVIXTEST_EXPORT void testAttachFile(ScriptContext* context);
TORVIXTEST_EXPORT void testAttachDesktopScreenshot(ScriptContext* context);
TORVIXTEST_EXPORT void testAttachImage(ScriptContext* context);
/** ([message]): records the display until testStopVideoCapture, which attaches the video. */
TORVIXTEST_EXPORT void testStartVideoCapture(ScriptContext* context);
TORVIXTEST_EXPORT void testStopVideoCapture(ScriptContext* context);

/** Stops in the debugger when there is one that people use; does nothing otherwise. */
TORVIXTEST_EXPORT void testBreakpoint(ScriptContext* context);

} // namespace Torvix
