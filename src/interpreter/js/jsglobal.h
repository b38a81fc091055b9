#pragma once

#include "engine/objectimp.h"

namespace Torvix {

class ApplicationModel;
class Class;

/** The global object: what a script does not declare is looked up in the object model, lazily. */
class JsGlobalImp : public KJS::ObjectImp
{
public:
    JsGlobalImp();

    KJS::UString className() const override;
    KJS::Value get(KJS::ExecState* exec, const KJS::Identifier& name) const override;
    bool hasProperty(KJS::ExecState* exec, const KJS::Identifier& name) const override;
    KJS::ReferenceList propList(KJS::ExecState* exec, bool recursive = true) override;

    /** Puts the enumerators of the application's global class on the global object as hidden constants,
     *  once for each application; one that starts later is noticed when a name is missed. Whether it did. */
    bool bindEnumerators(KJS::ExecState* exec) const;

private:
    mutable const Class* m_boundClass = nullptr;                  ///< for comparison only: it may be gone
    mutable const ApplicationModel* m_boundApplication = nullptr; ///< likewise
};

} // namespace Torvix
