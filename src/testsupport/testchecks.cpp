#include "interpreter/base/scriptcontext.h"
#include "testsupport/reporting.h"
#include "testsupport/testfunctions.h"
#include "testsupport/verification/textdiff.h"

namespace Torvix {

namespace {

QString shown(const ScriptArgument& value)
{
    return QStringLiteral("'%1' (%2)").arg(value.toString(), value.typeName());
}

/** Lists and maps with the same content are not equal by ==, which surprises. */
QString identityHint(const ScriptArgument& actual, const ScriptArgument& expected)
{
    const bool areLists = actual.isList() && expected.isList();
    if (actual.isObject() || expected.isObject()) // of the application: compared by their values
        return {};
    if (!areLists && !(actual.isMap() && expected.isMap()))
        return {};
    return QStringLiteral(": they are two objects; compare their contents, as with JSON.stringify()");
}

Finding findingOf(const ScriptArgument& actual, const ScriptArgument& expected, bool equal)
{
    if (!equal && actual.isString() && expected.isString())
        return {QStringLiteral("The texts are not equal"),
                textDifference(expected.toString(), actual.toString())};
    return shown(actual) + QLatin1String(" and ") + shown(expected) +
           (equal ? QLatin1String(" are equal") : QLatin1String(" are not equal")) +
           (equal ? QString() : identityHint(actual, expected));
}

void verify(ScriptContext* context, Expectation expectation, const char* usage)
{
    if (!requireArguments(context, 1, 3, usage))
        return;
    const SharedPtr<ScriptArgument> condition = context->argument(0);
    const bool passed = context->verify(condition);
    // Only of a value that is no boolean is there more to say than true or false.
    const QString finding = condition->isBoolean() ? QString() : shown(*condition);
    reportCheck(context, expectation, passed, resultTexts(*context, 1, QStringLiteral("Verification")),
                finding);
}

void compare(ScriptContext* context, Expectation expectation, const char* usage)
{
    if (!requireArguments(context, 2, 4, usage))
        return;
    const SharedPtr<ScriptArgument> actual = context->argument(0);
    const SharedPtr<ScriptArgument> expected = context->argument(1);
    const bool equal = context->compare(actual, expected);
    reportCheck(context, expectation, equal, resultTexts(*context, 2, QStringLiteral("Comparison")),
                findingOf(*actual, *expected, equal));
}

} // namespace

void testVerify(ScriptContext* context)
{
    verify(context, Expectation::Pass, "test.verify(condition[, message[, detail]])");
}

void testXVerify(ScriptContext* context)
{
    verify(context, Expectation::Fail, "test.xverify(condition[, message[, detail]])");
}

void testCompare(ScriptContext* context)
{
    compare(context, Expectation::Pass, "test.compare(actual, expected[, message[, detail]])");
}

void testXCompare(ScriptContext* context)
{
    compare(context, Expectation::Fail, "test.xcompare(actual, expected[, message[, detail]])");
}

void testException(ScriptContext* context)
{
    if (!requireArguments(context, 1, 3, "test.exception(code[, message[, detail]])"))
        return;
    // Read first: the code may call the tool itself, and one context serves all of these calls.
    const ResultTexts texts = resultTexts(*context, 1, QStringLiteral("Exception"));
    const std::pair<QString, QString> finding = context->catchException(context->argument(0));
    const bool passed = finding.second.isEmpty();
    reportCheck(context, Expectation::Pass, passed, texts, passed ? finding.first : finding.second);
}

} // namespace Torvix
