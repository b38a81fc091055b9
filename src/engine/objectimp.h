#pragma once

#include "engine/classinfo.h"
#include "engine/identifier.h"
#include "engine/value.h"

#include <memory>

namespace KJS {

class List;
class ReferenceList;

/** Attributes of a property, to be or-ed. */
enum Attribute {
    None = 0,
    ReadOnly = 2,   ///< an assignment is dropped (strict code: a TypeError)
    DontEnum = 4,   ///< not enumerated
    DontDelete = 8, ///< `delete` answers false
};

/**
 * The implementation of a script object: derive from it to give scripts an object of your own. The
 * base is an ordinary object with named properties; every virtual operation that a class overrides is
 * what scripts meet, and what the base class answers otherwise is the ordinary thing.
 *
 *     class Counter : public KJS::ObjectImp {
 *     public:
 *         Counter(KJS::ExecState* exec) : ObjectImp(exec->interpreter()->builtinObjectPrototype()) {}
 *         const KJS::ClassInfo* classInfo() const override { return &info; }
 *         KJS::Value get(KJS::ExecState* exec, const KJS::Identifier& name) const override {
 *             return name == "count" ? KJS::Number(m_count) : ObjectImp::get(exec, name);
 *         }
 *         ...
 *     };
 *     global.put(exec, "counter", new Counter(exec));
 *
 * - **Life.** Made with `new`, owned by the collector from then on, never deleted by hand. It lives
 *   while a script or a Value can reach it. A new object that nothing holds yet lives until the
 *   native call that made it returns to script; outside native calls until the next outermost
 *   evaluate or call has ended, or Collector::collect(): put it into an Object to keep it longer. The
 *   destructor runs at a safe point, not amid a collection: it may do what it likes except run script.
 * - **Constructors** may put properties (also without an exec state, by putDirect) before there is
 *   any interpreter. An object becomes one of a script engine's at its first use by script; which
 *   operations its class overrides, and implementsCall and implementsConstruct, are asked then, once.
 *   It belongs to that interpreter; another one refuses it with a TypeError.
 * - **Calling the base** from an override (`ObjectImp::get(...)`) is the ordinary look-up, own
 *   properties and then the prototypes; it does not call the override again.
 * - **Not there.** `get` answers Undefined for a name it does not know. Scripts see a property as
 *   there (`in`, enumeration) when hasProperty says so, or else when `get` has a defined value. Data
 *   that only `get` knows is not enumerated unless propList lists it.
 * - **Errors** go to the exec state (`exec->setException`); a C++ exception passes through script to
 *   the C++ code that called it.
 * - Symbols never reach these operations: script keeps symbol-keyed properties on its own.
 */
class TORVIXKJS_EXPORT ObjectImp : public ValueImp
{
public:
    /** No prototype: not even `toString` is there. */
    ObjectImp();
    /** A null object means no prototype. */
    explicit ObjectImp(const Object& prototype);
    explicit ObjectImp(ObjectImp* prototype);

    Type type() const final { return ObjectType; }

    /** The class for `inherits`; null (the default) when the class has no record. */
    virtual const ClassInfo* classInfo() const;
    bool inherits(const ClassInfo* info) const;
    /** By default the class info's name, else the engine's own name: "Object", "Array", "Date", ... */
    virtual UString className() const;

    /** The value, or Undefined. */
    virtual Value get(ExecState* exec, const Identifier& name) const;
    /**
     * Assigns: an own property, or a setter found on the way. Attributes other than 0 are used when
     * the property is new.
     */
    virtual void put(ExecState* exec, const Identifier& name, const Value& value, int attributes = None);
    /** Own or inherited. */
    virtual bool hasProperty(ExecState* exec, const Identifier& name) const;
    /** True when it is gone, or was never there. */
    virtual bool deleteProperty(ExecState* exec, const Identifier& name);
    /**
     * The enumerable properties with string names. `recursive` includes the prototypes'. An override
     * that serves scripts adds to the base's list; scripts are told of what it adds.
     */
    virtual ReferenceList propList(ExecState* exec, bool recursive = true);

    /** As a primitive: `hint` is NumberType, StringType or unspecified. By default valueOf, toString. */
    virtual Value defaultValue(ExecState* exec, Type hint) const;

    /** Whether it is a function for script; `typeof` is then "function". Asked once. */
    virtual bool implementsCall() const;
    /** `thisObject` is the receiver; the global object where script gives none. */
    virtual Value call(ExecState* exec, Object& thisObject, const List& arguments);
    /** Whether `new` works on it. Asked once. */
    virtual bool implementsConstruct() const;
    /** A null object without an exception is a TypeError for script. */
    virtual Object construct(ExecState* exec, const List& arguments);
    /** For `value instanceof this`; by default where construct is implemented. Asked once. */
    virtual bool implementsHasInstance() const;
    /** By default: the member "prototype" is in the value's chain of prototypes. */
    virtual bool hasInstance(ExecState* exec, const Value& value);

    void mark() override;
    bool marked() const override;

    /** A null object when there is none. */
    Object prototype() const;
    /** A null object takes the prototype away. */
    void setPrototype(const Object& prototype);

    /** Defines an own property, whatever `put` is overridden to do, and whatever was there. */
    void putDirect(const Identifier& name, const Value& value, int attributes = None);
    /** For constructors: no properties but those that it has by then, and by its operations. Script that
     *  defines another one gets a TypeError; what it assigns still reaches `put`. */
    void preventExtensions();
    /** Defines one half of an own accessor property (enumerable, deletable); the other half stays. */
    void defineGetter(ExecState* exec, const Identifier& name, const Object& getter);
    void defineSetter(ExecState* exec, const Identifier& name, const Object& setter);

    /** Elements, by index: get and put with the index as name, quicker on script arrays. */
    Value getIndex(ExecState* exec, unsigned index) const;
    void putIndex(ExecState* exec, unsigned index, const Value& value);

protected:
    ~ObjectImp() override;
    void acquired() override;
    void released() override;

    /** For the engine's views of objects that script made. */
    struct ScriptObjectTag
    {
    };
    explicit ObjectImp(ScriptObjectTag);

private:
    friend class ObjectAccess;
    friend class Runtime;
    struct Unborn;
    class Runtime* m_runtime = nullptr; // null before birth and after the interpreter's end
    void* m_reference = nullptr;        // the engine's object; null before birth
    std::unique_ptr<Unborn> m_unborn;   // what was put before birth
    int m_rootIndex = -1;
    unsigned m_traits = 0; // which operations are overridden; known from birth
    bool m_isHost = true;  // a C++ object for script; false: script's object for C++
    bool m_isYoung = false;
};

} // namespace KJS
