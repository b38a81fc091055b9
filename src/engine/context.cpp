#include "engine/context.h"

#include "engine/jsc/runtime.h"
#include "engine/jsc/valueaccess.h"

namespace KJS {

namespace {

/** Program, module and eval code have names in parentheses. */
bool isFunction(const Rewriting::FunctionInfo* info)
{
    return info && !info->name.startsWith('(');
}

} // namespace

int Context::curStmtFirstLine() const
{
    return isNull() ? -1 : Runtime::of(m_interpreter)->lineOf(m_frame);
}

int Context::sourceId() const
{
    return isNull() ? -1 : Runtime::of(m_interpreter)->sourceIdOf(m_frame);
}

UString Context::functionName() const
{
    const Rewriting::FunctionInfo* const function =
        isNull() ? nullptr : Runtime::of(m_interpreter)->script().function(m_frame);
    return isFunction(function) && !function->name.isEmpty() ? UString(function->name) : UString();
}

Object Context::getThisBinding(ExecState* exec) const
{
    if (isNull())
        return exec->interpreter()->globalObject();
    Runtime& runtime = *Runtime::of(m_interpreter);
    const JSValueRef thisValue = runtime.script().thisAt(m_frame);
    if (!thisValue) {
        exec->setException(
            Error::create(exec, ReferenceError, UString("'this' is not there before super() has returned")));
        return Object();
    }
    const Value value = ValueAccess::fromScript(runtime, thisValue);
    return value.isUndefinedOrNull() ? runtime.global() : value.toObject(exec);
}

Object Context::variableObject() const
{
    if (isNull())
        return Object();
    Runtime& runtime = *Runtime::of(m_interpreter);
    const Rewriting::FunctionInfo* const code = runtime.script().function(m_frame);
    if (!code || code->name == QLatin1String("(program)"))
        return runtime.global();
    // the first scope that has a name is the one that script would find
    Object variables(new ObjectImp);
    for (const std::vector<Rewriting::Variable>& scope : runtime.script().variablesAt(m_frame)) {
        for (const Rewriting::Variable& variable : scope) {
            const Identifier name(variable.name);
            if (variable.value && !variables.hasProperty(runtime.globalExec(), name))
                variables.putDirect(name, ValueAccess::fromScript(runtime, variable.value));
        }
    }
    return variables;
}

Value Context::evaluate(ExecState* exec, const UString& expression) const
{
    if (isNull())
        return Value();
    Runtime& runtime = *Runtime::of(m_interpreter);
    const Rewriting::Outcome outcome = runtime.script().evaluateInFrame(m_frame, expression.qstring());
    const Value value = runtime.finish(exec, outcome);
    return outcome.threw() ? Value() : value;
}

} // namespace KJS
