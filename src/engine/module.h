#pragma once

#include "engine/object.h"

namespace KJS {

/** The C++ side of a module's namespace object: its properties are the module's exports. */
class TORVIXKJS_EXPORT ModuleObject : public ObjectImp
{
public:
    static const ClassInfo info;

    /**
     * Imports a module as `import * as x from "name"` does: found by Interpreter::searchModule, read
     * by loadModuleCode, evaluated if it has not been. A null object after an exception.
     */
    static Object import(ExecState* exec, const UString& name);

    const ClassInfo* classInfo() const override { return &info; }

private:
    friend class ObjectAccess;
    ModuleObject();
};

} // namespace KJS
