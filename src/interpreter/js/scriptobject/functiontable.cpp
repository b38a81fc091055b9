#include "interpreter/js/scriptobject/functiontable.h"

namespace Torvix {

void putFunctions(KJS::ObjectImp* object, const JsFunctionRow* rows)
{
    for (const JsFunctionRow* row = rows; row->name; ++row)
        object->putDirect(row->name, new ExtraFunctionImp(row->fn, row->length), KJS::None);
}

void putConstant(KJS::ObjectImp* object, const char* name, const KJS::Value& value)
{
    object->putDirect(name, value, KJS::ReadOnly | KJS::DontDelete);
}

} // namespace Torvix
