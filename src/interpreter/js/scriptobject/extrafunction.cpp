#include "interpreter/js/scriptobject/extrafunction.h"

#include "engine/list.h"

namespace Torvix {

ExtraFunctionImp::ExtraFunctionImp(JsNativeCode fn, int length) : m_fn(fn)
{
    putDirect("length", KJS::Number(length), KJS::ReadOnly | KJS::DontEnum | KJS::DontDelete);
}

KJS::Value ExtraFunctionImp::call(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    return m_fn(exec, thisObj, args);
}

} // namespace Torvix
