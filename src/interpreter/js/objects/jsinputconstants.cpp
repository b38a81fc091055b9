#include "interpreter/js/objects/jsinputconstants.h"

#include "shared/input/modifier.h"
#include "shared/input/mousebutton.h"

namespace Torvix {

namespace {

template <class Constants>
void putConstants(KJS::ObjectImp* object)
{
    for (const auto* value = Constants::values(); *value != -1; ++value)
        putConstant(object, Constants::valueAsString(*value), KJS::Number(int(*value)));
}

} // namespace

JsMouseButtonImp::JsMouseButtonImp()
{
    putConstants<MouseButton>(this);
}

JsModifierImp::JsModifierImp()
{
    putConstants<Modifier>(this);
}

} // namespace Torvix
