#pragma once

#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

/** `testInteraction`: dialogs with the person who runs the test. It has no prototype: intended. */
class JsTestInteractionImp : public JsFixedObjectImp
{
public:
    explicit JsTestInteractionImp(KJS::ExecState* exec);
};

} // namespace Torvix
