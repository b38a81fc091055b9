#pragma once

#include "interpreter/base/applicationcontext.h"
#include "interpreter/js/scriptobject/scriptobject.h"
#include "shared/base/sharedptr.h"

namespace Torvix {

class RunnerInterface;

/**
 * A script's handle on one application. A new one is made for each access: two handles of one context
 * are not identical. Without a prototype: it has its own members only.
 */
class JsApplicationContextImp : public WithProperties<JsApplicationContextImp>
{
public:
    static const KJS::ClassInfo info;
    static const JsPropertyRow<JsApplicationContextImp> properties[];

    JsApplicationContextImp(KJS::ExecState* exec, SharedPtr<ApplicationContext> context);
    ~JsApplicationContextImp() override;

    const KJS::ClassInfo* classInfo() const override { return &info; }

    const SharedPtr<ApplicationContext>& context() const { return m_context; }

private:
    SharedPtr<ApplicationContext> m_context;
};

/** The current runner; without one a runner that has no applications, and tells scripts so. */
RunnerInterface* applicationRunner();

/** The context of a handle; for anything else the empty context. Never null. */
SharedPtr<ApplicationContext> unwrapAppContext(const KJS::Value& value);

} // namespace Torvix
