#include "interpreter/js/objects/jstestinteraction.h"

#include "interpreter/js/context/jsscriptcontext.h"
#include "testsupport/testinteraction.h"

namespace Torvix {

namespace {

template <ScriptContext::Function function>
KJS::Value passOn(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return jsScriptContextCall(exec, args, function);
}

const JsFunctionRow functions[] = {
    {"choice", passOn<TestInteraction::choice>, 1},
    {"isAvailable", passOn<TestInteraction::isAvailable>, 0},
    {"information", passOn<TestInteraction::information>, 1},
    {"input", passOn<TestInteraction::input>, 1},
    {"notification", passOn<TestInteraction::notification>, 1},
    {"password", passOn<TestInteraction::password>, 1},
    {"warning", passOn<TestInteraction::warning>, 1},
    {"question", passOn<TestInteraction::question>, 1},
    {"showImage", passOn<TestInteraction::showImage>, 1},
    {nullptr, nullptr, 0},
};

struct Constant
{
    const char* name;
    int value;
};

constexpr Constant constants[] = {
    {"None", TestInteraction::None}, {"Ok", TestInteraction::Ok}, {"Cancel", TestInteraction::Cancel},
    {"Yes", TestInteraction::Yes},   {"No", TestInteraction::No},
};

} // namespace

JsTestInteractionImp::JsTestInteractionImp()
{
    putFunctions(this, functions);
    for (const Constant& constant : constants)
        putConstant(this, constant.name, KJS::Number(constant.value));
}

} // namespace Torvix
