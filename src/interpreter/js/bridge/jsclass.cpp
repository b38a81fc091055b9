#include "engine/interpreter.h"
#include "engine/reference.h"
#include "interpreter/js/bridge/jsconvert.h"
#include "interpreter/js/bridge/jsfunc.h"
#include "interpreter/js/bridge/jsobject.h"
#include "interpreter/js/bridge/overload.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "objectmodel/inspector.h"

namespace Torvix {

const KJS::ClassInfo JsClassImp::info = {"Class", nullptr};

JsClassImp::JsClassImp(KJS::ExecState*, const Class* cls) : m_class(cls) {}

KJS::UString JsClassImp::className() const
{
    return "Class";
}

/** A namespace with enums of its own is a class to the application; others are in it all the same. */
static const Class* classInNamespace(const Class* outer, const QString& name)
{
    const bool mayBeNamespace =
        !outer->isIdentity() && outer->numSuperClasses() == 0 && outer->numConstructors() == 0;
    if (!mayBeNamespace || name.isEmpty() || outer->application() != Inspector::self()->current())
        return nullptr;
    return Inspector::self()->classByName(outer->name() + QLatin1String("::") + name);
}

KJS::Value JsClassImp::get(KJS::ExecState* exec, const KJS::Identifier& name) const
{
    const KJS::Value own = ObjectImp::get(exec, name);
    if (!own.isUndefined())
        return own;
    const QString& key = name.qstring();
    if (const Property* property = m_class->property(key)) {
        if (!property->isStatic())
            return referenceError(exec, QStringLiteral("Can't access property without object reference"));
        if (!property->isReadable())
            return referenceError(exec, QStringLiteral("Property is not readable"));
        const SharedPtr<Object> value = property->get(nullptr).orNothing();
        if (!value)
            return referenceError(exec, QStringLiteral("Error occurred when reading property"));
        return jsNatify(exec, value);
    }
    if (!m_class->methods(key).isEmpty())
        return new JsFunc(exec, m_class, key);
    int number = 0;
    if (enumeratorValue(m_class, key, &number))
        return KJS::Number(number);
    if (const Class* inner = classInNamespace(m_class, key))
        return new JsClassImp(exec, inner);
    return KJS::Undefined();
}

bool JsClassImp::hasProperty(KJS::ExecState*, const KJS::Identifier& name) const
{
    // `in` asks for members of the application's class; the engine's own are none.
    return m_class->property(name.qstring()) || !m_class->methods(name.qstring()).isEmpty();
}

bool JsClassImp::implementsConstruct() const
{
    return true;
}

KJS::Object JsClassImp::construct(KJS::ExecState* exec, const KJS::List& args)
{
    const auto fail = [exec](const QString& message) {
        return KJS::Object::dynamicCast(argError(exec, KJS::EvalError, message));
    };
    const int count = m_class->numConstructors();
    if (count == 0)
        return fail(QLatin1String("Type ") + m_class->name() + QLatin1String(" has no constructor"));
    std::vector<const Signature*> signatures;
    for (int i = 0; i < count; ++i)
        signatures.push_back(&m_class->constructor(i)->signature());
    const std::vector<const Class*> classes(signatures.size(), m_class);
    ObjectList arguments;
    const int index = findMatch(exec, args, m_class, signatures, classes, m_class->name(), &arguments);
    if (index < 0)
        return KJS::Object::dynamicCast(exec->exception());
    const Result<SharedPtr<Object>> object = m_class->constructor(index)->construct(arguments);
    if (!object)
        return fail(withReason(QLatin1String("Constructor of ") + m_class->name() + QLatin1String(" failed"),
                               object));
    return KJS::Object::dynamicCast(jsWrap(exec, *object));
}

const KJS::ClassInfo JsNamespace::info = {"Namespace", nullptr};

JsNamespace::JsNamespace(KJS::ExecState*, const Namespace* nameSpace) : m_namespace(nameSpace) {}

KJS::UString JsNamespace::className() const
{
    return "Namespace";
}

KJS::Value JsNamespace::get(KJS::ExecState* exec, const KJS::Identifier& name) const
{
    const KJS::Value own = ObjectImp::get(exec, name);
    if (!own.isUndefined())
        return own;
    if (const Class* cls = m_namespace->getClass(name.qstring()))
        return new JsClassImp(exec, cls);
    if (const Namespace* nameSpace = m_namespace->getNamespace(name.qstring()))
        return new JsNamespace(exec, nameSpace);
    return KJS::Undefined();
}

bool JsNamespace::hasProperty(KJS::ExecState*, const KJS::Identifier& name) const
{
    return m_namespace->getClass(name.qstring()) || m_namespace->getNamespace(name.qstring());
}

} // namespace Torvix
