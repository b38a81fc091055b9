#include "interpreter/js/bridge/jsnativeobject.h"

#include "interpreter/js/bridge/jsnativefunction.h"
#include "interpreter/js/context/jsscriptcontext.h"
#include "interpreter/js/context/jsutils.h"
#include "interpreter/js/ourkjsinterpreter.h"

namespace Torvix {

namespace {

template <class Entry>
JsNativeSignature signatureOf(const QString& name, const Entry& method)
{
    return JsNativeSignature(name, method.mandatoryArguments, method.optionalArguments, method.help);
}

void addFunctions(OurKJSInterpreter* interpreter, KJS::ObjectImp* object,
                  const QMap<QString, NativeScriptType::StaticMethod>& functions)
{
    for (auto it = functions.cbegin(); it != functions.cend(); ++it)
        object->putDirect(it.key(),
                          new JsNativeFunctionImp(interpreter, signatureOf(it.key(), *it), it->function),
                          KJS::ReadOnly);
}

void addAccessors(OurKJSInterpreter* interpreter, KJS::ObjectImp* object,
                  const QMap<QString, NativeScriptType::StaticProperty>& properties)
{
    KJS::ExecState* exec = interpreter->globalExec();
    for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
        if (it->getter)
            object->defineGetter(exec, it.key(), new JsNativeFunctionImp(interpreter, it.key(), it->getter));
        if (it->setter)
            object->defineSetter(exec, it.key(), new JsNativeFunctionImp(interpreter, it.key(), it->setter));
    }
}

} // namespace

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
    addMethods(interpreter);
    addProperties(interpreter);
}

void JsNativeTypePrototypeImp::addMethods(OurKJSInterpreter* interpreter)
{
    const auto& methods = m_type.methods();
    for (auto it = methods.cbegin(); it != methods.cend(); ++it)
        putDirect(it.key(),
                  new JsNativeObjectMethodImp(interpreter, signatureOf(it.key(), *it), it->function, this),
                  KJS::ReadOnly);
}

void JsNativeTypePrototypeImp::addProperties(OurKJSInterpreter* interpreter)
{
    KJS::ExecState* exec = interpreter->globalExec();
    const auto& properties = m_type.properties();
    for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
        const auto accessor = [&](NativeScriptMethod function) {
            return new JsNativeObjectMethodImp(interpreter, it.key(), function, this);
        };
        if (it->getter)
            defineGetter(exec, it.key(), accessor(it->getter));
        if (it->setter)
            defineSetter(exec, it.key(), accessor(it->setter));
    }
}

const KJS::ClassInfo* JsNativeTypePrototypeImp::getBaseTypeInfo(KJS::ExecState* exec, void* key)
{
    const JsNativeTypePrototypeImp* prototype = ourInterpreter(exec)->nativeType(key);
    return prototype ? prototype->instanceInfo() : nullptr;
}

KJS::Object JsNativeTypePrototypeImp::getBaseTypeProto(KJS::ExecState* exec, void* key)
{
    JsNativeTypePrototypeImp* prototype = ourInterpreter(exec)->nativeType(key);
    return prototype ? KJS::Object(prototype) : exec->interpreter()->builtinObjectPrototype();
}

JsNativeTypeImp::JsNativeTypeImp(OurKJSInterpreter* interpreter, const QString& name,
                                 JsNativeTypePrototypeImp* prototype, void* key)
    : InternalFunctionImp(interpreter->builtinFunctionPrototype(), name)
    , m_constructor(prototype->description().constructor())
    , m_prototype(prototype)
    , m_key(key)
{
    addFunctions(interpreter, this, prototype->description().staticMethods());
    addAccessors(interpreter, this, prototype->description().staticProperties());
}

KJS::Object JsNativeTypeImp::construct(KJS::ExecState* exec, const KJS::List& args)
{
    const auto fail = [exec](const char* message) {
        Torvix::raiseJSException(exec, KJS::GeneralError, QLatin1String(message));
        return KJS::Object();
    };
    if (!m_constructor)
        return fail("Type is not instantiable");
    JSScriptContext context;
    context.setJSArguments(exec, args);
    const SharedPtr<NativeScriptObject> object = context.execute(m_constructor);
    if (!context.errorMessage().isEmpty()) {
        context.raiseJSException();
        return KJS::Object();
    }
    if (!object)
        return fail("Constructor returned a null object");
    // Also an object of a subtype: intended.
    if (object->type() != m_key)
        return fail("Constructor returned an incompatible object type");
    return new JsNativeObjectImp(m_prototype, object);
}

KJS::Value JsNativeTypeImp::call(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return construct(exec, args);
}

JsNativeObjectImp::JsNativeObjectImp(JsNativeTypePrototypeImp* prototype,
                                     SharedPtr<NativeScriptObject> object)
    : ObjectImp(prototype)
    , m_object(object)
    , m_prototype(prototype)
{
}

JsNativeNamespaceImp::JsNativeNamespaceImp(OurKJSInterpreter* interpreter, const QString& name,
                                           const NativeScriptNamespace& nameSpace)
    : ObjectImp(interpreter->builtinObjectPrototype())
    , m_name(name)
{
    addFunctions(interpreter, this, nameSpace.functions());
    addAccessors(interpreter, this, nameSpace.properties());
}

} // namespace Torvix
