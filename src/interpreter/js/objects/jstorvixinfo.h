#pragma once

#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

/** `torvixinfo`: the version of the script API and what the runner knows of the test under way. */
class JsTorvixInfoImp : public WithProperties<JsTorvixInfoImp, JsFixedObjectImp>
{
public:
    static const JsPropertyRow<JsTorvixInfoImp> properties[];

    explicit JsTorvixInfoImp(KJS::ExecState* exec);
};

} // namespace Torvix
