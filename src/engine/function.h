#pragma once

#include "engine/object.h"

namespace KJS {

/** The base of functions that are implemented in C++: implementsCall() is true. */
class TORVIXKJS_EXPORT InternalFunctionImp : public ObjectImp
{
public:
    static const ClassInfo info;

    /** No prototype. */
    InternalFunctionImp() = default;
    /** With the built-in function prototype, so that `call`, `apply` and `bind` are there. */
    explicit InternalFunctionImp(ExecState* exec);
    /** With that prototype and, when it is not null, that "name" (ReadOnly, DontEnum). */
    explicit InternalFunctionImp(const Object& prototype, const Identifier& name = Identifier());

    const ClassInfo* classInfo() const override { return &info; }
    bool implementsCall() const override { return true; }
    /** To be overridden; the base answers Undefined. */
    Value call(ExecState* exec, Object& thisObject, const List& arguments) override;

protected:
    explicit InternalFunctionImp(ScriptObjectTag tag) : ObjectImp(tag) {}
};

/**
 * The C++ side of a function object that script made. Its class info is `info` when the function was
 * declared by a source text that this interpreter evaluated, and InternalFunctionImp's for the
 * engine's own functions and bound ones.
 */
class TORVIXKJS_EXPORT DeclaredFunctionImp : public InternalFunctionImp
{
public:
    static const ClassInfo info;

    const ClassInfo* classInfo() const override;
    UString className() const override;
    bool implementsConstruct() const override;
    Value call(ExecState* exec, Object& thisObject, const List& arguments) override;
    Object construct(ExecState* exec, const List& arguments) override;

    /** First line of the declaration, from 1; -1 when not declared by a source text. */
    int declarationLine() const;
    /** -1 when not declared by a source text. */
    int sourceId() const;
    /** As declared; empty for an anonymous function. */
    UString functionName() const;

private:
    friend class ObjectAccess;
    DeclaredFunctionImp();
};

} // namespace KJS
