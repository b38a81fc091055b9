#pragma once

#include "engine/interpreter.h"
#include "interpreter/js/scriptobject/extrafunction.h"
#include "interpreter/js/scriptobject/jsutils.h"

#include <vector>

/**
 * What a family of script objects is made of. A family is up to three classes, two tables and its
 * functions; what it does not need it leaves out:
 *
 * - the **instance**, `JsXxxInstanceImp`, which owns the C++ object that it stands for and has the class
 *   info by which unwrapThis() recognises it; its destructor runs when the collector frees it;
 * - the **prototype**, `JsXxxPrototypeImp`: an instance without a C++ object, which has the functions;
 * - the **global**, `JsXxxImp`: a constructor (JsConstructorImp) or an object that groups functions
 *   (JsFixedObjectImp); its row in bindings.cpp puts it into the global scope.
 *
 * A family `Counter` with `new Counter(5)`, `counter.add(2)` and the property `counter.value`:
 *
 *     class JsCounterInstanceImp : public WithProperties<JsCounterInstanceImp>
 *     {
 *     public:
 *         static const KJS::ClassInfo info;
 *         static constexpr const char* invalidObject = "Invalid Counter object";
 *         static const JsPropertyRow<JsCounterInstanceImp> properties[];
 *
 *         JsCounterInstanceImp(const KJS::Object& prototype, std::unique_ptr<Counter> counter);
 *         const KJS::ClassInfo* classInfo() const override { return &info; }
 *         bool isValid() const { return bool(counter); }
 *
 *         std::unique_ptr<Counter> counter; // null in the prototype
 *     };
 *
 *     const KJS::ClassInfo JsCounterInstanceImp::info = {"Counter"};
 *     const JsPropertyRow<JsCounterInstanceImp> JsCounterInstanceImp::properties[] = {
 *         {"value", readValue, writeValue}, // the prototype can be asked, too
 *         {nullptr},
 *     };
 *
 *     KJS::Value jsCounterAdd(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
 *     {
 *         if (!hasArguments(exec, args, 1, "add() requires a number"))
 *             return exec->exception();
 *         auto* self = unwrapThis<JsCounterInstanceImp>(exec, thisObj);
 *         if (!self)
 *             return exec->exception();
 *         ...
 *     }
 *
 *     const JsFunctionRow methods[] = {
 *         {"add", jsCounterAdd, 1},
 *         {nullptr, nullptr, 0},
 *     };
 *
 *     class JsCounterPrototypeImp : public JsCounterInstanceImp
 *     {
 *     public:
 *         explicit JsCounterPrototypeImp(KJS::ExecState* exec)
 *             : JsCounterInstanceImp(exec->interpreter()->builtinObjectPrototype(), nullptr)
 *         {
 *             putFunctions(this, methods);
 *         }
 *     };
 *
 *     JsCounterImp::JsCounterImp(KJS::ExecState* exec)
 *         : JsConstructorImp(exec, new JsCounterPrototypeImp(exec))
 *     {
 *     }
 *
 *     KJS::Object JsCounterImp::construct(KJS::ExecState* exec, const KJS::List& args)
 *     {
 *         return new JsCounterInstanceImp(instancePrototype(exec), std::make_unique<Counter>(...));
 *     }
 *
 * What a function returns on failure is the error that it raised: `return typeError(exec, "...")`.
 */
namespace Torvix {

/** A row of a table of numbers; a null name ends the table. */
struct JsConstantRow
{
    const char* name;
    int value;
};

/** Puts a constant, which by default scripts can neither change nor delete. */
void putConstant(KJS::ObjectImp* object, const char* name, const KJS::Value& value,
                 int attributes = KJS::ReadOnly | KJS::DontDelete);
void putConstants(KJS::ObjectImp* object, const JsConstantRow* rows,
                  int attributes = KJS::ReadOnly | KJS::DontDelete);

/**
 * A row of a table of properties that are computed on each read; a null name ends the table. Without
 * `read` or `write` the property is read or written like any other of the object, and so it is when
 * `read` answers the null value (not the script's null). `write` raises an exception where it refuses.
 */
template <class Imp>
struct JsPropertyRow
{
    const char* name;
    KJS::Value (*read)(KJS::ExecState* exec, const Imp& self) = nullptr;
    void (*write)(KJS::ExecState* exec, Imp& self, const KJS::Value& value) = nullptr;
};

/** Reads and writes the properties in the table `Imp::properties`; `Base` has all others. */
template <class Imp, class Base = KJS::ObjectImp>
class WithProperties : public Base
{
public:
    using Base::Base;

    KJS::Value get(KJS::ExecState* exec, const KJS::Identifier& name) const override
    {
        const JsPropertyRow<Imp>* row = rowOf(name);
        const KJS::Value value =
            row && row->read ? row->read(exec, static_cast<const Imp&>(*this)) : KJS::Value();
        return value.isNull() ? Base::get(exec, name) : value;
    }

    void put(KJS::ExecState* exec, const KJS::Identifier& name, const KJS::Value& value,
             int attributes = KJS::None) override
    {
        const JsPropertyRow<Imp>* row = rowOf(name);
        if (row && row->write)
            row->write(exec, static_cast<Imp&>(*this), value);
        else
            Base::put(exec, name, value, attributes);
    }

private:
    static const JsPropertyRow<Imp>* rowOf(const KJS::Identifier& name)
    {
        static const std::vector<KJS::Identifier> names = [] {
            std::vector<KJS::Identifier> all;
            for (const JsPropertyRow<Imp>* row = Imp::properties; row->name; ++row)
                all.emplace_back(row->name);
            return all;
        }();
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (names[i] == name)
                return &Imp::properties[i];
        }
        return nullptr;
    }
};

/** What a script assigns to this object is dropped without an error. */
class JsFixedObjectImp : public KJS::ObjectImp
{
public:
    using ObjectImp::ObjectImp;

    void put(KJS::ExecState*, const KJS::Identifier&, const KJS::Value&, int = KJS::None) override {}
};

/**
 * A constructor for `new`; it cannot be called without. The prototype of its instances is its own as
 * well, so that what the prototype has is found on the constructor, too.
 */
class JsConstructorImp : public KJS::ObjectImp
{
public:
    JsConstructorImp(KJS::ExecState* exec, KJS::ObjectImp* prototype);

    bool implementsConstruct() const override { return true; }
    KJS::Object construct(KJS::ExecState* exec, const KJS::List& args) override = 0;

protected:
    KJS::Object instancePrototype(KJS::ExecState* exec) const;
};

/** The value as an instance of a class with `info`; null for any other value. */
template <class Imp>
Imp* unwrap(const KJS::Value& value)
{
    const KJS::Object object = KJS::Object::dynamicCast(value);
    return object.inherits(&Imp::info) ? static_cast<Imp*>(object.imp()) : nullptr;
}

/** The same for the object that a function is called on; also null when the instance is not valid, as
 *  a prototype without a C++ object. When it is null, the exception is set. */
template <class Imp>
Imp* unwrapThis(KJS::ExecState* exec, const KJS::Value& thisObj, const char* message = Imp::invalidObject)
{
    Imp* self = unwrap<Imp>(thisObj);
    if (self && self->isValid())
        return self;
    generalError(exec, message);
    return nullptr;
}

/** A row of the table of global objects; a null name ends the table. */
struct JsGlobalRow
{
    const char* name;
    KJS::ObjectImp* (*make)(KJS::ExecState* exec);
};

template <class Imp>
KJS::ObjectImp* makeGlobal(KJS::ExecState* exec)
{
    return new Imp(exec);
}

} // namespace Torvix
