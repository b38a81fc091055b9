#pragma once

#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

/**
 * `Library`: a shared library that is loaded into this process, to call functions of it or to let it
 * install script objects of its own. A library that was loaded stays so.
 *
 * An extension module exports with C linkage, for `initModule("name")`:
 *
 *     void nameInit(KJS::ExecState* globalExec, KJS::DelayedInvocationScheduler* scheduler);
 */
class JsLibraryImp : public JsConstructorImp
{
public:
    explicit JsLibraryImp(KJS::ExecState* exec);

    KJS::Object construct(KJS::ExecState* exec, const KJS::List& args) override;
};

} // namespace Torvix
