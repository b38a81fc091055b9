#include "testsupport/testsettings.h"

#include "interpreter/base/scriptcontext.h"
#include "testsupport/objectfunctions.h"
#include "testsupport/reporting.h"
#include "testsupport/testresult.h"

namespace Torvix {

namespace {

bool getTimeout(ScriptContext* context)
{
    context->setResult(context->toArgument(defaultWaitTimeoutMs()));
    return true;
}

bool setTimeout(ScriptContext* context)
{
    const SharedPtr<ScriptArgument> value = context->argument(0);
    if (value && value->isInteger() && value->toInteger() >= 0) {
        setDefaultWaitTimeoutMs(value->toInteger());
        return true;
    }
    context->setError(
        QStringLiteral("testSettings.waitForObjectTimeout has to be a whole number of milliseconds "
                       "from 0"));
    return false;
}

using Flag = bool (TestResult::*)() const;
using SetFlag = void (TestResult::*)(bool);

template <Flag flag>
bool getFlag(ScriptContext* context)
{
    const TestResult* result = resultSink(*context);
    context->setResult(context->toArgument(result && (result->*flag)()));
    return true;
}

template <SetFlag set>
bool setFlag(ScriptContext* context)
{
    const SharedPtr<ScriptArgument> value = context->argument(0);
    TestResult* result = resultSink(*context);
    if (result && value)
        (result->*set)(value->toBoolean());
    return true;
}

} // namespace

NativeScriptNamespace testSettingsNamespace()
{
    NativeScriptNamespace settings;
    settings.addProperty(QStringLiteral("waitForObjectTimeout"), {getTimeout, setTimeout});
    settings.addProperty(QStringLiteral("throwOnFailure"),
                         {getFlag<&TestResult::endsOnFailure>, setFlag<&TestResult::setEndsOnFailure>});
    settings.addProperty(QStringLiteral("logScreenshotOnFail"),
                         {getFlag<&TestResult::keepsScreenshots>, setFlag<&TestResult::setKeepsScreenshots>});
    return settings;
}

} // namespace Torvix
