#pragma once

#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

/** `object`: questions about objects of the application, given as wrapper or, where told, by name. */
class JsOurObjectImp : public JsFixedObjectImp
{
public:
    explicit JsOurObjectImp(KJS::ExecState* exec);
};

/** `objectMap`: symbolic names for the real names of objects. */
class JsObjectMapImp : public JsFixedObjectImp
{
public:
    explicit JsObjectMapImp(KJS::ExecState* exec);
};

// Global functions that find objects.
KJS::Value jsFindObject(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsFindAllObjects(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsWaitForObject(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsWaitForObjectExists(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsWaitForObjectItem(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsObjectName(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
/** Acts on the object itself, whose wrapper it returns. */
KJS::Value jsCast(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);

} // namespace Torvix
