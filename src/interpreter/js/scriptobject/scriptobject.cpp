#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

void putConstant(KJS::ObjectImp* object, const char* name, const KJS::Value& value, int attributes)
{
    object->putDirect(name, value, attributes);
}

void putConstants(KJS::ObjectImp* object, const JsConstantRow* rows, int attributes)
{
    for (const JsConstantRow* row = rows; row->name; ++row)
        putConstant(object, row->name, KJS::Number(row->value), attributes);
}

JsConstructorImp::JsConstructorImp(KJS::ExecState*, KJS::ObjectImp* prototype) : ObjectImp(prototype)
{
    putDirect("prototype", prototype, KJS::ReadOnly | KJS::DontEnum | KJS::DontDelete);
}

KJS::Object JsConstructorImp::instancePrototype(KJS::ExecState* exec) const
{
    return KJS::Object::dynamicCast(get(exec, "prototype"));
}

} // namespace Torvix
