#pragma once

#include "report/results.h"
#include "shared/base/sharedptr.h"
#include "testsupport/export.h"

#include <QString>

namespace Torvix {

class ScriptArgument;
class ScriptContext;
class TestResult;

/**
 * Where results of this call go; null when nowhere. Contexts that live for one call know no sink of
 * their own and take that of the current interpreter.
 */
TORVIXTEST_EXPORT TestResult* resultSink(const ScriptContext& context);

/** What a check may end in, for the ordinary form and for the form that expects a failure. */
enum class Expectation { Pass, Fail };

/** The optional message and detail that follow a test function's own arguments. */
struct ResultTexts
{
    QString message;
    QString detail;
};

/** What a check has seen. */
struct Finding
{
    Finding() = default;
    Finding(const QString& seenText) : text(seenText) {}
    /** Of two texts that are not the same; `what` says so. */
    Finding(const QString& what, const QString& textDifference);

    QString text;
    QString difference; ///< as ResultEntry has it; empty without one
};

/** Whether it is the script's null or undefined. */
bool isNothing(const ScriptArgument& value);

/** An argument that may be left out: null when it is, and when null or undefined stands in its place. */
SharedPtr<ScriptArgument> optionalArgument(const ScriptContext& context, int index);

/** Reads them from two arguments; `fallback` is the message when none is given. */
ResultTexts resultTexts(const ScriptContext& context, int firstIndex, const QString& fallback);

/** Reports at the place where the script calls from, and ends the case where it has to. */
TORVIXTEST_EXPORT void report(ScriptContext* context, ResultType type, const QString& message,
                              const QString& detail, const QVector<Attachment>& attachments = {},
                              const QString& difference = {});

/**
 * Reports a check: `passed` gives a pass or a failure, or where a failure is expected an unexpected
 * pass or an expected failure. The script gets whether it went as expected. `finding` says what was seen and
 * comes before the script's detail.
 */
TORVIXTEST_EXPORT void reportCheck(ScriptContext* context, Expectation expectation, bool passed,
                                   const ResultTexts& texts, const Finding& finding,
                                   const QVector<Attachment>& attachments = {});

/**
 * False, with an error in the context, unless between least and most arguments are given.
 * `usage` is the call as documented: "test.verify(condition[, message[, detail]])".
 */
TORVIXTEST_EXPORT bool requireArguments(ScriptContext* context, int least, int most, const char* usage);

} // namespace Torvix
