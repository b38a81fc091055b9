#include "interpreter/js/native/jsnativetype.h"

#include "interpreter/js/context/jsscriptcontext.h"
#include "interpreter/js/kjs/ourkjsinterpreter.h"
#include "interpreter/js/native/jsnativefunction.h"
#include "interpreter/js/scriptobject/jsutils.h"

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

void initNativeTypes(OurKJSInterpreter* interpreter)
{
    const KJS::Object functionPrototype = interpreter->builtinFunctionPrototype();
    auto* prototype = new JsNativeFunctionPrototype(functionPrototype);
    prototype->putDirect("toString", new JsNativeFunctionProtoMethodImp(functionPrototype), KJS::ReadOnly);
    interpreter->setNativeFunctionPrototype(prototype);
}

void addMembers(OurKJSInterpreter* interpreter, JsNativeTypePrototypeImp* prototype)
{
    const auto& methods = prototype->description().methods();
    for (auto it = methods.cbegin(); it != methods.cend(); ++it)
        prototype->putDirect(
            it.key(),
            new JsNativeObjectMethodImp(interpreter, signatureOf(it.key(), *it), it->function, prototype),
            KJS::ReadOnly);
    KJS::ExecState* exec = interpreter->globalExec();
    const auto& properties = prototype->description().properties();
    for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
        const auto accessor = [&](NativeScriptMethod function) {
            return new JsNativeObjectMethodImp(interpreter, it.key(), function, prototype);
        };
        if (it->getter)
            prototype->defineGetter(exec, it.key(), accessor(it->getter));
        if (it->setter)
            prototype->defineSetter(exec, it.key(), accessor(it->setter));
    }
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
    // Of a subtype, too: its wrapper would have the prototype of this type.
    if (object->type() != m_key)
        return fail("Constructor returned an incompatible object type");
    return new JsNativeObjectImp(m_prototype, object);
}

KJS::Value JsNativeTypeImp::call(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return construct(exec, args);
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
