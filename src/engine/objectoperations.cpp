// The operations of ObjectImp that call: conversion to a primitive, call, construction, instanceof.

#include "engine/jsc/objectaccess.h"
#include "engine/jsc/runtime.h"
#include "engine/jsc/valueaccess.h"
#include "engine/list.h"
#include "engine/objectimp.h"

namespace KJS {

namespace {

/** ECMA-262 OrdinaryToPrimitive. */
Value ordinaryToPrimitive(ExecState* exec, Object object, Type hint)
{
    static const Identifier names[] = {Identifier("valueOf"), Identifier("toString")};
    const int first = hint == StringType ? 1 : 0;
    for (const int index : {first, 1 - first}) {
        Object function = Object::dynamicCast(object.get(exec, names[index]));
        if (exec->hadException())
            return Value();
        if (function.isNull() || !function.implementsCall())
            continue;
        const Value result = function.call(exec, object, List::empty());
        if (exec->hadException())
            return Value();
        if (!result.isObject())
            return result;
    }
    exec->setException(Error::create(exec, TypeError, UString("No default value")));
    return Value();
}

} // namespace

Value ObjectImp::defaultValue(ExecState* exec, Type hint) const
{
    // an object is not changed by being held
    Object self(const_cast<ObjectImp*>(this));
    if (m_isHost || !m_runtime)
        return ordinaryToPrimitive(exec, self, hint);
    Runtime& runtime = *m_runtime;
    const Value preferred = String(hint == StringType ? "string" : hint == NumberType ? "number" : "default");
    const JSValueRef text = ValueAccess::toScript(runtime, exec, preferred);
    const JSValueRef result = runtime.guarded(exec, [&](JSValueRef* exception) {
        return runtime.callHelper(Helper::ToPrimitive, {ObjectAccess::reference(this), text}, exception);
    });
    return result ? ValueAccess::fromScript(runtime, result) : Value();
}

bool ObjectImp::implementsCall() const
{
    return !m_isHost && m_runtime && JSObjectIsFunction(m_runtime->context(), ObjectAccess::reference(this));
}

Value ObjectImp::call(ExecState* exec, Object& thisObject, const List& arguments)
{
    if (m_isHost || !m_runtime) {
        exec->setException(Error::create(exec, TypeError, UString("The object is not a function")));
        return Undefined();
    }
    const Object self(this);
    Runtime& runtime = *m_runtime;
    const ScriptArguments values(runtime, exec, arguments);
    const JSObjectRef receiver = ValueAccess::toScript(runtime, exec, thisObject);
    return runtime.finish(exec, runtime.call(ObjectAccess::reference(this), receiver, values.values()));
}

bool ObjectImp::implementsConstruct() const
{
    return !m_isHost && m_runtime &&
           JSObjectIsConstructor(m_runtime->context(), ObjectAccess::reference(this));
}

Object ObjectImp::construct(ExecState* exec, const List& arguments)
{
    if (m_isHost || !m_runtime) {
        exec->setException(Error::create(exec, TypeError, UString("The object is not a constructor")));
        return Object();
    }
    const Object self(this);
    Runtime& runtime = *m_runtime;
    const ScriptArguments values(runtime, exec, arguments);
    const Value made =
        runtime.finish(exec, runtime.construct(ObjectAccess::reference(this), values.values()));
    return Object::dynamicCast(made);
}

bool ObjectImp::implementsHasInstance() const
{
    return implementsConstruct();
}

bool ObjectImp::hasInstance(ExecState* exec, const Value& value)
{
    static const Identifier prototypeName("prototype");
    Object object = Object::dynamicCast(value);
    if (object.isNull())
        return false;
    const Object wanted = Object::dynamicCast(get(exec, prototypeName));
    if (wanted.isNull() || exec->hadException())
        return false;
    for (Object link = object.prototype(); !link.isNull(); link = link.prototype()) {
        if (link.imp() == wanted.imp())
            return true;
    }
    return false;
}

} // namespace KJS
