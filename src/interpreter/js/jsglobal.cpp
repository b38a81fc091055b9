#include "interpreter/js/jsglobal.h"

#include "engine/interpreter.h"
#include "engine/reference.h"
#include "interpreter/js/bridge/jsfunc.h"
#include "interpreter/js/bridge/jsobject.h"
#include "interpreter/js/context/jsscriptcontext.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "objectmodel/inspector.h"

namespace {

using namespace Torvix;

/** A function that language-neutral code added to the script context, called by its name. */
class JSGenericFunc : public KJS::ObjectImp
{
public:
    JSGenericFunc(JSScriptContext* context, const QString& name) : m_context(context), m_name(name) {}

    bool implementsCall() const override { return true; }
    KJS::Value call(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args) override;

private:
    JSScriptContext* m_context;
    QString m_name;
};

KJS::Value JSGenericFunc::call(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    m_context->setJSArguments(exec, args);
    const bool succeeded = m_context->tryGlobalCall(m_name);
    m_context->clearArguments();
    if (succeeded)
        return m_context->result().isNull() ? KJS::Undefined() : m_context->result();
    KJS::Object error = KJS::Error::create(exec, KJS::GeneralError, m_context->errorMessage(), -1, -1);
    exec->setException(error);
    const DebuggerFrame position = m_context->errorPosition();
    if (position.sourceId >= 0) {
        error.put(exec, "line", KJS::Number(position.line));
        error.put(exec, "sourceId", KJS::Number(position.sourceId));
    }
    return error;
}

JSScriptContext* currentContext()
{
    return static_cast<JSScriptContext*>(ScriptContext::current());
}

/** Scripts have an Array and an Object of their own, which serve for these classes. */
bool isContainerClass(const Class* cls)
{
    return cls == ArrayClass::registeredClass() || cls == MapClass::registeredClass();
}

bool isGlobal(const Class* cls)
{
    return !cls->nameSpace() || cls->nameSpace() == Inspector::self()->globalNamespace();
}

bool isGlobal(const Namespace* nameSpace)
{
    return nameSpace->parent() == Inspector::self()->globalNamespace();
}

} // namespace

namespace Torvix {

JsGlobalImp::JsGlobalImp() = default;

KJS::UString JsGlobalImp::className() const
{
    return "global";
}

bool JsGlobalImp::bindEnumerators(KJS::ExecState* exec) const
{
    const Class* global = Inspector::self()->globalClass();
    const ApplicationModel* application = global ? global->application() : nullptr;
    if (!global || (global == m_boundClass && application == m_boundApplication))
        return false;
    m_boundClass = global;
    m_boundApplication = application;
    auto* self = const_cast<JsGlobalImp*>(this);
    for (int index = 0; index < global->numEnumerators(); ++index) {
        const Enum* enumerator = global->enumerator(index);
        for (int key = 0; key < enumerator->count(); ++key) {
            if (!ObjectImp::hasProperty(exec, enumerator->key(key)))
                self->putDirect(enumerator->key(key), KJS::Number(enumerator->value(key)), KJS::DontEnum);
        }
    }
    return true;
}

KJS::Value JsGlobalImp::get(KJS::ExecState* exec, const KJS::Identifier& name) const
{
    const KJS::Value own = ObjectImp::get(exec, name);
    if (!own.isUndefined() || name == "undefined")
        return own;
    // A test's optional function of that name must not be searched for in the application.
    if (name == "cleanup")
        return KJS::Undefined();
    const QString& key = name.qstring();
    Inspector* inspector = Inspector::self();
    if (const Class* global = inspector->globalClass()) {
        int number = 0;
        if (bindEnumerators(exec) && enumeratorValue(global, key, &number))
            return KJS::Number(number);
        if (const Property* property = global->property(key)) {
            const Result<SharedPtr<Object>> value = property->get(nullptr);
            if (!value)
                return generalError(
                    exec, withReason(QStringLiteral("Error occurred when reading property"), value));
            // A wrapper also of a number or a text, unlike with properties of objects.
            return jsWrap(exec, *value);
        }
        if (!global->methods(key).isEmpty())
            return new JsFunc(exec, global, key);
    }
    const Class* cls = inspector->classByName(key);
    if (cls && isGlobal(cls)) {
        if (isContainerClass(cls))
            return KJS::Undefined();
        return new JsClassImp(exec, cls);
    }
    const Namespace* nameSpace = inspector->namespaceByName(key);
    if (nameSpace && isGlobal(nameSpace))
        return new JsNamespace(exec, nameSpace);
    if (JSScriptContext* context = currentContext()) {
        if (context->hasGlobalFunction(key))
            return new JSGenericFunc(context, key);
        if (context->hasConstant(key))
            return KJS::Number(context->constantValue(key));
    }
    return KJS::Undefined();
}

bool JsGlobalImp::hasProperty(KJS::ExecState* exec, const KJS::Identifier& name) const
{
    if (ObjectImp::hasProperty(exec, name))
        return true;
    const QString& key = name.qstring();
    Inspector* inspector = Inspector::self();
    const Class* global = inspector->globalClass();
    if (!global)
        return false; // only reads go on to what follows without an application
    if (bindEnumerators(exec) && ObjectImp::hasProperty(exec, name))
        return true;
    if (global->property(key) || !global->methods(key).isEmpty())
        return true;
    const Class* cls = inspector->classByName(key);
    if (cls && isGlobal(cls))
        return true;
    const Namespace* nameSpace = inspector->namespaceByName(key);
    if (nameSpace && isGlobal(nameSpace))
        return true;
    const JSScriptContext* context = currentContext();
    return context && (context->hasGlobalFunction(key) || context->hasConstant(key));
}

KJS::ReferenceList JsGlobalImp::propList(KJS::ExecState* exec, bool recursive)
{
    KJS::ReferenceList list = ObjectImp::propList(exec, recursive);
    if (const Class* global = Inspector::self()->globalClass()) {
        for (int i = 0, count = global->numProperties(); i < count; ++i)
            list.append(KJS::Reference(KJS::Object(this), global->property(i)->name()));
    }
    return list;
}

} // namespace Torvix
