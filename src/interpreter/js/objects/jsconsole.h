#pragma once

#include "interpreter/js/scriptobject/functiontable.h"

namespace Torvix {

/** `console`. It has no prototype: intended. */
class JsConsoleImp : public KJS::ObjectImp
{
public:
    JsConsoleImp();
};

/** `Console`: stays in the global scope only to tell its users of the typo. */
class DeprecatedJsConsoleImp : public KJS::ObjectImp
{
public:
    KJS::Value get(KJS::ExecState* exec, const KJS::Identifier& name) const override;
};

} // namespace Torvix
