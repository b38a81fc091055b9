#include "engine/function.h"

#include "engine/interpreter.h"
#include "engine/jsc/objectaccess.h"
#include "engine/jsc/runtime.h"
#include "engine/module.h"

namespace KJS {

const ClassInfo InternalFunctionImp::info = {"Function", nullptr};
const ClassInfo DeclaredFunctionImp::info = {"Function", &InternalFunctionImp::info};
const ClassInfo ModuleObject::info = {"Module", nullptr};

InternalFunctionImp::InternalFunctionImp(ExecState* exec)
    : ObjectImp(exec->interpreter()->builtinFunctionPrototype())
{
}

InternalFunctionImp::InternalFunctionImp(const Object& prototype, const Identifier& name)
    : ObjectImp(prototype)
{
    static const Identifier nameName("name");
    if (!name.isNull())
        putDirect(nameName, String(name.ustring()), ReadOnly | DontEnum);
}

Value InternalFunctionImp::call(ExecState*, Object&, const List&)
{
    return Undefined();
}

// Functions of script's -------------------------------------------------------------------------

DeclaredFunctionImp::DeclaredFunctionImp() : InternalFunctionImp(ScriptObjectTag()) {}

const ClassInfo* DeclaredFunctionImp::classInfo() const
{
    return sourceId() >= 0 ? &info : &InternalFunctionImp::info;
}

UString DeclaredFunctionImp::className() const
{
    return UString("Function");
}

bool DeclaredFunctionImp::implementsConstruct() const
{
    return ObjectImp::implementsConstruct();
}

Value DeclaredFunctionImp::call(ExecState* exec, Object& thisObject, const List& arguments)
{
    // Past the base class, whose functions are native. NOLINTNEXTLINE(bugprone-parent-virtual-call)
    return ObjectImp::call(exec, thisObject, arguments);
}

Object DeclaredFunctionImp::construct(ExecState* exec, const List& arguments)
{
    return ObjectImp::construct(exec, arguments);
}

namespace {

const Rewriting::FunctionInfo* declarationOf(const ObjectImp* function)
{
    Runtime* const runtime = ObjectAccess::runtime(function);
    return runtime ? runtime->declarationOf(ObjectAccess::reference(function)) : nullptr;
}

} // namespace

int DeclaredFunctionImp::declarationLine() const
{
    const Rewriting::FunctionInfo* const declaration = declarationOf(this);
    return declaration ? declaration->line : -1;
}

int DeclaredFunctionImp::sourceId() const
{
    const Rewriting::FunctionInfo* const declaration = declarationOf(this);
    return declaration ? declaration->sourceId : -1;
}

UString DeclaredFunctionImp::functionName() const
{
    const Rewriting::FunctionInfo* const declaration = declarationOf(this);
    return UString(declaration ? declaration->name : QString());
}

// Views -----------------------------------------------------------------------------------------

namespace {

/** An object of script's that is neither a function nor a module. */
class ScriptObjectImp : public ObjectImp
{
public:
    ScriptObjectImp() : ObjectImp(ScriptObjectTag()) {}
};

} // namespace

ObjectImp* ObjectAccess::makeView(Runtime* runtime, JSObjectRef reference, bool isFunction)
{
    ObjectImp* const view =
        isFunction ? static_cast<ObjectImp*>(new DeclaredFunctionImp) : new ScriptObjectImp;
    view->m_runtime = runtime;
    view->m_reference = reference;
    return view;
}

ObjectImp* ObjectAccess::makeModuleView(Runtime* runtime, JSObjectRef reference)
{
    auto* const view = new ModuleObject;
    view->m_runtime = runtime;
    view->m_reference = reference;
    return view;
}

ModuleObject::ModuleObject() : ObjectImp(ScriptObjectTag()) {}

} // namespace KJS
