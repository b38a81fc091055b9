#include "testsupport/reporting.h"

#include "interpreter/base/scriptcontext.h"
#include "testsupport/attachments.h"
#include "testsupport/screen/screenshots.h"
#include "testsupport/testresult.h"

#include <QImage>

namespace Torvix {

namespace {

/** What ends the test case leaves the script as an outcome, not as an error; also where results go nowhere.
 */
void endCaseAfter(ScriptContext* context, ResultType type, const QString& message)
{
    const TestResult* result = resultSink(*context);
    if (type == ResultType::Skip)
        context->setError(message, ScriptContext::TestCaseSkipped);
    else if (type == ResultType::Fatal || (isFailure(type) && result && result->endsOnFailure()))
        context->setError(message, ScriptContext::VerificationFailure);
}

QString joined(const QString& first, const QString& second)
{
    return first.isEmpty() || second.isEmpty() ? first + second : first + QLatin1Char('\n') + second;
}

/** Adds the desktop where the sink wants it; that there is none is told, and no reason to fail. */
void keepScreenshot(TestResult* result, QVector<Attachment>* attachments, QString* detail)
{
    if (!result || !result->keepsScreenshots())
        return;
    QString error;
    const QImage image = grabDesktop(&error);
    Attachment kept;
    if (!image.isNull())
        kept = attachImage(result, image, QStringLiteral("failure.png"),
                           QStringLiteral("the screen at the failure"), &error);
    if (!kept.path.isEmpty())
        attachments->append(kept);
    if (!error.isEmpty())
        *detail = joined(*detail, QLatin1String("No screenshot: ") + error);
}

} // namespace

TestResult* resultSink(const ScriptContext& context)
{
    if (context.testResult())
        return context.testResult();
    const ScriptContext* current = ScriptContext::current();
    return current ? current->testResult() : nullptr;
}

Finding::Finding(const QString& what, const QString& textDifference)
    : text(what + QLatin1String(" (- expected, + seen)"))
    , difference(textDifference)
{
}

bool isNothing(const ScriptArgument& value)
{
    const QString type = value.typeName();
    return type == QLatin1String("Null") || type == QLatin1String("Undefined");
}

SharedPtr<ScriptArgument> optionalArgument(const ScriptContext& context, int index)
{
    const SharedPtr<ScriptArgument> argument = context.argument(index);
    return argument && isNothing(*argument) ? SharedPtr<ScriptArgument>() : argument;
}

ResultTexts resultTexts(const ScriptContext& context, int firstIndex, const QString& fallback)
{
    const auto text = [&context](int index) {
        const SharedPtr<ScriptArgument> argument = optionalArgument(context, index);
        return argument ? argument->toString() : QString();
    };
    const QString message = text(firstIndex);
    return {message.isEmpty() ? fallback : message, text(firstIndex + 1)};
}

/** Text given to eval has no place of its own: what it does is done where it is evaluated. */
static LineInfo placeInFile(const ScriptContext& context)
{
    LineInfo place;
    for (unsigned depth = 0; context.lineInfo(&place, depth); ++depth)
        if (!place.file.isEmpty())
            break;
    return place;
}

void report(ScriptContext* context, ResultType type, const QString& message, const QString& detail,
            const QVector<Attachment>& attachments, const QString& difference)
{
    if (TestResult* result = resultSink(*context))
        result->add(type, message, detail, placeInFile(*context), attachments, difference);
    endCaseAfter(context, type, message);
}

void reportCheck(ScriptContext* context, Expectation expectation, bool passed, const ResultTexts& texts,
                 const Finding& finding, const QVector<Attachment>& attachments)
{
    ResultType type = passed ? ResultType::Pass : ResultType::Fail;
    if (expectation == Expectation::Fail)
        type = passed ? ResultType::UnexpectedPass : ResultType::ExpectedFail;
    QString shown = joined(finding.text, texts.detail);
    QVector<Attachment> kept = attachments;
    if (isFailure(type))
        keepScreenshot(resultSink(*context), &kept, &shown);
    report(context, type, texts.message, shown, kept, finding.difference);
    // Code of the script that ran meanwhile may have left one.
    context->clearResult();
    context->setResult(context->toArgument(!isFailure(type)));
}

bool requireArguments(ScriptContext* context, int least, int most, const char* usage)
{
    const int count = context->argumentCount();
    if (count >= least && count <= most)
        return true;
    context->setError(QStringLiteral("Wrong number of arguments (%1), use %2")
                          .arg(QString::number(count), QLatin1String(usage)));
    return false;
}

} // namespace Torvix
