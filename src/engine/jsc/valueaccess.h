#pragma once

#include "engine/jsc/runtime.h"
#include "engine/value.h"

namespace KJS {

/** A string value. */
class StringImp : public ValueImp
{
public:
    explicit StringImp(UString text) : m_text(std::move(text)) {}
    Type type() const override { return StringType; }
    const UString& text() const { return m_text; }

private:
    UString m_text;
};

/** A symbol or a BigInt: script's own, kept by the engine's protection. */
class OpaqueImp : public ValueImp
{
public:
    OpaqueImp(Runtime* runtime, JSValueRef value, Type type);
    ~OpaqueImp() override;
    Type type() const override { return m_type; }
    Runtime* runtime() const { return m_runtime; }
    JSValueRef value() const { return m_value; }
    void detach();

private:
    Runtime* m_runtime;
    JSValueRef m_value;
    Type m_type;
};

/** The borders between values of ours and the engine's. */
class ValueAccess
{
public:
    static Value fromScript(Runtime& runtime, JSValueRef value);
    static Object fromScript(Runtime& runtime, JSObjectRef object);
    /**
     * A new object is born by it. An object of another interpreter gives undefined, with a TypeError
     * in the exec state; so does one whose interpreter has ended.
     */
    static JSValueRef toScript(Runtime& runtime, ExecState* exec, const Value& value);
    /** As the other, for objects; a null object gives null. */
    static JSObjectRef toScript(Runtime& runtime, ExecState* exec, const Object& object);

    static bool boolean(const Value& value) { return value.m_data.boolean; }
    static double number(const Value& value) { return value.m_data.number; }
    static const UString& text(const Value& value)
    {
        return static_cast<const StringImp*>(value.m_data.imp)->text();
    }
    static Object object(const Value& value) { return Object(value); }
};

/** The arguments of a call, as the engine's values. */
class ScriptArguments
{
public:
    ScriptArguments(Runtime& runtime, ExecState* exec, const List& arguments);
    ~ScriptArguments();
    ScriptArguments(const ScriptArguments&) = delete;
    ScriptArguments& operator=(const ScriptArguments&) = delete;

    const std::vector<JSValueRef>& values() const { return m_values; }

private:
    Runtime& m_runtime;
    std::vector<JSValueRef> m_values;
    std::vector<JSValueRef> m_protected;
};

} // namespace KJS
