#pragma once

#include "engine/objectimp.h"
#include "shared/base/result.h"
#include "shared/base/sharedptr.h"

#include <QString>

/**
 * The script side of the application under test: a wrapper for each object, class and namespace of
 * the object model.
 *
 * Every failure is an exception in the execution state; where there is a result it is the error.
 */
namespace Torvix {

class Class;
class Namespace;
class Object;

/**
 * An object of the application. It keeps its object alive; once the application has gone, every read
 * and write fails with a clear error. Wrappers have no identity: two reads of one property give two.
 */
class JsObjectImp : public KJS::ObjectImp
{
public:
    static const KJS::ClassInfo info;

    JsObjectImp(KJS::ExecState* exec, SharedPtr<Object> object);
    ~JsObjectImp() override;

    const KJS::ClassInfo* classInfo() const override { return &info; }
    KJS::UString className() const override;
    KJS::Value get(KJS::ExecState* exec, const KJS::Identifier& name) const override;
    void put(KJS::ExecState* exec, const KJS::Identifier& name, const KJS::Value& value,
             int attributes = KJS::None) override;
    bool hasProperty(KJS::ExecState* exec, const KJS::Identifier& name) const override;
    KJS::ReferenceList propList(KJS::ExecState* exec, bool recursive = true) override;

    const SharedPtr<Object>& object() const { return m_object; }

private:
    SharedPtr<Object> m_object;
};

/** A class of the application: static members, enumerators, and `new`. */
class JsClassImp : public KJS::ObjectImp
{
public:
    static const KJS::ClassInfo info;

    JsClassImp(KJS::ExecState* exec, const Class* cls);

    const KJS::ClassInfo* classInfo() const override { return &info; }
    KJS::UString className() const override;
    KJS::Value get(KJS::ExecState* exec, const KJS::Identifier& name) const override;
    bool hasProperty(KJS::ExecState* exec, const KJS::Identifier& name) const override;
    bool implementsConstruct() const override;
    KJS::Object construct(KJS::ExecState* exec, const KJS::List& args) override;

    const Class* wrappedClass() const { return m_class; }

private:
    const Class* m_class;
};

/** A namespace of the application: its classes and namespaces by name. */
class JsNamespace : public KJS::ObjectImp
{
public:
    static const KJS::ClassInfo info;

    JsNamespace(KJS::ExecState* exec, const Namespace* nameSpace);

    const KJS::ClassInfo* classInfo() const override { return &info; }
    KJS::UString className() const override;
    KJS::Value get(KJS::ExecState* exec, const KJS::Identifier& name) const override;
    bool hasProperty(KJS::ExecState* exec, const KJS::Identifier& name) const override;

private:
    const Namespace* m_namespace;
};

/** A new wrapper, every time. The object must not be null. */
KJS::Value jsWrap(KJS::ExecState* exec, SharedPtr<Object> object);
/** The wrapped object; null when the value is no wrapper. */
Object* jsUnWrap(KJS::ExecState* exec, const KJS::Value& value);
/** The wrapped class; null when the value is no class wrapper. */
const Class* jsUnWrapClass(KJS::ExecState* exec, const KJS::Value& value);
bool isTorvixObject(KJS::ExecState* exec, const KJS::Value& value);
bool isTorvixClass(KJS::ExecState* exec, const KJS::Value& value);
/** Id of the current application context; -1 without a runner or an application. */
int currentRunnerAppId();

/** The message, followed by ": " and why the operation failed; notes that as the last error. */
QString withReason(const QString& message, const Result<void>& failed);
/** The value of a key of the first enumeration, own or inherited, that has it. */
bool enumeratorValue(const Class* cls, const QString& key, int* value);
/** Called with each value that could be cached on an object; nothing is. */
void jsCacheValue(const KJS::ObjectImp* object, const KJS::Identifier& name, const KJS::Value& value);

} // namespace Torvix
