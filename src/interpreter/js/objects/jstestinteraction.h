#pragma once

#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

/** `testInteraction`: dialogs with the person who runs the test. Without a prototype: it has its own members
 * only. */
class JsTestInteractionImp : public JsFixedObjectImp
{
public:
    explicit JsTestInteractionImp(KJS::ExecState* exec);
};

} // namespace Torvix
