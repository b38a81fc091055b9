#include "interpreter/js/scriptobject/extrafunction.h"

#include "engine/interpreter.h"
#include "engine/list.h"
#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

void putFunctions(KJS::ObjectImp* object, const JsFunctionRow* rows)
{
    for (const JsFunctionRow* row = rows; row->name; ++row)
        object->putDirect(row->name, new ExtraFunctionImp(row->fn, row->length), KJS::None);
}

ExtraFunctionImp::ExtraFunctionImp(JsNativeCode fn, int length) : m_fn(fn)
{
    putDirect("length", KJS::Number(length), KJS::ReadOnly | KJS::DontEnum | KJS::DontDelete);
}

void ExtraFunctionImp::init(KJS::Interpreter* interpreter, KJS::Object* global,
                            const JsFunctionRow* functions, const JsGlobalRow* objects)
{
    putFunctions(global->imp(), functions);
    KJS::ExecState* exec = interpreter->globalExec();
    for (const JsGlobalRow* row = objects; row->name; ++row) {
        // The engine has some of these names itself: ours come after what stands before them here.
        global->deleteProperty(exec, row->name);
        global->putDirect(row->name, row->make(exec), KJS::None);
    }
}

KJS::Value ExtraFunctionImp::call(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    return m_fn(exec, thisObj, args);
}

} // namespace Torvix
