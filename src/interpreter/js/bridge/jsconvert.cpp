#include "interpreter/js/bridge/jsconvert.h"

#include "engine/interpreter.h"
#include "engine/reference.h"
#include "interpreter/js/bridge/jsobject.h"
#include "interpreter/js/bridge/jsscriptargument.h"
#include "interpreter/js/bridge/overload.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "objectmodel/inspector.h"
#include "objectmodel/objectname.h"

#include <cmath>
#include <limits>

namespace Torvix {

namespace {

using Code = Protocol::BuiltinClass;

unsigned arrayLength(KJS::ExecState* exec, const KJS::Object& array)
{
    static const KJS::Identifier length("length");
    return array.get(exec, length).toUInt32(exec);
}

/** The container class that an element of a script container is converted to; null for none. */
const Class* containerClassOf(KJS::ExecState* exec, const KJS::Value& value)
{
    if (isKJSArray(value))
        return ArrayClass::registeredClass();
    return isKJSMap(value, exec) ? MapClass::registeredClass() : nullptr;
}

/** The object of an element: what has none (undefined, null, a function) keeps its place as no value. */
SharedPtr<Object> elementToObject(KJS::ExecState* exec, const KJS::Value& value)
{
    const SharedPtr<Object> object = jsToObject(exec, value, containerClassOf(exec, value));
    return object ? object : Inspector::self()->createVoid();
}

SharedPtr<Object> arrayToObject(KJS::ExecState* exec, const KJS::Value& value)
{
    const KJS::Object array = KJS::Object::dynamicCast(value);
    const unsigned length = arrayLength(exec, array);
    ObjectList elements;
    for (unsigned i = 0; i < length && !exec->hadException(); ++i)
        elements.append(elementToObject(exec, array.get(exec, i)));
    return exec->hadException() ? nullptr : ArrayClass::createRemoteObject(elements);
}

SharedPtr<Object> mapToObject(KJS::ExecState* exec, const KJS::Value& value)
{
    const KJS::Object map = KJS::Object::dynamicCast(value);
    ObjectEntries entries;
    for (const KJS::Reference& reference : map.propList(exec, true)) {
        const KJS::Value entry = reference.getValue(exec);
        if (exec->hadException())
            return nullptr;
        if (const SharedPtr<Object> object = jsToObject(exec, entry, containerClassOf(exec, entry)))
            entries.insert(reference.getPropertyName(exec).qstring(), object);
    }
    return MapClass::createRemoteObject(entries);
}

SharedPtr<Object> numberToObject(double number, const Class* cls)
{
    Inspector* inspector = Inspector::self();
    const bool fitsInt = number >= std::numeric_limits<int>::min() &&
                         number <= std::numeric_limits<int>::max() && number == std::trunc(number);
    if ((cls && cls->id() == Code::DoubleClass) || !fitsInt)
        return inspector->createDouble(number);
    return inspector->createInteger(int(number));
}

/** Cut to 64 bits; what is beyond them stays at their limits, NaN is 0. */
qint64 toInt64(double number)
{
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (std::isnan(number))
        return 0;
    if (number >= limit)
        return std::numeric_limits<qint64>::max();
    return number < -limit ? std::numeric_limits<qint64>::min() : qint64(number);
}

/** One call's arguments on their way into the application. */
class ArgumentConverter
{
public:
    explicit ArgumentConverter(KJS::ExecState* exec) : m_exec(exec) {}

