#pragma once

#include "engine/objectimp.h"

namespace Torvix {

/** The global object: what a script does not declare is looked up in the object model, lazily. */
class JsGlobalImp : public KJS::ObjectImp
{
public:
    JsGlobalImp();

    KJS::UString className() const override;
    KJS::Value get(KJS::ExecState* exec, const KJS::Identifier& name) const override;
    bool hasProperty(KJS::ExecState* exec, const KJS::Identifier& name) const override;
    KJS::ReferenceList propList(KJS::ExecState* exec, bool recursive = true) override;
};

} // namespace Torvix
