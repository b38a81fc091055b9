#pragma once

#include "engine/value.h"
#include "interpreter/base/scriptargument.h"

namespace KJS {
class ExecState;
}

namespace Torvix {

/** A JavaScript value as language-neutral code sees it. */
class JSScriptArgument : public ScriptArgument
{
public:
    /** Borrows the state, in which conversions run. */
    JSScriptArgument(KJS::ExecState* exec, const KJS::Value& value);
    ~JSScriptArgument() override;

    QString typeName() const override;
    bool isBoolean() const override;
    bool isNumber() const override;
    bool isInteger() const override;
    bool isString() const override;
    /** Always true: every value has a string form. */
    bool isStringLike() const override;
    bool isObject() const override;
    bool isClass() const override;
    /** Always false: script functions are not handed to language-neutral code. */
    bool isCallable() const override;
    bool isList() const override;
    bool isMap() const override;
    bool isNative(void* type) const override;
    bool toBoolean() const override;
    double toDouble() const override;
    int toInteger() const override;
    QString toString() const override;
    SharedPtr<Object> toObject() const override;
    const Class* toClass() const override;
    /** Empty as a whole when an element is undefined. */
    List toList() const override;
    /** Inherited enumerable properties count. Empty as a whole when a value is undefined. */
    Map toMap() const override;
    SharedPtr<NativeScriptObject> toNative(void* type) const override;
    const TestDataRecord* toTestDataRecord() const override;
    SharedPtr<ApplicationContext> toApplicationContext() const override;
    SharedPtr<Object> convertToArgument(const Argument& argument) const override;
    SharedPtr<ScriptArgument> invoke(const List& arguments, QString* error) const override;
    QString regularExpression() const override;
    PropertyValue toPropertyValue() const override;

    const KJS::Value& value() const { return m_value; }

private:
    KJS::ExecState* m_exec;
    KJS::Value m_value;
};

} // namespace Torvix
