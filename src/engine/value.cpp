#include "engine/value.h"

#include "engine/jsc/jscstring.h"
#include "engine/jsc/objectaccess.h"
#include "engine/jsc/valueaccess.h"
#include "engine/list.h"

#include <cmath>
#include <limits>

namespace KJS {

ValueImp::~ValueImp() = default;

void ValueImp::mark() {}

bool ValueImp::marked() const
{
    return true;
}

void ValueImp::acquired() {}

void ValueImp::released()
{
    delete this;
}

Value::Value(ValueImp* imp) : m_type(imp ? imp->type() : UnspecifiedType)
{
    m_data.imp = imp;
    retain();
}

String::String(const UString& text) : Value(new StringImp(text.isNull() ? UString("") : text)) {}

bool Value::isSame(const Value& other) const
{
    if (m_type != other.m_type)
        return false;
    switch (m_type) {
    case BooleanType:
        return m_data.boolean == other.m_data.boolean;
    case NumberType:
        return m_data.number == other.m_data.number
                   ? std::signbit(m_data.number) == std::signbit(other.m_data.number)
                   : std::isnan(m_data.number) && std::isnan(other.m_data.number);
    case StringType:
        return m_data.imp == other.m_data.imp || ValueAccess::text(*this) == ValueAccess::text(other);
    case ObjectType:
        return m_data.imp == other.m_data.imp;
    case SymbolType:
    case BigIntType: {
        const auto* const mine = static_cast<const OpaqueImp*>(m_data.imp);
        const auto* const theirs = static_cast<const OpaqueImp*>(other.m_data.imp);
        return mine->runtime() && mine->runtime() == theirs->runtime() &&
               JSValueIsStrictEqual(mine->runtime()->context(), mine->value(), theirs->value());
    }
    default:
        return true;
    }
}

bool Value::toBoolean(ExecState* exec) const
{
    switch (m_type) {
    case BooleanType:
        return m_data.boolean;
    case NumberType:
        return m_data.number != 0 && !std::isnan(m_data.number);
    case StringType:
        return !ValueAccess::text(*this).isEmpty();
    case ObjectType:
    case SymbolType:
        return true;
    case BigIntType: {
        Runtime& runtime = *Runtime::of(exec);
        return JSValueToBoolean(runtime.context(), ValueAccess::toScript(runtime, exec, *this));
    }
    default:
        return false;
    }
}

double Value::toNumber(ExecState* exec) const
{
    switch (m_type) {
    case NullType:
        return 0;
    case BooleanType:
        return m_data.boolean ? 1 : 0;
    case NumberType:
        return m_data.number;
    case UnspecifiedType:
    case UndefinedType:
        return std::numeric_limits<double>::quiet_NaN();
    default:
        break;
    }
    Runtime& runtime = *Runtime::of(exec);
    const JSValueRef value = ValueAccess::toScript(runtime, exec, *this);
    JSValueRef exception = nullptr;
    const double number = JSValueToNumber(runtime.context(), value, &exception);
    if (!exception)
        return number;
    runtime.raise(exec, exception);
    return std::numeric_limits<double>::quiet_NaN();
}

UString Value::toString(ExecState* exec) const
{
    switch (m_type) {
    case UnspecifiedType:
    case UndefinedType:
        return UString("undefined");
    case NullType:
        return UString("null");
    case BooleanType:
        return UString(m_data.boolean ? "true" : "false");
    case NumberType:
        return UString::from(m_data.number);
    case StringType:
        return ValueAccess::text(*this);
    default:
        break;
    }
    Runtime& runtime = *Runtime::of(exec);
    const JSValueRef value = ValueAccess::toScript(runtime, exec, *this);
    const JSStringRef text = runtime.guarded(exec, [&](JSValueRef* exception) {
        return JSValueToStringCopy(runtime.context(), value, exception);
    });
    return text ? UString(toQString(JscString::adopt(text).get())) : UString();
}

Object Value::toObject(ExecState* exec) const
{
    if (m_type == ObjectType)
        return ValueAccess::object(*this);
    Runtime& runtime = *Runtime::of(exec);
    const JSValueRef value = ValueAccess::toScript(runtime, exec, *this);
    const JSObjectRef object = runtime.guarded(
        exec, [&](JSValueRef* exception) { return JSValueToObject(runtime.context(), value, exception); });
    return object ? ValueAccess::fromScript(runtime, object) : Object();
}

Value Value::toPrimitive(ExecState* exec, Type preferred) const
{
    if (m_type != ObjectType)
        return *this;
    const Value primitive = static_cast<ObjectImp*>(m_data.imp)->defaultValue(exec, preferred);
    return exec->hadException() ? Value() : primitive;
}

double Value::toInteger(ExecState* exec) const
{
    const double number = toNumber(exec);
    return std::isnan(number) ? 0 : std::trunc(number);
}

namespace {

/** ECMA-262 ToUint32: the mathematical value modulo 2^32. */
std::uint32_t modulo32(double number)
{
    if (!std::isfinite(number))
        return 0;
    const double modulus = 4294967296.0;
    double rest = std::fmod(std::trunc(number), modulus);
    if (rest < 0)
        rest += modulus;
    return static_cast<std::uint32_t>(rest);
}

} // namespace

std::int32_t Value::toInt32(ExecState* exec) const
{
    return static_cast<std::int32_t>(modulo32(toNumber(exec)));
}

std::uint32_t Value::toUInt32(ExecState* exec) const
{
    return modulo32(toNumber(exec));
}

std::uint16_t Value::toUInt16(ExecState* exec) const
{
    return static_cast<std::uint16_t>(modulo32(toNumber(exec)));
}

int Value::toIntegerSimplistic(ExecState* exec) const
{
    const double number = toNumber(exec);
    if (std::isnan(number))
        return 0;
    if (number <= std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    if (number >= std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    return static_cast<int>(number);
}

bool strictEqual(ExecState* exec, const Value& left, const Value& right)
{
    if (left.type() == NumberType && right.type() == NumberType)
        return ValueAccess::number(left) == ValueAccess::number(right);
    Q_UNUSED(exec)
    return left.isSame(right);
}

namespace {

/** The answer of an object's "[[==]]" member; `*asked` tells whether there is one. */
bool askEquality(ExecState* exec, const Value& left, const Value& right, bool* asked)
{
    static const Identifier equality("[[==]]");
    Object object = Object::dynamicCast(left);
    const Object function = Object::dynamicCast(object.get(exec, equality));
    *asked = exec->hadException() || (!function.isNull() && function.implementsCall());
    if (!*asked || exec->hadException())
        return false;
    List arguments;
    arguments.append(left);
    arguments.append(right);
    const Value answer = Object(function).call(exec, object, arguments);
    return !exec->hadException() && answer.toBoolean(exec);
}

} // namespace

bool equal(ExecState* exec, const Value& left, const Value& right)
{
    if (left.isObject() && right.isObject()) {
        if (left.isSame(right))
            return true;
        bool asked = false;
        bool answer = askEquality(exec, left, right, &asked);
        if (!asked)
            answer = askEquality(exec, right, left, &asked);
        return answer;
    }
    Runtime& runtime = *Runtime::of(exec);
    const JSValueRef a = ValueAccess::toScript(runtime, exec, left);
    const JSValueRef b = ValueAccess::toScript(runtime, exec, right);
    return runtime.guarded(
        exec, [&](JSValueRef* exception) { return JSValueIsEqual(runtime.context(), a, b, exception); });
}

} // namespace KJS
