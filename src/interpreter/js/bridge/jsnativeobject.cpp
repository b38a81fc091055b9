#include "interpreter/js/bridge/jsnativeobject.h"

#include "interpreter/js/kjs/ourkjsinterpreter.h"

namespace Torvix {

JsNativeTypePrototypeImp::JsNativeTypePrototypeImp(OurKJSInterpreter* interpreter,
                                                   const NativeScriptType& type, void* key,
                                                   const QString& name)
    : ObjectImp(getBaseTypeProto(interpreter->globalExec(), type.super()))
    , m_type(type)
    , m_key(key)
    , m_name(name.toUtf8())
    , m_instanceInfo{m_name.constData(), getBaseTypeInfo(interpreter->globalExec(), type.super())}
    , m_prototypeInfo{m_name.constData(), nullptr}
{
}

JsNativeTypePrototypeImp* JsNativeTypePrototypeImp::of(KJS::ExecState* exec, void* key)
{
    return static_cast<JsNativeTypePrototypeImp*>(ourInterpreter(exec)->nativeType(key));
}

const KJS::ClassInfo* JsNativeTypePrototypeImp::getBaseTypeInfo(KJS::ExecState* exec, void* key)
{
    const JsNativeTypePrototypeImp* prototype = of(exec, key);
    return prototype ? prototype->instanceInfo() : nullptr;
}

KJS::Object JsNativeTypePrototypeImp::getBaseTypeProto(KJS::ExecState* exec, void* key)
{
    JsNativeTypePrototypeImp* prototype = of(exec, key);
    return prototype ? KJS::Object(prototype) : exec->interpreter()->builtinObjectPrototype();
}

JsNativeObjectImp::JsNativeObjectImp(JsNativeTypePrototypeImp* prototype,
                                     SharedPtr<NativeScriptObject> object)
    : ObjectImp(prototype)
    , m_object(object)
    , m_prototype(prototype)
{
}

} // namespace Torvix
