#pragma once

#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

/** `MouseButton`: a constant for each button. Without a prototype: it has its own members only. */
class JsMouseButtonImp : public JsFixedObjectImp
{
public:
    explicit JsMouseButtonImp(KJS::ExecState* exec);
};

/** `Modifier`: a constant for each modifier key. Without a prototype: it has its own members only. */
class JsModifierImp : public JsFixedObjectImp
{
public:
    explicit JsModifierImp(KJS::ExecState* exec);
};

} // namespace Torvix
