#pragma once

#include "engine/interpreter.h"
#include "engine/object.h"

namespace Torvix {

class TestResult;

/**
 * `test`: the functions by which a script reports results. Each comes into being when it is first
 * used, and a script can replace it.
 */
class JsTest : public KJS::ObjectImp
{
public:
    static const KJS::ClassInfo info;

    /** Borrows the result sink. */
    JsTest(KJS::ExecState* exec, TestResult* result);
    ~JsTest() override;

    const KJS::ClassInfo* classInfo() const override { return &info; }
    KJS::Value get(KJS::ExecState* exec, const KJS::Identifier& name) const override;

private:
    TestResult* m_result;
    mutable bool m_isMaking = false;
};

/** One function of `test`. Without a prototype: scripts find no `call` on it. */
class JsTestFunctionImp : public KJS::ObjectImp
{
public:
    /** The row of the function in the table of all; a call of one beyond it gives Undefined. */
    using Type = int;

    /** The result sink is reached through the current script context; here it has no use. */
    JsTestFunctionImp(Type type, int length, TestResult* result);
    ~JsTestFunctionImp() override;

    bool implementsCall() const override { return true; }
    KJS::Value call(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args) override;

private:
    Type m_type;
};

} // namespace Torvix
