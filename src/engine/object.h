#pragma once

#include "engine/list.h"
#include "engine/objectimp.h"

namespace KJS {

/**
 * A value that is an object, or a null object. The operations are those of its ObjectImp; on a null
 * object they must not be called.
 */
class TORVIXKJS_EXPORT Object : public Value
{
public:
    Object() = default;
    /** A null pointer gives the null object. */
    Object(ObjectImp* imp) : Value(imp) {}

    /** The object that the value is; a null object for anything else. No conversion. */
    static Object dynamicCast(const Value& value);

    /**
     * The implementation; null for a null object. For an object made by script it is the engine's
     * own, the same pointer as long as anything holds it.
     */
    ObjectImp* imp() const { return static_cast<ObjectImp*>(Value::imp()); }

    const ClassInfo* classInfo() const { return imp()->classInfo(); }
    /** False also for a null object. */
    bool inherits(const ClassInfo* info) const { return !isNull() && imp()->inherits(info); }
    UString className() const { return imp()->className(); }

    Object prototype() const { return imp()->prototype(); }
    void setPrototype(const Object& prototype) { imp()->setPrototype(prototype); }

    Value get(ExecState* exec, const Identifier& name) const { return imp()->get(exec, name); }
    Value get(ExecState* exec, unsigned index) const { return imp()->getIndex(exec, index); }
    void put(ExecState* exec, const Identifier& name, const Value& value, int attributes = None)
    {
        imp()->put(exec, name, value, attributes);
    }
    void put(ExecState* exec, unsigned index, const Value& value, int attributes = None);
    void putDirect(const Identifier& name, const Value& value, int attributes = None)
    {
        imp()->putDirect(name, value, attributes);
    }
    void defineGetter(ExecState* exec, const Identifier& name, const Object& getter)
    {
        imp()->defineGetter(exec, name, getter);
    }
    void defineSetter(ExecState* exec, const Identifier& name, const Object& setter)
    {
        imp()->defineSetter(exec, name, setter);
    }
    bool hasProperty(ExecState* exec, const Identifier& name) const { return imp()->hasProperty(exec, name); }
    bool deleteProperty(ExecState* exec, const Identifier& name) { return imp()->deleteProperty(exec, name); }
    /** See ObjectImp::propList; include "engine/reference.h" for the result. */
    ReferenceList propList(ExecState* exec, bool recursive = true) const;

    bool implementsCall() const { return imp()->implementsCall(); }
    /**
     * Calls it. An exception is left in the exec state, and the result is then Undefined. A null
     * `thisObject` is undefined for the function (the global object for sloppy code).
     */
    Value call(ExecState* exec, Object& thisObject, const List& arguments)
    {
        return imp()->call(exec, thisObject, arguments);
    }
    bool implementsConstruct() const { return imp()->implementsConstruct(); }
    /** A null object after an exception. */
    Object construct(ExecState* exec, const List& arguments) { return imp()->construct(exec, arguments); }

private:
    friend class ValueAccess;
    explicit Object(const Value& value) : Value(value) {}
};

} // namespace KJS
