#pragma once

#include "interpreter/js/scriptobject/functiontable.h"

namespace Torvix {

/** `torvixinfo`: the version of the script API and what the runner knows of the test under way. */
class JsTorvixInfoImp : public JsFixedObjectImp
{
public:
    explicit JsTorvixInfoImp(KJS::ExecState* exec);

    KJS::Value get(KJS::ExecState* exec, const KJS::Identifier& name) const override;
};

} // namespace Torvix
