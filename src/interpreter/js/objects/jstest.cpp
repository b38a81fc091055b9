#include "interpreter/js/objects/jstest.h"

#include "interpreter/js/bridge/jsobject.h"
#include "interpreter/js/context/jsscriptcontext.h"
#include "testsupport/testfunctions.h"

#include <vector>

namespace Torvix {

namespace {

struct TestFunctionRow
{
    KJS::Identifier name;
    int length;
    ScriptContext::Function function;
};

/** All functions; the place in the table is the type. */
const std::vector<TestFunctionRow>& testFunctions()
{
    static const std::vector<TestFunctionRow> table = {
        {"verify", 1, testVerify},
        {"xverify", 1, testXVerify},
        {"compare", 2, testCompare},
        {"xcompare", 2, testXCompare},
        {"exception", 1, testException},
        {"vp", 1, testVP},
        {"xvp", 1, testXVP},
        {"vpWithObject", 1, testVPWithObject},
        {"pass", 1, testPass},
        {"xpass", 1, testXPass},
        {"fail", 1, testFail},
        {"xfail", 1, testXFail},
        {"fatal", 1, testFatal},
        {"log", 1, testLog},
        {"warning", 1, testWarning},
        {"skip", 1, testSkip},
        {"resultCount", 1, testResultCount},
        {"stackTrace", 2, testStackTrace},
        {"fixateResultContext", 1, testFixateResultContext},
        {"restoreResultContext", 0, testRestoreResultContext},
        {"startSection", 2, testStartSection},
        {"endSection", 0, testEndSection},
        {"compareTextFiles", 3, testCompareTextFiles},
        {"compareXMLFiles", 3, testCompareXMLFiles},
        {"compareJSONFiles", 3, testCompareJSONFiles},
        {"breakpoint", 1, testBreakpoint},
        {"imageNotPresent", 1, testImageNotPresent},
        {"imagePresent", 1, testImagePresent},
        {"ocrTextNotPresent", 1, testOcrTextNotPresent},
        {"ocrTextPresent", 1, testOcrTextPresent},
        {"attachFile", 2, testAttachFile},
        {"attachDesktopScreenshot", 1, testAttachDesktopScreenshot},
        {"attachImage", 1, testAttachImage},
        {"startVideoCapture", 1, testStartVideoCapture},
        {"stopVideoCapture", 0, testStopVideoCapture},
    };
    return table;
}

} // namespace

const KJS::ClassInfo JsTest::info = {"test", nullptr};

JsTest::JsTest(KJS::ExecState* exec, TestResult* result)
    : ObjectImp(exec->interpreter()->builtinObjectPrototype())
    , m_result(result)
{
}

JsTest::~JsTest() = default;

KJS::Value JsTest::get(KJS::ExecState* exec, const KJS::Identifier& name) const
{
    const KJS::Value own = ObjectImp::get(exec, name);
    if (m_isMaking || !own.isUndefined())
        return own;
    const std::vector<TestFunctionRow>& table = testFunctions();
    for (std::size_t type = 0; type < table.size(); ++type) {
        if (table[type].name != name)
            continue;
        const KJS::Value function = new JsTestFunctionImp(int(type), table[type].length, m_result);
        jsCacheValue(this, name, function);
        // Made once: a second read finds it as an ordinary property. Defining asks for what is there.
        m_isMaking = true;
        const_cast<JsTest*>(this)->putDirect(name, function, KJS::None);
        m_isMaking = false;
        return function;
    }
    return KJS::Undefined();
}

JsTestFunctionImp::JsTestFunctionImp(Type type, int length, TestResult*) : m_type(type)
{
    putDirect("length", KJS::Number(length), KJS::ReadOnly | KJS::DontEnum | KJS::DontDelete);
}

JsTestFunctionImp::~JsTestFunctionImp() = default;

KJS::Value JsTestFunctionImp::call(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    const std::vector<TestFunctionRow>& table = testFunctions();
    if (m_type < 0 || std::size_t(m_type) >= table.size())
        return KJS::Undefined();
    return dispatchGenericScriptFunction(exec, args, table[std::size_t(m_type)].function);
}

} // namespace Torvix
