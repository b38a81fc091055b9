#include "engine/jsc/valueaccess.h"

#include "engine/jsc/jscstring.h"
#include "engine/jsc/objectaccess.h"
#include "engine/list.h"

namespace KJS {

OpaqueImp::OpaqueImp(Runtime* runtime, JSValueRef value, Type type)
    : m_runtime(runtime)
    , m_value(value)
    , m_type(type)
{
    JSValueProtect(runtime->context(), value);
    runtime->opaques().insert(this);
}

OpaqueImp::~OpaqueImp()
{
    if (!m_runtime)
        return;
    JSValueUnprotect(m_runtime->context(), m_value);
    m_runtime->opaques().erase(this);
}

void OpaqueImp::detach()
{
    JSValueUnprotect(m_runtime->context(), m_value);
    m_runtime = nullptr;
    m_value = nullptr;
}

Object ValueAccess::fromScript(Runtime& runtime, JSObjectRef object)
{
    return Object(runtime.implementation(object));
}

Value ValueAccess::fromScript(Runtime& runtime, JSValueRef value)
{
    const JSContextRef context = runtime.context();
    if (!value)
        return Undefined();
    switch (JSValueGetType(context, value)) {
    case kJSTypeUndefined:
        return Undefined();
    case kJSTypeNull:
        return Null();
    case kJSTypeBoolean:
        return Boolean(JSValueToBoolean(context, value));
    case kJSTypeNumber:
        return Number(JSValueToNumber(context, value, nullptr));
    case kJSTypeString: {
        const JscString text = JscString::adopt(JSValueToStringCopy(context, value, nullptr));
        // the copy fails only when there is no memory for it
        return Value(new StringImp(text ? toQString(text.get()) : QStringLiteral("")));
    }
    case kJSTypeObject:
        // of that type, it is an object's reference
        return Value(runtime.implementation(const_cast<JSObjectRef>(value)));
    case kJSTypeSymbol:
        return Value(new OpaqueImp(&runtime, value, SymbolType));
    case kJSTypeBigInt:
        return Value(new OpaqueImp(&runtime, value, BigIntType));
    }
    return Undefined();
}

namespace {

void refuse(ExecState* exec, const char* why)
{
    if (exec)
        exec->setException(Error::create(exec, TypeError, UString(why)));
}

JSObjectRef referenceIn(Runtime& runtime, ExecState* exec, ObjectImp* object)
{
    Runtime* const owner = ObjectAccess::runtime(object);
    if (owner == &runtime)
        return ObjectAccess::reference(object);
    if (ObjectAccess::isUnborn(object))
        return runtime.bear(object);
    refuse(exec, owner ? "The object belongs to another interpreter" : "The object's interpreter has ended");
    return nullptr;
}

} // namespace

JSObjectRef ValueAccess::toScript(Runtime& runtime, ExecState* exec, const Object& object)
{
    return object.isNull() ? nullptr : referenceIn(runtime, exec, object.imp());
}

JSValueRef ValueAccess::toScript(Runtime& runtime, ExecState* exec, const Value& value)
{
    const JSContextRef context = runtime.context();
    switch (value.type()) {
    case UnspecifiedType:
    case UndefinedType:
        break;
    case NullType:
        return JSValueMakeNull(context);
    case BooleanType:
        return JSValueMakeBoolean(context, boolean(value));
    case NumberType:
        return JSValueMakeNumber(context, number(value));
    case StringType:
        return JSValueMakeString(context, JscString(text(value).qstring()).get());
    case ObjectType:
        if (const JSObjectRef reference = referenceIn(runtime, exec, static_cast<ObjectImp*>(value.imp())))
            return reference;
        break;
    case SymbolType:
    case BigIntType: {
        const auto* const opaque = static_cast<const OpaqueImp*>(value.imp());
        if (opaque->runtime() == &runtime)
            return opaque->value();
        refuse(exec, "The value belongs to another interpreter");
        break;
    }
    }
    return JSValueMakeUndefined(context);
}

ScriptArguments::ScriptArguments(Runtime& runtime, ExecState* exec, const List& arguments)
    : m_runtime(runtime)
{
    m_values.reserve(static_cast<std::size_t>(arguments.size()));
    for (const Value& argument : arguments) {
        const JSValueRef value = ValueAccess::toScript(runtime, exec, argument);
        m_values.push_back(value);
        // the collector does not look into the vector; objects are kept by `arguments`
        if (argument.type() == StringType) {
            JSValueProtect(runtime.context(), value);
            m_protected.push_back(value);
        }
    }
}

ScriptArguments::~ScriptArguments()
{
    for (const JSValueRef value : m_protected)
        JSValueUnprotect(m_runtime.context(), value);
}

} // namespace KJS
