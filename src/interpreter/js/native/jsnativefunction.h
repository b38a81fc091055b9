#pragma once

#include "engine/function.h"
#include "interpreter/base/nativescripttype.h"

#include <QString>
#include <QStringList>

namespace Torvix {

class JsNativeTypePrototypeImp;
class OurKJSInterpreter;

/** What a native function tells of itself. */
struct JsNativeSignature
{
    QString name;
    QStringList mandatoryArguments;
    QStringList optionalArguments;
    QStringList helpLines;

    JsNativeSignature(const QString& functionName, const QStringList& mandatory = {},
                      const QStringList& optional = {}, const QString& help = QString());

    /** The function as script text: its help as a comment, its name and its arguments. */
    QString toString() const;
};

/** A native function of the script API: a global one, a static method, a static accessor. */
class JsNativeFunctionImp : public KJS::InternalFunctionImp
{
public:
    static const KJS::ClassInfo info;

    JsNativeFunctionImp(OurKJSInterpreter* interpreter, const JsNativeSignature& signature,
                        NativeScriptFunction function);

    bool implementsCall() const override { return true; }
    const KJS::ClassInfo* classInfo() const override { return &info; }
    KJS::Value call(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args) override;

    QStringList mandatoryArguments() const { return m_signature.mandatoryArguments; }
    QStringList optionalArguments() const { return m_signature.optionalArguments; }
    QStringList helpStr() const { return m_signature.helpLines; }
    const JsNativeSignature& signature() const { return m_signature; }

private:
    JsNativeSignature m_signature;
    NativeScriptFunction m_function;
};

/** A method or accessor of a native type; it wants an instance of that type as its `this`. */
class JsNativeObjectMethodImp : public KJS::InternalFunctionImp
{
public:
    static const KJS::ClassInfo info;

    JsNativeObjectMethodImp(OurKJSInterpreter* interpreter, const JsNativeSignature& signature,
                            NativeScriptMethod function, JsNativeTypePrototypeImp* owner);

    bool implementsCall() const override { return true; }
    const KJS::ClassInfo* classInfo() const override { return &info; }
    KJS::Value call(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args) override;

    QStringList mandatoryArguments() const { return m_signature.mandatoryArguments; }
    QStringList optionalArguments() const { return m_signature.optionalArguments; }
    QStringList helpStr() const { return m_signature.helpLines; }
    const JsNativeSignature& signature() const { return m_signature; }

private:
    JsNativeSignature m_signature;
    NativeScriptMethod m_function;
    JsNativeTypePrototypeImp* m_owner; ///< kept by the interpreter's table
};

/** The prototype of all native functions. */
class JsNativeFunctionPrototype : public KJS::InternalFunctionImp
{
public:
    explicit JsNativeFunctionPrototype(const KJS::Object& functionPrototype);
};

/** Its `toString`: the text of a native function; for any other `this` what the next prototype says. */
class JsNativeFunctionProtoMethodImp : public KJS::InternalFunctionImp
{
public:
    explicit JsNativeFunctionProtoMethodImp(const KJS::Object& functionPrototype);

    bool implementsCall() const override { return true; }
    KJS::Value call(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args) override;
};

} // namespace Torvix