    /** Null with the exception set on failure. */
    SharedPtr<Object> convert(const KJS::Value& value, const Argument& argument)
    {
        const Class* target = argument.type();
        const bool indirect = argument.attribute().isIndirect();
        if (Object* object = jsUnWrap(m_exec, value))
            return convertWrapped(object, target, indirect);
        if (isKJSArray(value) && argument.attribute().has(ObjectAttribute::List) &&
            target->id() != Code::StringClass)
            return convertList(value, argument);
        Inspector* inspector = Inspector::self();
        switch (target->id()) {
        case Code::UIntClass:
        case Code::IntClass:
            return inspector->createInteger(value.toIntegerSimplistic(m_exec));
        case Code::ShortClass:
            return inspector->createShort(value.toIntegerSimplistic(m_exec));
        case Code::Int64Class:
            return inspector->createInt64(toInt64(value.toNumber(m_exec)));
        case Code::DoubleClass:
            return convertToDouble(value);
        case Code::StringClass:
            return convertToString(value);
        case Code::BoolClass:
            return inspector->createBoolean(value.toBoolean(m_exec));
        default:
            return convertToClass(value, argument);
        }
    }

private:
    /** What led to the failure, if anything, becomes the error's `cause`. */
    SharedPtr<Object> fail(const QString& message, const QString& cause = QString())
    {
        Inspector::self()->note(Failure{message});
        raiseJSException(m_exec, KJS::EvalError, message);
        if (!cause.isEmpty()) {
            KJS::Object error = KJS::Object::dynamicCast(m_exec->exception());
            error.putDirect("cause", KJS::Error::create(m_exec, KJS::GeneralError, cause, -1, -1),
                            KJS::DontEnum);
        }
        return nullptr;
    }

    SharedPtr<Object> convertWrapped(Object* object, const Class* target, bool indirect)
    {
        if (object->objectClass() == target)
            return object;
        const Result<SharedPtr<Object>> converted = convertTo(object, target, indirect);
        if (!converted)
            return fail(QStringLiteral("Failed to convert argument of type %1").arg(target->name()));
        return *converted;
    }

    SharedPtr<Object> convertList(const KJS::Value& value, const Argument& argument)
    {
        const KJS::Object array = KJS::Object::dynamicCast(value);
        const Argument element = elementOf(argument);
        ObjectList elements;
        for (unsigned i = 0, length = arrayLength(m_exec, array); i < length; ++i) {
            const SharedPtr<Object> object = convert(array.get(m_exec, i), element);
            if (!object)
                return nullptr;
            elements.append(object);
        }
        return ArrayClass::createRemoteObject(elements);
    }

    SharedPtr<Object> convertToDouble(const KJS::Value& value)
    {
        const double number = value.toNumber(m_exec);
        if (value.dispatchType() == KJS::NumberType && std::isnan(number)) {
            raiseJSException(m_exec, KJS::EvalError, QStringLiteral("Failed to convert NaN to double"));
            return nullptr;
        }
        return Inspector::self()->createDouble(number);
    }

    SharedPtr<Object> convertToString(const KJS::Value& value)
    {
        if (isKJSArray(value)) {
            const KJS::Object array = KJS::Object::dynamicCast(value);
            QStringList texts;
            for (unsigned i = 0, length = arrayLength(m_exec, array); i < length; ++i)
                texts += QStrFromObj(m_exec, array.get(m_exec, i));
            return Inspector::self()->createStringList(texts);
        }
        if (isKJSMap(value, m_exec))
            return Inspector::self()->createString(JSScriptArgument(m_exec, value).toRealName());
        return Inspector::self()->createString(QStrFromObj(m_exec, value));
    }

    SharedPtr<Object> convertToClass(const KJS::Value& value, const Argument& argument)
    {
        const Class* target = argument.type();
        const bool indirect = argument.attribute().isIndirect();
        const bool isNumber = value.dispatchType() == KJS::NumberType;
        if (indirect && isNumber && value.toNumber(m_exec) == 0)
            return target->createNull();
        if (isNumber && argument.enumeration())
            return Inspector::self()->createInteger(value.toIntegerSimplistic(m_exec));
        if (const Class* container = containerClassOf(m_exec, value); container && container == target)
            return jsToObject(m_exec, value, target);
        const QString text = QStrFromObj(m_exec, value);
        // A map stands for the name of an object.
        const QString name = isKJSMap(value, m_exec) ? JSScriptArgument(m_exec, value).toRealName() : text;
        const Result<SharedPtr<Object>> converted =
            convertTo(Inspector::self()->createString(name), target, indirect);
        if (converted)
            return *converted;
        const QString failure = QStringLiteral("Failed to convert argument '%1' of type %2 to type %3")
                                    .arg(text, plainTypeName(m_exec, value), target->name());
        // Of a name it helps to know what came closest.
        return fail(failure, ObjectName::isRealName(name) ? converted.error() : QString());
    }

