#include "engine/objectimp.h"

#include "engine/jsc/heap.h"
#include "engine/jsc/hostclass.h"
#include "engine/jsc/objectaccess.h"
#include "engine/jsc/runtime.h"
#include "engine/jsc/valueaccess.h"
#include "engine/list.h"
#include "engine/reference.h"

namespace KJS {

ObjectImp::Unborn::Property* ObjectImp::Unborn::find(const Identifier& name)
{
    for (Property& property : properties) {
        if (property.name == name)
            return &property;
    }
    return nullptr;
}

ObjectImp::Unborn::Property& ObjectImp::Unborn::obtain(const Identifier& name)
{
    if (Property* const known = find(name))
        return *known;
    properties.push_back({});
    properties.back().name = name;
    return properties.back();
}

// Life ------------------------------------------------------------------------------------------

ObjectImp::ObjectImp() : ObjectImp(Object()) {}

ObjectImp::ObjectImp(const Object& prototype) : m_unborn(new Unborn)
{
    m_unborn->prototype = prototype;
    Heap::self().objectMade();
    Heap::self().addYoung(this);
}

ObjectImp::ObjectImp(ObjectImp* prototype) : ObjectImp(Object(prototype)) {}

ObjectImp::ObjectImp(ScriptObjectTag) : m_isHost(false) {}

ObjectImp::~ObjectImp()
{
    if (m_isHost)
        Heap::self().objectDestroyed();
}

void ObjectImp::acquired()
{
    if (m_isHost && m_runtime)
        m_runtime->addRoot(this);
}

void ObjectImp::released()
{
    if (!m_isHost) {
        if (m_runtime)
            m_runtime->restView(this);
        else
            delete this;
    } else if (m_runtime) {
        m_runtime->removeRoot(this);
    } else if (!m_unborn) {
        delete this; // outlived its interpreter
    } else if (!m_isYoung) {
        Heap::self().addYoung(this);
    }
}

std::unique_ptr<ObjectImp::Unborn> ObjectAccess::bear(ObjectImp* object, Runtime* runtime,
                                                      JSObjectRef reference, unsigned traits)
{
    object->m_runtime = runtime;
    object->m_reference = reference;
    object->m_traits = traits;
    if (object->references() > 0)
        object->acquired();
    return std::move(object->m_unborn);
}

void ObjectAccess::detach(ObjectImp* object)
{
    object->m_runtime = nullptr;
    object->m_reference = nullptr;
    object->m_rootIndex = -1;
}

// Marking ---------------------------------------------------------------------------------------

namespace {
JSMarkerRef currentMarker = nullptr;
}

MarkingScope::MarkingScope(JSMarkerRef marker)
{
    currentMarker = marker;
}

MarkingScope::~MarkingScope()
{
    currentMarker = nullptr;
}

void ObjectImp::mark()
{
    if (currentMarker && m_runtime)
        currentMarker->Mark(currentMarker, ObjectAccess::reference(this));
}

bool ObjectImp::marked() const
{
    return !currentMarker || !m_runtime ||
           currentMarker->IsMarked(currentMarker, ObjectAccess::reference(this));
}

// Class -----------------------------------------------------------------------------------------

const ClassInfo* ObjectImp::classInfo() const
{
    return nullptr;
}

bool ObjectImp::inherits(const ClassInfo* info) const
{
    for (const ClassInfo* mine = classInfo(); mine; mine = mine->parentClass) {
        if (mine == info)
            return true;
    }
    return false;
}

UString ObjectImp::className() const
{
    if (m_isHost || !m_runtime) {
        const ClassInfo* const info = classInfo();
        return UString(info && info->className ? info->className : "Object");
    }
    const JSObjectRef self = ObjectAccess::reference(this);
    if (JSValueIsArray(m_runtime->context(), self))
        return UString("Array");
    if (JSObjectIsFunction(m_runtime->context(), self))
        return UString("Function");
    JSValueRef exception = nullptr;
    const JSValueRef tag = m_runtime->callHelper(Helper::Tag, {self}, &exception);
    return exception ? UString("Object") : ValueAccess::text(ValueAccess::fromScript(*m_runtime, tag));
}

// Properties ------------------------------------------------------------------------------------

Value ObjectImp::get(ExecState* exec, const Identifier& name) const
{
    if (m_runtime)
        return m_runtime->get(exec, this, name);
    if (!m_unborn)
        return Undefined();
    if (const Unborn::Property* const property = m_unborn->find(name))
        return property->isAccessor() ? Value(Undefined()) : property->value;
    return m_unborn->prototype.isNull() ? Value(Undefined()) : m_unborn->prototype.get(exec, name);
}

void ObjectImp::put(ExecState* exec, const Identifier& name, const Value& value, int attributes)
{
    if (m_runtime) {
        m_runtime->put(exec, this, name, value, attributes);
    } else if (m_unborn) {
        const Unborn::Property* const known = m_unborn->find(name);
        if (!known)
            putDirect(name, value, attributes);
        else if (!(known->attributes & ReadOnly))
            putDirect(name, value, known->attributes);
    }
}

bool ObjectImp::hasProperty(ExecState* exec, const Identifier& name) const
{
    if (m_runtime)
        return m_runtime->has(exec, this, name);
    if (!m_unborn)
        return false;
    return m_unborn->find(name) ||
           (!m_unborn->prototype.isNull() && m_unborn->prototype.hasProperty(exec, name));
}

bool ObjectImp::deleteProperty(ExecState* exec, const Identifier& name)
{
    if (m_runtime)
        return m_runtime->remove(exec, this, name);
    if (!m_unborn)
        return true;
    for (auto it = m_unborn->properties.begin(); it != m_unborn->properties.end(); ++it) {
        if (it->name != name)
            continue;
        if (it->attributes & DontDelete)
            return false;
        m_unborn->properties.erase(it);
        return true;
    }
    return true;
}

ReferenceList ObjectImp::propList(ExecState* exec, bool recursive)
{
    if (m_runtime)
        return m_runtime->list(exec, this, recursive);
    ReferenceList list;
    if (!m_unborn)
        return list;
    for (const Unborn::Property& property : m_unborn->properties) {
        if (!(property.attributes & DontEnum))
            list.append(Reference(Object(this), property.name));
    }
    if (recursive && !m_unborn->prototype.isNull()) {
        for (const Reference& inherited : m_unborn->prototype.propList(exec, true)) {
            if (!m_unborn->find(inherited.getPropertyName(exec)))
                list.append(inherited);
        }
    }
    return list;
}

void ObjectImp::putDirect(const Identifier& name, const Value& value, int attributes)
{
    if (m_runtime) {
        m_runtime->define(m_runtime->currentExec(), this, name, value, attributes);
    } else if (m_unborn) {
        Unborn::Property& property = m_unborn->obtain(name);
        property.value = value;
        property.attributes = attributes;
        property.getter = Object();
        property.setter = Object();
    }
}

void ObjectImp::preventExtensions()
{
    if (m_unborn)
        m_unborn->isExtensible = false;
}

void ObjectImp::defineGetter(ExecState* exec, const Identifier& name, const Object& getter)
{
    if (m_runtime)
        m_runtime->defineAccessor(exec, this, name, getter, Object());
    else if (m_unborn)
        m_unborn->obtain(name).getter = getter;
}

void ObjectImp::defineSetter(ExecState* exec, const Identifier& name, const Object& setter)
{
    if (m_runtime)
        m_runtime->defineAccessor(exec, this, name, Object(), setter);
    else if (m_unborn)
        m_unborn->obtain(name).setter = setter;
}

Value ObjectImp::getIndex(ExecState* exec, unsigned index) const
{
    if (m_isHost || !m_runtime)
        return get(exec, Identifier::from(index));
    const JSValueRef value = m_runtime->guarded(exec, [&](JSValueRef* exception) {
        return JSObjectGetPropertyAtIndex(m_runtime->context(), ObjectAccess::reference(this), index,
                                          exception);
    });
    return ValueAccess::fromScript(*m_runtime, value);
}

void ObjectImp::putIndex(ExecState* exec, unsigned index, const Value& value)
{
    if (m_isHost || !m_runtime) {
        put(exec, Identifier::from(index), value);
        return;
    }
    const JSValueRef element = ValueAccess::toScript(*m_runtime, exec, value);
    m_runtime->guarded(exec, [&](JSValueRef* exception) {
        JSObjectSetPropertyAtIndex(m_runtime->context(), ObjectAccess::reference(this), index, element,
                                   exception);
        return true;
    });
}

Object ObjectImp::prototype() const
{
    if (!m_runtime)
        return m_unborn ? m_unborn->prototype : Object();
    const JSContextRef context = m_runtime->context();
    const JSValueRef prototype = JSObjectGetPrototype(context, ObjectAccess::reference(this));
    return Object::dynamicCast(ValueAccess::fromScript(*m_runtime, prototype));
}

void ObjectImp::setPrototype(const Object& prototype)
{
    if (!m_runtime) {
        if (m_unborn)
            m_unborn->prototype = prototype;
        return;
    }
    const JSObjectRef reference = ValueAccess::toScript(*m_runtime, m_runtime->currentExec(), prototype);
    const JSContextRef context = m_runtime->context();
    JSObjectSetPrototype(context, ObjectAccess::reference(this),
                         reference ? reference : JSValueMakeNull(context));
}

} // namespace KJS
