#pragma once

#include "engine/objectimp.h"
#include "interpreter/base/nativescriptobject.h"
#include "interpreter/base/nativescripttype.h"

#include <QByteArray>
#include <QString>

/**
 * Instances of the classes that C++ registers with Interpreter::addType, and their prototypes. The
 * constructors and all functions are made by native/jsnativetype.h. The application under test is
 * another matter: see jsobject.h.
 */
namespace Torvix {

class OurKJSInterpreter;

/** The prototype of a native type. It carries the type's class info, so that `inherits` works along
 *  the tree of native types. */
class JsNativeTypePrototypeImp : public KJS::ObjectImp
{
public:
    /** Without the type's members. A super type has to be registered already. */
    JsNativeTypePrototypeImp(OurKJSInterpreter* interpreter, const NativeScriptType& type, void* key,
                             const QString& name);

    const KJS::ClassInfo* classInfo() const override { return &m_prototypeInfo; }

    void* nativeType() const { return m_key; }
    const NativeScriptType& description() const { return m_type; }
    QString typeName() const { return QString::fromUtf8(m_name); }
    const KJS::ClassInfo* instanceInfo() const { return &m_instanceInfo; }

    /** The prototype of a registered type; null for an unknown key. */
    static JsNativeTypePrototypeImp* of(KJS::ExecState* exec, void* key);
    /** Class info of the instances of a type; null for an unknown key. */
    static const KJS::ClassInfo* getBaseTypeInfo(KJS::ExecState* exec, void* key);
    /** Prototype of a type; the built-in object prototype for a null or an unknown key. */
    static KJS::Object getBaseTypeProto(KJS::ExecState* exec, void* key);

private:
    NativeScriptType m_type;
    void* m_key;
    QByteArray m_name; ///< the class infos point into it
    KJS::ClassInfo m_instanceInfo;
    KJS::ClassInfo m_prototypeInfo;
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

} // namespace Torvix
