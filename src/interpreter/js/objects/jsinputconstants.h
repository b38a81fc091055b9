#pragma once

#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

/** `MouseButton`: a constant for each button. It has no prototype: intended. */
class JsMouseButtonImp : public JsFixedObjectImp
{
public:
    explicit JsMouseButtonImp(KJS::ExecState* exec);
};

/** `Modifier`: a constant for each modifier key. It has no prototype: intended. */
class JsModifierImp : public JsFixedObjectImp
{
public:
    explicit JsModifierImp(KJS::ExecState* exec);
};

} // namespace Torvix
