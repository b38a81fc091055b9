#include "interpreter/js/objects/jstestinteraction.h"

#include "interpreter/js/context/jsscriptcontext.h"
#include "testsupport/testinteraction.h"

namespace Torvix {

namespace {

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

const JsConstantRow constants[] = {
    {"None", TestInteraction::None}, {"Ok", TestInteraction::Ok}, {"Cancel", TestInteraction::Cancel},
    {"Yes", TestInteraction::Yes},   {"No", TestInteraction::No}, {nullptr, 0},
};

} // namespace

JsTestInteractionImp::JsTestInteractionImp(KJS::ExecState*)
{
    putFunctions(this, functions);
    putConstants(this, constants);
}

} // namespace Torvix
