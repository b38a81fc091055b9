#pragma once

#include "interpreter/js/scriptobject/functiontable.h"

namespace Torvix {

/** `testInteraction`: dialogs with the person who runs the test. It has no prototype: intended. */
class JsTestInteractionImp : public JsFixedObjectImp
{
public:
    JsTestInteractionImp();
};

} // namespace Torvix
