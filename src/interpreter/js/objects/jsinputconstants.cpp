#include "interpreter/js/objects/jsinputconstants.h"

#include "shared/input/modifier.h"
#include "shared/input/mousebutton.h"

namespace Torvix {

namespace {

template <class Constants>
void putValues(KJS::ObjectImp* object)
{
    for (const auto* value = Constants::values(); *value != -1; ++value)
        putConstant(object, Constants::valueAsString(*value), KJS::Number(int(*value)));
}

} // namespace

JsMouseButtonImp::JsMouseButtonImp(KJS::ExecState*)
{
    putValues<MouseButton>(this);
}

JsModifierImp::JsModifierImp(KJS::ExecState*)
{
    putValues<Modifier>(this);
}

} // namespace Torvix
