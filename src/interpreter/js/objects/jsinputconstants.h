#pragma once

#include "interpreter/js/scriptobject/functiontable.h"

namespace Torvix {

/** `MouseButton`: a constant for each button. It has no prototype: intended. */
class JsMouseButtonImp : public JsFixedObjectImp
{
public:
    JsMouseButtonImp();
};

/** `Modifier`: a constant for each modifier key. It has no prototype: intended. */
class JsModifierImp : public JsFixedObjectImp
{
public:
    JsModifierImp();
};

} // namespace Torvix
