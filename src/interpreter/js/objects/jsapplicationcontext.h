#pragma once

#include "interpreter/base/applicationcontext.h"
#include "interpreter/js/context/functiontable.h"
#include "shared/base/sharedptr.h"

namespace Torvix {

/**
 * A script's handle on one application. A new one is made for each access: two handles of one context
 * are not identical. It has no prototype: intended.
 */
class JsApplicationContextImp : public KJS::ObjectImp
{
public:
    static const KJS::ClassInfo info;

    JsApplicationContextImp(KJS::ExecState* exec, SharedPtr<ApplicationContext> context);
    ~JsApplicationContextImp() override;

    const KJS::ClassInfo* classInfo() const override { return &info; }
    KJS::Value get(KJS::ExecState* exec, const KJS::Identifier& name) const override;

    const SharedPtr<ApplicationContext>& context() const { return m_context; }

private:
    SharedPtr<ApplicationContext> m_context;
};

/** The context of a handle; for anything else the empty context. Never null. */
SharedPtr<ApplicationContext> unwrapAppContext(const KJS::Value& value);

KJS::Value jsStartApplication(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsAttachToApplication(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsWaitForApplicationLaunch(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsSetApplicationContext(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsdefaultApplicationContext(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jscurrentApplicationContext(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsApplicationContext(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsApplicationContextList(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);

} // namespace Torvix
