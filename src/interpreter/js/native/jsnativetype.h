#pragma once

#include "engine/function.h"
#include "interpreter/base/nativescripttype.h"
#include "interpreter/js/bridge/jsnativeobject.h"

#include <QString>

/**
 * Classes and namespaces that C++ registers with Interpreter::addType and addNamespace, as scripts
 * see them: constructors, methods, accessors.
 */
namespace Torvix {

class OurKJSInterpreter;

/** Makes the prototype that all native functions of an interpreter have. */
void initNativeTypes(OurKJSInterpreter* interpreter);

/** Puts the type's methods and accessors on its prototype. */
void addMembers(OurKJSInterpreter* interpreter, JsNativeTypePrototypeImp* prototype);

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
