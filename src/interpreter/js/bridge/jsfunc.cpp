#include "interpreter/js/bridge/jsfunc.h"

#include "engine/interpreter.h"
#include "interpreter/js/bridge/jsconvert.h"
#include "interpreter/js/bridge/jsobject.h"
#include "interpreter/js/bridge/overload.h"
#include "interpreter/js/bridge/remoteobjectmodelholder.h"
#include "interpreter/js/kjs/ourkjsinterpreter.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "objectmodel/inspector.h"

#include <QtDebug>

using namespace Torvix;

namespace {

void logDeprecationWarning(const Method& method, const QString& signature)
{
    qWarning("%s%s is deprecated: %s", qUtf8Printable(method.name()), qUtf8Printable(signature),
             qUtf8Printable(method.deprecation()));
}

QString argumentNames(const Signature& signature)
{
    QStringList names;
    for (const Argument& argument : signature.arguments())
        names += argument.name();
    return names.join(QLatin1String(", "));
}

KJS::Value callOverload(KJS::ExecState* exec, const Class* cls, const QVector<const Method*>& methods,
                        const SharedPtr<Object>& target, const KJS::List& args)
{
    std::vector<const Signature*> signatures;
    std::vector<const Class*> classes;
    signatures.reserve(std::size_t(methods.size()));
    classes.reserve(std::size_t(methods.size()));
    for (const Method* method : methods) {
        signatures.push_back(&method->signature());
        classes.push_back(method->declaringClass());
    }
    const QString name = methods.isEmpty() ? QString() : methods.first()->name();
    ObjectList arguments;
    const int index = findMatch(exec, args, cls, signatures, classes, name, &arguments);
    if (index < 0)
        return exec->exception();
    const Method* method = methods[index];
    if (!method->deprecation().isEmpty())
        logDeprecationWarning(*method, QStringLiteral("(%1)").arg(argumentNames(method->signature())));
    const Result<SharedPtr<Object>> result = method->invoke(target, arguments);
    if (!result) {
        const KJS::Context context = exec->context();
        const int line = context.isNull() ? -1 : context.curStmtFirstLine();
        const QString message =
            withReason(QLatin1String("Error in ") + name + QLatin1String("() invocation"), result);
        exec->setException(KJS::Error::create(exec, KJS::EvalError, message, line, -1));
        return KJS::Undefined();
    }
    return jsValueOf(exec, *result);
}

} // namespace

JsFunc::JsFunc(KJS::ExecState* exec, const Class* cls, const QString& name)
    : InternalFunctionImp(exec)
    , m_applicationId(currentRunnerAppId())
    , m_classId(cls->id())
    , m_name(name)
{
}

KJS::Value JsFunc::call(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    if (m_applicationId != currentRunnerAppId())
        return generalError(
            exec, QStringLiteral("Cannot call function or method, current application context changed."));
    const Class* cls = Inspector::self()->classById(m_classId);
    if (!cls)
        return generalError(exec, QStringLiteral("Cannot call function or method, class not found."));
    const SharedPtr<Object> target = jsUnWrap(exec, thisObj);
    const OurKJSInterpreter::ExecStateScope state(exec);
    const RemoteObjectModelHolder access(Interpreter::self()->runnerInterface());
    return callOverload(exec, cls, cls->methods(m_name), target, args);
}

JsObjectProtoFunc::JsObjectProtoFunc(SharedPtr<Object> object, int type, int length)
    : m_object(std::move(object))
    , m_type(type)
{
    putDirect("length", KJS::Number(length), KJS::ReadOnly | KJS::DontEnum | KJS::DontDelete);
}

JsObjectProtoFunc::~JsObjectProtoFunc() = default;

KJS::Value JsObjectProtoFunc::call(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    switch (m_type) {
    case ToString:
        return jsToString(exec, m_object);
    case ValueOf:
        return jsValueOf(exec, m_object);
    case Equality: {
        // The engine gives both operands as arguments; whose member this is does not matter.
        Object* a = jsUnWrap(exec, args[0]);
        Object* b = jsUnWrap(exec, args[1]);
        return KJS::Boolean(a && b && a->compare(b));
    }
    default:
        return KJS::Undefined();
    }
}
