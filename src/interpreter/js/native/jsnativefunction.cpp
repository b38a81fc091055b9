#include "interpreter/js/native/jsnativefunction.h"

#include "interpreter/base/nativescriptobject.h"
#include "interpreter/js/bridge/jsnativeobject.h"
#include "interpreter/js/context/jsscriptcontext.h"
#include "interpreter/js/kjs/ourkjsinterpreter.h"
#include "interpreter/js/scriptobject/jsutils.h"

namespace Torvix {

const KJS::ClassInfo JsNativeFunctionImp::info = {"Function", &KJS::InternalFunctionImp::info};
const KJS::ClassInfo JsNativeObjectMethodImp::info = {"Function", &KJS::InternalFunctionImp::info};

JsNativeSignature::JsNativeSignature(const QString& functionName, const QStringList& mandatory,
                                     const QStringList& optional, const QString& help)
    : name(functionName)
    , mandatoryArguments(mandatory)
    , optionalArguments(optional)
    , helpLines(help.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
{
}

QString JsNativeSignature::toString() const
{
    QString text;
    if (!helpLines.isEmpty())
        text =
            QStringLiteral("\n/**\n * ") + helpLines.join(QStringLiteral("\n * ")) + QStringLiteral("\n**/");
    text += QStringLiteral("\nfunction %1(").arg(name) + mandatoryArguments.join(QLatin1Char(','));
    bool isFirst = mandatoryArguments.isEmpty();
    for (const QString& argument : optionalArguments) {
        text += QLatin1String(isFirst ? "[" : "[,") + argument + QLatin1Char(']');
        isFirst = false;
    }
    return text + QStringLiteral(") {\n    [native code]\n}\n");
}

JsNativeFunctionImp::JsNativeFunctionImp(OurKJSInterpreter* interpreter, const JsNativeSignature& signature,
                                         NativeScriptFunction function)
    : InternalFunctionImp(interpreter->nativeFunctionPrototype(), signature.name)
    , m_signature(signature)
    , m_function(function)
{
}

KJS::Value JsNativeFunctionImp::call(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    JSScriptContext context;
    context.setJSArguments(exec, args);
    return context.execute(m_function) ? context.result() : context.raiseJSException();
}

JsNativeObjectMethodImp::JsNativeObjectMethodImp(OurKJSInterpreter* interpreter,
                                                 const JsNativeSignature& signature,
                                                 NativeScriptMethod function, JsNativeTypePrototypeImp* owner)
    : InternalFunctionImp(interpreter->nativeFunctionPrototype(), signature.name)
    , m_signature(signature)
    , m_function(function)
    , m_owner(owner)
{
}

KJS::Value JsNativeObjectMethodImp::call(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    auto* wrapper =
        thisObj.inherits(m_owner->instanceInfo()) ? dynamic_cast<JsNativeObjectImp*>(thisObj.imp()) : nullptr;
    if (!wrapper)
        return generalError(exec, QStringLiteral("Wrong this object, expected %1").arg(m_owner->typeName()));
    JSScriptContext context;
    context.setJSArguments(exec, args);
    return context.execute(m_function, wrapper->object()) ? context.result() : context.raiseJSException();
}

JsNativeFunctionPrototype::JsNativeFunctionPrototype(const KJS::Object& functionPrototype)
    : InternalFunctionImp(functionPrototype)
{
}

JsNativeFunctionProtoMethodImp::JsNativeFunctionProtoMethodImp(const KJS::Object& functionPrototype)
    : InternalFunctionImp(functionPrototype, "toString")
{
}

KJS::Value JsNativeFunctionProtoMethodImp::call(KJS::ExecState* exec, KJS::Object& thisObj,
                                                const KJS::List& args)
{
    if (const auto* function = dynamic_cast<JsNativeFunctionImp*>(thisObj.imp()))
        return KJS::String(function->signature().toString());
    if (const auto* method = dynamic_cast<JsNativeObjectMethodImp*>(thisObj.imp()))
        return KJS::String(method->signature().toString());
    for (KJS::Object next = thisObj.prototype(); !next.isNull(); next = next.prototype()) {
        KJS::Object toString = KJS::Object::dynamicCast(next.get(exec, "toString"));
        if (toString.imp() == this)
            continue; // it may be found on the way again
        if (!toString.isNull() && toString.implementsCall())
            return toString.call(exec, thisObj, args);
        break;
    }
    return KJS::String("[Object]");
}

} // namespace Torvix