    KJS::ExecState* m_exec;
};

} // namespace

Argument elementOf(const Argument& list)
{
    ObjectAttribute attribute;
    attribute.flags = list.attribute().flags & ~quint32(ObjectAttribute::List);
    return Argument(list.name(), list.type(), attribute);
}

QString plainTypeName(KJS::ExecState* exec, const KJS::Value& value)
{
    switch (value.dispatchType()) {
    case KJS::UndefinedType:
        return QStringLiteral("Undefined");
    case KJS::NullType:
        return QStringLiteral("Null");
    case KJS::ObjectType:
        return KJS::Object::dynamicCast(value).className().qstring();
    default:
        return nameOfType(exec, value);
    }
}

SharedPtr<Object> jsToObject(KJS::ExecState* exec, const KJS::Value& value, const Class* cls)
{
    if (Object* object = jsUnWrap(exec, value))
        return object;
    Inspector* inspector = Inspector::self();
    switch (value.dispatchType()) {
    case KJS::BooleanType:
        return inspector->createBoolean(value.toBoolean(exec));
    case KJS::NumberType:
        return numberToObject(value.toNumber(exec), cls);
    case KJS::StringType:
        return inspector->createString(value.toString(exec).qstring());
    default:
        break;
    }
    if (!cls)
        return nullptr;
    if (value.dispatchType() == KJS::NullType)
        return inspector->createNull(cls);
    if (cls == ArrayClass::registeredClass() && isKJSArray(value))
        return arrayToObject(exec, value);
    if (cls == MapClass::registeredClass() && isKJSMap(value, exec))
        return mapToObject(exec, value);
    return nullptr;
}

KJS::Value jsNatify(KJS::ExecState* exec, SharedPtr<Object> object)
{
    switch (object->objectClass()->id()) {
    case Code::UIntClass:
    case Code::IntClass:
    case Code::ShortClass:
    case Code::Int64Class:
    case Code::DoubleClass:
        return KJS::Number(object->toDouble());
    case Code::StringClass:
        return KJS::String(object->toString());
    case Code::BoolClass:
        return KJS::Boolean(object->toBool());
    case Code::VoidClass:
        return KJS::Undefined();
    case Code::ArrayClassId: {
        KJS::Object array = exec->interpreter()->builtinArray().construct(exec, KJS::List::empty());
        unsigned index = 0;
        for (const SharedPtr<Object>& element : object->elements())
            array.put(exec, index++, jsNatify(exec, element));
        return array;
    }
    case Code::MapClassId: {
        KJS::Object map = exec->interpreter()->builtinObject().construct(exec, KJS::List::empty());
        const ObjectEntries entries = object->entries();
        for (auto entry = entries.begin(); entry != entries.end(); ++entry)
            map.putDirect(KJS::Identifier(entry.key()), jsNatify(exec, entry.value()));
        return map;
    }
    default:
        return jsWrap(exec, std::move(object));
    }
}

KJS::Value jsValueOf(KJS::ExecState* exec, SharedPtr<Object> object)
{
    return jsNatify(exec, std::move(object));
}

KJS::Value jsToString(KJS::ExecState*, SharedPtr<Object> object)
{
    return KJS::String(object->toString());
}

QString QStrFromObj(KJS::ExecState* exec, const KJS::Value& value)
{
    return value.toString(exec).qstring();
}

Result<SharedPtr<Object>> convertTo(SharedPtr<Object> object, const Class* target, bool indirect)
{
    return object->objectClass()->convertObject(object, target, indirect);
}

bool jsConvertArgs(KJS::ExecState* exec, ObjectList* objects, const KJS::List& args,
                   const Signature& signature)
{
    ArgumentConverter converter(exec);
    for (int i = 0; i < signature.count(); ++i) {
        const SharedPtr<Object> object = converter.convert(args[i], signature.argument(i));
        if (!object || exec->hadException())
            return false;
        objects->append(object);
    }
    return true;
}

bool isKJSArray(const KJS::Value& value)
{
    const KJS::Object object = KJS::Object::dynamicCast(value);
    return !object.isNull() && object.className() == "Array";
}

bool isKJSMap(const KJS::Value& value, const KJS::ExecState* exec)
{
    const KJS::Object object = KJS::Object::dynamicCast(value);
    return !object.isNull() && !object.inherits(&JsObjectImp::info) && object.className() == "Object" &&
           object.prototype().isSame(exec->interpreter()->builtinObjectPrototype());
}

} // namespace Torvix
