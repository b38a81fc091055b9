#pragma once

#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

/** `console`. Without a prototype: it has its own members only. */
class JsConsoleImp : public KJS::ObjectImp
{
public:
    explicit JsConsoleImp(KJS::ExecState* exec);
};

/** `Console`: stays in the global scope only to tell its users of the typo. */
class DeprecatedJsConsoleImp : public KJS::ObjectImp
{
public:
    explicit DeprecatedJsConsoleImp(KJS::ExecState*) {}

    KJS::Value get(KJS::ExecState* exec, const KJS::Identifier& name) const override;
};

} // namespace Torvix
