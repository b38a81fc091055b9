// The parts of Runtime that are the ordinary operations of objects.

#include "engine/function.h"
#include "engine/jsc/hostclass.h"
#include "engine/jsc/identifiertable.h"
#include "engine/jsc/runtime.h"
#include "engine/jsc/valueaccess.h"
#include "engine/reference.h"

#include <utility>

namespace KJS {

namespace {

/** While it lives, the call-backs of that object's class leave a look-up to the engine. */
class BypassScope
{
public:
    BypassScope(const ObjectImp*& bypass, const ObjectImp* object, unsigned traits) : m_bypass(bypass)
    {
        if (ObjectAccess::traits(object) & traits)
            m_bypass = object;
    }
    ~BypassScope() { m_bypass = nullptr; }
    BypassScope(const BypassScope&) = delete;
    BypassScope& operator=(const BypassScope&) = delete;

private:
    const ObjectImp*& m_bypass;
};

/** Sets a variable as long as it lives. */
template <class T>
class ScopedValue
{
public:
    ScopedValue(T& variable, T value) : m_variable(variable), m_previous(std::exchange(variable, value)) {}
    ~ScopedValue() { m_variable = m_previous; }
    ScopedValue(const ScopedValue&) = delete;
    ScopedValue& operator=(const ScopedValue&) = delete;

private:
    T& m_variable;
    T m_previous;
};

bool isPending(const PendingLookup* lookup, const ObjectImp* object, const Identifier& name)
{
    return lookup && lookup->object == object && *lookup->name == name;
}

} // namespace

bool Runtime::takeBypass(const ObjectImp* object)
{
    if (m_bypass != object)
        return false;
    m_bypass = nullptr;
    return true;
}

Value Runtime::get(ExecState* exec, const ObjectImp* object, const Identifier& name)
{
    PendingLookup* const pending = isPending(m_lookup, object, name) ? m_lookup : nullptr;
    Value value;
    {
        const BypassScope scope(m_bypass, object, OverridesGet | OverridesHasProperty);
        const JSValueRef found = guarded(exec, [&](JSValueRef* exception) {
            return JSObjectGetProperty(m_context, ObjectAccess::reference(object),
                                       IdentifierEntry::keyOf(name), exception);
        });
        value = ValueAccess::fromScript(*this, found);
    }
    if (pending) {
        pending->baseAsked = true;
        pending->baseValue = value;
    }
    return value;
}

bool Runtime::has(ExecState*, const ObjectImp* object, const Identifier& name)
{
    PendingLookup* const pending = isPending(m_lookup, object, name) ? m_lookup : nullptr;
    const BypassScope scope(m_bypass, object, OverridesGet | OverridesHasProperty);
    const bool found =
        JSObjectHasProperty(m_context, ObjectAccess::reference(object), IdentifierEntry::keyOf(name));
    if (pending) {
        pending->baseAsked = true;
        pending->baseHas = found;
    }
    return found;
}

bool Runtime::isOrdinaryPut(const ObjectImp* object, JSStringRef name, JSValueRef value) const
{
    if (!m_put.name || m_put.value != value || !JSStringIsEqual(name, IdentifierEntry::keyOf(*m_put.name)))
        return false;
    JSValueRef link = m_put.object;
    while (JSValueIsObject(m_context, link)) {
        const JSObjectRef reference = JSValueToObject(m_context, link, nullptr);
        if (reference == ObjectAccess::reference(object))
            return true;
        link = JSObjectGetPrototype(m_context, reference);
    }
    return false;
}

void Runtime::put(ExecState* exec, ObjectImp* object, const Identifier& name, const Value& value,
                  int attributes)
{
    if (attributes != None) {
        define(exec, object, name, value, attributes);
        return;
    }
    const OrdinaryPut outer = m_put;
    m_put = {&name, ObjectAccess::reference(object), ValueAccess::toScript(*this, exec, value)};
    JSValueRef exception = nullptr;
    JSObjectSetProperty(m_context, m_put.object, IdentifierEntry::keyOf(name), m_put.value,
                        kJSPropertyAttributeNone, &exception);
    m_put = outer;
    if (exception)
        raise(exec, exception);
}

bool Runtime::remove(ExecState* exec, ObjectImp* object, const Identifier& name)
{
    const BypassScope scope(m_bypass, object, OverridesDelete);
    return guarded(exec, [&](JSValueRef* exception) {
        return JSObjectDeleteProperty(m_context, ObjectAccess::reference(object),
                                      IdentifierEntry::keyOf(name), exception);
    });
}

ReferenceList Runtime::list(ExecState* exec, ObjectImp* object, bool recursive)
{
    ReferenceList result;
    if (m_listing == object)
        return result; // the engine lists what it knows itself
    const BypassScope scope(m_bypass, object, OverridesPropList);
    const JSObjectRef reference = ObjectAccess::reference(object);
    if (recursive) {
        const JSPropertyNameArrayRef names = JSObjectCopyPropertyNames(m_context, reference);
        const std::size_t count = JSPropertyNameArrayGetCount(names);
        for (std::size_t i = 0; i < count; ++i) {
            const JSStringRef name = JSPropertyNameArrayGetNameAtIndex(names, i);
            result.append(Reference(Object(object), IdentifierEntry::fromCallback(name)));
        }
        JSPropertyNameArrayRelease(names);
        return result;
    }
    const JSValueRef keys = guarded(
        exec, [&](JSValueRef* exception) { return callHelper(Helper::Keys, {reference}, exception); });
    if (!keys)
        return result;
    static const Identifier lengthName("length");
    const Object array = Object::dynamicCast(ValueAccess::fromScript(*this, keys));
    const int count = array.get(exec, lengthName).toInt32(exec);
    for (int i = 0; i < count; ++i) {
        const UString name = array.get(exec, static_cast<unsigned>(i)).toString(exec);
        result.append(Reference(Object(object), Identifier(name)));
    }
    return result;
}

void Runtime::define(ExecState* exec, JSObjectRef object, const Identifier& name, const Value& value,
                     int attributes)
{
    const JSValueRef key = JSValueMakeString(m_context, IdentifierEntry::keyOf(name));
    const JSValueRef newValue = ValueAccess::toScript(*this, exec, value);
    const auto without = [&](int attribute) {
        return JSValueMakeBoolean(m_context, !(attributes & attribute));
    };
    guarded(exec, [&](JSValueRef* exception) {
        return callHelper(Helper::Define,
                          {object, key, newValue, without(ReadOnly), without(DontEnum), without(DontDelete)},
                          exception);
    });
}

void Runtime::define(ExecState* exec, ObjectImp* object, const Identifier& name, const Value& value,
                     int attributes)
{
    // An override that defines what it does not find must not be asked for it meanwhile.
    const ScopedValue<const ObjectImp*> defining(m_defining, object);
    define(exec, ObjectAccess::reference(object), name, value, attributes);
}

void Runtime::defineAccessor(ExecState* exec, ObjectImp* object, const Identifier& name, const Object& getter,
                             const Object& setter)
{
    const ScopedValue<const ObjectImp*> defining(m_defining, object);
    defineAccessor(exec, ObjectAccess::reference(object), name, getter, setter);
}

void Runtime::defineAccessor(ExecState* exec, JSObjectRef object, const Identifier& name,
                             const Object& getter, const Object& setter)
{
    const JSValueRef none = JSValueMakeUndefined(m_context);
    const JSValueRef key = JSValueMakeString(m_context, IdentifierEntry::keyOf(name));
    const JSObjectRef newGetter = ValueAccess::toScript(*this, exec, getter);
    const JSObjectRef newSetter = ValueAccess::toScript(*this, exec, setter);
    guarded(exec, [&](JSValueRef* exception) {
        return callHelper(Helper::DefineAccessor,
                          {object, key, newGetter ? newGetter : none, newSetter ? newSetter : none},
                          exception);
    });
}

bool Runtime::isHostObject(JSContextRef, JSObjectRef object)
{
    const ObjectImp* const imp =
        object == m_globalReference ? m_global.imp() : HostClass::hostOf(m_context, object);
    return imp && ObjectAccess::traits(imp) & OverridesHasProperty;
}

std::optional<bool> Runtime::hostHasProperty(JSContextRef, JSObjectRef object, JSValueRef key,
                                             JSValueRef* exception)
{
    const bool isGlobal = object == m_globalReference;
    ObjectImp* const imp = isGlobal ? m_global.imp() : HostClass::hostOf(m_context, object);
    if (!imp || !(ObjectAccess::traits(imp) & OverridesHasProperty) || JSValueIsSymbol(m_context, key))
        return std::nullopt;
    const JSStringRef text = JSValueToStringCopy(m_context, key, exception);
    if (!text)
        return false;
    const Identifier name = IdentifierEntry::fromCallback(text);
    JSStringRelease(text);
    NativeScope scope(*this);
    bool has = false;
    try {
        has = imp->hasProperty(scope.exec(), name);
        scope.passException(exception);
    } catch (...) {
        *exception = m_script->carryCurrentException();
    }
    return has;
}

} // namespace KJS
