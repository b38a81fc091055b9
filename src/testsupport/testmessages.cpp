#include "interpreter/base/debugger.h"
#include "interpreter/base/interpreter.h"
#include "interpreter/base/scriptcontext.h"
#include "testsupport/reporting.h"
#include "testsupport/testfunctions.h"
#include "testsupport/testresult.h"

#include <algorithm>
#include <iterator>

namespace Torvix {

namespace {

void message(ScriptContext* context, ResultType type, const char* usage)
{
    if (!requireArguments(context, 1, 2, usage))
        return;
    const QString text = context->argument(0)->toString();
    const SharedPtr<ScriptArgument> detail = optionalArgument(*context, 1);
    report(context, type, text, detail ? detail->toString() : QString());
}

struct CountName
{
    const char* name;
    ResultType type;
};

constexpr CountName countNames[] = {
    {"passes", ResultType::Pass},
    {"fails", ResultType::Fail},
    {"xfails", ResultType::ExpectedFail},
    {"xpasses", ResultType::UnexpectedPass},
    {"fatals", ResultType::Fatal},
    {"errors", ResultType::Error},
    {"skips", ResultType::Skip},
    {"warnings", ResultType::Warning},
    {"logs", ResultType::Log},
};

/** False, with an error in the context, when the argument is there and no whole number from 0. */
bool readCount(ScriptContext* context, int index, const char* what, int* value)
{
    const SharedPtr<ScriptArgument> argument = optionalArgument(*context, index);
    if (!argument)
        return true;
    if (argument->isInteger() && argument->toInteger() >= 0) {
        *value = argument->toInteger();
        return true;
    }
    context->setError(QStringLiteral("%1 has to be a whole number from 0, not '%2'")
                          .arg(QLatin1String(what), argument->toString()));
    return false;
}

} // namespace

void testPass(ScriptContext* context)
{
    message(context, ResultType::Pass, "test.pass(message[, detail])");
}

void testXPass(ScriptContext* context)
{
    message(context, ResultType::UnexpectedPass, "test.xpass(message[, detail])");
}

void testFail(ScriptContext* context)
{
    message(context, ResultType::Fail, "test.fail(message[, detail])");
}

void testXFail(ScriptContext* context)
{
    message(context, ResultType::ExpectedFail, "test.xfail(message[, detail])");
}

void testFatal(ScriptContext* context)
{
    message(context, ResultType::Fatal, "test.fatal(message[, detail])");
}

void testLog(ScriptContext* context)
{
    message(context, ResultType::Log, "test.log(message[, detail])");
}

void testWarning(ScriptContext* context)
{
    message(context, ResultType::Warning, "test.warning(message[, detail])");
}

void testSkip(ScriptContext* context)
{
    message(context, ResultType::Skip, "test.skip(message[, detail])");
}

void testResultCount(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "test.resultCount(name)"))
        return;
    const TestResult* result = context->testResult();
    const QString name = context->argument(0)->toString();
    if (name == QLatin1String("tests")) {
        context->setResult(context->toArgument(result ? result->checkCount() : 0));
        return;
    }
    const auto row =
        std::find_if(std::begin(countNames), std::end(countNames),
                     [&name](const CountName& each) { return name == QLatin1String(each.name); });
    if (row == std::end(countNames)) {
        QStringList known{QStringLiteral("tests")};
        for (const CountName& each : countNames)
            known += QLatin1String(each.name);
        context->setError(QStringLiteral("test.resultCount() does not know '%1', only %2")
                              .arg(name, known.join(QLatin1String(", "))));
        return;
    }
    context->setResult(context->toArgument(result ? result->count(row->type) : 0));
}

void testStackTrace(ScriptContext* context)
{
    int first = 0;
    int count = 1'000'000;
    if (!requireArguments(context, 0, 2, "test.stackTrace([first[, count]])") ||
        !readCount(context, 0, "The first frame", &first) ||
        !readCount(context, 1, "The number of frames", &count))
        return;
    std::vector<Debugger::Location> frames;
    Debugger::Location place;
    for (int depth = first; int(frames.size()) < count && context->lineInfo(&place, unsigned(depth)); ++depth)
        frames.push_back(place);
    context->setStackTraceResult(frames);
}

void testFixateResultContext(ScriptContext* context)
{
    int depth = 1;
    if (!requireArguments(context, 0, 1, "test.fixateResultContext([frames])") ||
        !readCount(context, 0, "The number of frames", &depth))
        return;
    LineInfo place;
    if (!context->lineInfo(&place, unsigned(depth))) {
        context->setError(QStringLiteral("There are not %1 callers here").arg(depth));
        return;
    }
    if (TestResult* result = context->testResult())
        result->fixatePlace(place);
}

void testRestoreResultContext(ScriptContext* context)
{
    TestResult* result = context->testResult();
    if (requireArguments(context, 0, 0, "test.restoreResultContext()") && result && !result->restorePlace())
        context->setError(QStringLiteral("test.restoreResultContext() without test.fixateResultContext()"));
}

void testStartSection(ScriptContext* context)
{
    if (!requireArguments(context, 1, 2, "test.startSection(title[, description])"))
        return;
    TestResult* result = context->testResult();
    if (!result)
        return;
    const ResultTexts texts = resultTexts(*context, 0, QString());
    result->startSection(texts.message);
    if (!texts.detail.isEmpty())
        report(context, ResultType::Log, texts.detail, QString());
}

void testEndSection(ScriptContext* context)
{
    TestResult* result = context->testResult();
    if (requireArguments(context, 0, 0, "test.endSection()") && result && !result->endSection())
        context->setError(QStringLiteral("test.endSection() without test.startSection()"));
}

void testBreakpoint(ScriptContext* context)
{
    Debugger* debugger = Debugger::self();
    if (!debugger || !debugger->isInteractive())
        return;
    // The debugger follows the statements only where there are breakpoints or steps.
    LineInfo place;
    if (context->lineInfo(&place, 0)) {
        debugger->setCurrentLine(place.line);
        debugger->setCurrentSourceId(debugger->sourceIdOf(place.file));
    }
    debugger->stop();
}

} // namespace Torvix
