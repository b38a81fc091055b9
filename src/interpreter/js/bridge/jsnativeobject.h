#pragma once

#include "engine/function.h"
#include "interpreter/base/nativescriptobject.h"
#include "interpreter/base/nativescripttype.h"

#include <QByteArray>
#include <QString>

/**
 * Classes and namespaces that C++ registers with Interpreter::addType and addNamespace, as scripts
 * see them. The application under test is another matter: see jsobject.h.
 */
namespace Torvix {

class OurKJSInterpreter;

/** The prototype of a native type. It carries the type's class info, so that `inherits` works along
 *  the tree of native types. */
class JsNativeTypePrototypeImp : public KJS::ObjectImp
{
public:
    /** A super type has to be registered already. */
    JsNativeTypePrototypeImp(OurKJSInterpreter* interpreter, const NativeScriptType& type, void* key,
                             const QString& name);

    const KJS::ClassInfo* classInfo() const override { return &m_prototypeInfo; }

    void* nativeType() const { return m_key; }
    const NativeScriptType& description() const { return m_type; }
    QString typeName() const { return QString::fromUtf8(m_name); }
    const KJS::ClassInfo* instanceInfo() const { return &m_instanceInfo; }

    /** Class info of the instances of a type; null for an unknown key. */
    static const KJS::ClassInfo* getBaseTypeInfo(KJS::ExecState* exec, void* key);
    /** Prototype of a type; the built-in object prototype for a null or an unknown key. */
    static KJS::Object getBaseTypeProto(KJS::ExecState* exec, void* key);

private:
    void addMethods(OurKJSInterpreter* interpreter);
    void addProperties(OurKJSInterpreter* interpreter);

    NativeScriptType m_type;
    void* m_key;
    QByteArray m_name; ///< the class infos point into it
    KJS::ClassInfo m_instanceInfo;
    KJS::ClassInfo m_prototypeInfo;
};

/** The constructor of a native type, with its static members. A call and `new` are the same. */
class JsNativeTypeImp : public KJS::InternalFunctionImp
{
public:
    JsNativeTypeImp(OurKJSInterpreter* interpreter, const QString& name, JsNativeTypePrototypeImp* prototype,
                    void* key);

    bool implementsCall() const override { return implementsConstruct(); }
    bool implementsConstruct() const override { return m_constructor != nullptr; }
    KJS::Object construct(KJS::ExecState* exec, const KJS::List& args) override;
    KJS::Value call(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args) override;

private:
    NativeScriptConstructor m_constructor;
    JsNativeTypePrototypeImp* m_prototype; ///< kept by the interpreter's table
    void* m_key;
};

/** An instance of a native type; keeps the native object alive. */
class JsNativeObjectImp : public KJS::ObjectImp
{
public:
    JsNativeObjectImp(JsNativeTypePrototypeImp* prototype, SharedPtr<NativeScriptObject> object);

    const KJS::ClassInfo* classInfo() const override { return m_prototype->instanceInfo(); }

    SharedPtr<NativeScriptObject> object() const { return m_object; }

private:
    SharedPtr<NativeScriptObject> m_object;
    JsNativeTypePrototypeImp* m_prototype; ///< kept by the interpreter's table
};

/** A group of native functions under one global name. */
class JsNativeNamespaceImp : public KJS::ObjectImp
{
public:
    JsNativeNamespaceImp(OurKJSInterpreter* interpreter, const QString& name,
                         const NativeScriptNamespace& nameSpace);

    KJS::UString className() const override { return m_name; }

private:
    KJS::UString m_name;
};

} // namespace Torvix
