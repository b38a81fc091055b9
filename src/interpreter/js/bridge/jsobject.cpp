#include "interpreter/js/bridge/jsobject.h"

#include "engine/interpreter.h"
#include "engine/reference.h"
#include "interpreter/base/applicationcontext.h"
#include "interpreter/base/interpreter.h"
#include "interpreter/js/bridge/jsconvert.h"
#include "interpreter/js/bridge/jsfunc.h"
#include "interpreter/js/bridge/remoteobjectmodelholder.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "objectmodel/inspector.h"

namespace Torvix {

namespace {

RunnerInterface* currentRunner()
{
    Interpreter* interpreter = Interpreter::self();
    return interpreter ? interpreter->runnerInterface() : nullptr;
}

/** The members that every wrapper has unless the class declares one of that name. */
struct ProtoMember
{
    KJS::Identifier name;
    JsObjectProtoFunc::Type type;
};

const std::vector<ProtoMember>& protoMembers()
{
    static const std::vector<ProtoMember> table = {{"valueOf", JsObjectProtoFunc::ValueOf},
                                                   {"toString", JsObjectProtoFunc::ToString},
                                                   {"[[==]]", JsObjectProtoFunc::Equality}};
    return table;
}

} // namespace

QString withReason(const QString& message, const Result<void>& failed)
{
    Inspector::self()->note(failed);
    const QString reason = failed.error();
    return reason.isEmpty() ? message : message + QLatin1String(": ") + reason;
}

bool enumeratorValue(const Class* cls, const QString& key, int* value)
{
    for (int i = 0, count = cls->numEnumerators(); i < count; ++i) {
        bool found = false;
        *value = cls->enumerator(i)->value(key, &found);
        if (found)
            return true;
    }
    return false;
}

const KJS::ClassInfo JsObjectImp::info = {"Object", nullptr};

JsObjectImp::JsObjectImp(KJS::ExecState* exec, SharedPtr<Object> object)
    : ObjectImp(exec->interpreter()->builtinObjectPrototype())
    , m_object(std::move(object))
{
    preventExtensions(); // its members are those of its class, also for Object.defineProperty
}

JsObjectImp::~JsObjectImp() = default;

KJS::UString JsObjectImp::className() const
{
    return m_object->className();
}

KJS::Value JsObjectImp::get(KJS::ExecState* exec, const KJS::Identifier& name) const
{
    const RemoteObjectModelHolder access(currentRunner());
    if (m_object->isInvalidated())
        return generalError(exec, QStringLiteral("Attempt to access an invalidated object"));
    const Class* cls = m_object->objectClass();
    const QString& key = name.qstring();
    if (const Property* property = cls->property(key)) {
        if (m_object->isNull())
            return generalError(exec, QStringLiteral("Attempt to access a property of a null object"));
        if (!property->isReadable())
            return generalError(exec, QStringLiteral("Property is not readable"));
        const Result<SharedPtr<Object>> value = property->get(m_object);
        if (!value)
            return generalError(exec,
                                withReason(QStringLiteral("Error occurred when reading property"), value));
        return jsNatify(exec, *value);
    }
    if (!cls->methods(key).isEmpty())
        return new JsFunc(exec, cls, key);
    int number = 0;
    if (enumeratorValue(cls, key, &number))
        return KJS::Number(number);
    for (const ProtoMember& member : protoMembers()) {
        if (member.name == name)
            return new JsObjectProtoFunc(m_object, member.type, 0);
    }
    return ObjectImp::get(exec, name);
}

void JsObjectImp::put(KJS::ExecState* exec, const KJS::Identifier& name, const KJS::Value& value, int)
{
    const RemoteObjectModelHolder access(currentRunner());
    if (m_object->isInvalidated()) {
        generalError(exec, QStringLiteral("Attempt to modify an invalidated object"));
        return;
    }
    const Property* property = m_object->objectClass()->property(name.qstring());
    if (!property) {
        generalError(exec, QStringLiteral("Can't add new properties to this object"));
        return;
    }
    if (!property->isWritable()) {
        generalError(exec, QStringLiteral("Attempt to set a non-writable property"));
        return;
    }
    const SharedPtr<Object> object = jsToObject(exec, value, property->type());
    if (exec->hadException())
        return; // a script getter of the value threw: that is the error, not the conversion
    if (!object)
        generalError(exec,
                     QLatin1String("Failed to convert property value to type ") + property->type()->name());
    else if (const Result<void> done = property->set(m_object, object); !done)
        generalError(exec, withReason(QStringLiteral("Failed to set property"), done));
}

bool JsObjectImp::hasProperty(KJS::ExecState* exec, const KJS::Identifier& name) const
{
    const Class* cls = m_object->objectClass();
    return cls->property(name.qstring()) || !cls->methods(name.qstring()).isEmpty() ||
           ObjectImp::hasProperty(exec, name);
}

KJS::ReferenceList JsObjectImp::propList(KJS::ExecState* exec, bool recursive)
{
    KJS::ReferenceList list = ObjectImp::propList(exec, recursive);
    const Class* cls = m_object->objectClass();
    for (int i = 0, count = cls->numProperties(); i < count; ++i)
        list.append(
            KJS::Reference(KJS::Object::dynamicCast(jsWrap(exec, m_object)), cls->property(i)->name()));
    return list;
}

KJS::Value jsWrap(KJS::ExecState* exec, SharedPtr<Object> object)
{
    return new JsObjectImp(exec, std::move(object));
}

Object* jsUnWrap(KJS::ExecState* exec, const KJS::Value& value)
{
    if (!isTorvixObject(exec, value))
        return nullptr;
    return static_cast<JsObjectImp*>(value.imp())->object().get();
}

const Class* jsUnWrapClass(KJS::ExecState* exec, const KJS::Value& value)
{
    return isTorvixClass(exec, value) ? static_cast<JsClassImp*>(value.imp())->wrappedClass() : nullptr;
}

bool isTorvixObject(KJS::ExecState*, const KJS::Value& value)
{
    return value.dispatchType() == KJS::ObjectType &&
           KJS::Object::dynamicCast(value).inherits(&JsObjectImp::info);
}

bool isTorvixClass(KJS::ExecState*, const KJS::Value& value)
{
    return value.dispatchType() == KJS::ObjectType &&
           KJS::Object::dynamicCast(value).inherits(&JsClassImp::info);
}

void jsCacheValue(const KJS::ObjectImp*, const KJS::Identifier&, const KJS::Value&) {}

int currentRunnerAppId()
{
    RunnerInterface* runner = currentRunner();
    return runner ? runner->applicationContext(QString())->id : -1;
}

} // namespace Torvix
