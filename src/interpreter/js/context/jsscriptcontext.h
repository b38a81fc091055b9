#pragma once

#include "engine/value.h"
#include "interpreter/base/scriptcontext.h"

#include <QStringList>

namespace KJS {
class ExecState;
class List;
} // namespace KJS

namespace Torvix {

/** The frame of a call from JavaScript into language-neutral code. */
class JSScriptContext : public ScriptContext
{
public:
    JSScriptContext();
    ~JSScriptContext() override;

    ScriptContext* lightCopy() const override;
    void clearResult() override;
    void setResult(SharedPtr<ScriptArgument> value) override;
    SharedPtr<ScriptArgument> nullArgument() const override;
    using ScriptContext::toArgument;
    SharedPtr<ScriptArgument> toArgument(bool value) const override;
    SharedPtr<ScriptArgument> toArgument(int value) const override;
    SharedPtr<ScriptArgument> toArgument(long long value) const override;
    SharedPtr<ScriptArgument> toArgument(double value) const override;
    SharedPtr<ScriptArgument> toArgument(const QString& value) const override;
    SharedPtr<ScriptArgument> toArgument(const QDateTime& value) const override;
    SharedPtr<ScriptArgument> toArgument(const ScriptArgument::List& values) const override;
    SharedPtr<ScriptArgument> toArgument(const ScriptArgument::Map& values) const override;
    SharedPtr<ScriptArgument> toArgument(SharedPtr<NativeScriptObject> object) const override;
    SharedPtr<ScriptArgument> toArgument(SharedPtr<Object> object) const override;
    SharedPtr<ScriptArgument> toArgument(TestDataSet* dataSet) const override;
    SharedPtr<ScriptArgument> toArgument(SharedPtr<ApplicationContext> context) const override;
    SharedPtr<ScriptArgument> toArgument(const Debugger::Location& location) const override;
    /** Scripts see the static member Foo.bar as the global Foo_bar. */
    void addStaticMemberFunction(const QString& className, const QString& member, Function function) override;
    bool lineInfo(LineInfo* info, unsigned int depth) const override;
    bool verify(SharedPtr<ScriptArgument> value) override;
    std::pair<QString, QString> catchException(SharedPtr<ScriptArgument> code) override;
    bool compare(SharedPtr<ScriptArgument> a, SharedPtr<ScriptArgument> b) override;
    bool evaluateExpression(const QString& expression, QString* error,
                            const QString& fileName) const override;
    bool sourceCode(const QString& code, const QString& fileName) override;
    std::unique_ptr<Gherkin::ScriptActions>
    gherkinScriptActions(const QString& stepFunctionName) const override;

    /** Makes the engine's arguments those of this context, and conversions run in `exec`. */
    void setJSArguments(KJS::ExecState* exec, const KJS::List& args);
    /** The state in use until now. */
    KJS::ExecState* swapExecState(KJS::ExecState* exec);
    /** Raises this context's error in the script, with the mark of a test outcome where it is one. */
    KJS::Value raiseJSException();

    /** The null value (not the script's null) when no result was set. */
    const KJS::Value& result() const { return m_result; }
    KJS::ExecState* execState() const { return m_exec; }

    static QString toQString(KJS::ExecState* exec, const KJS::Value& value);
    /** Elements of an array as strings; none of undefined and null; otherwise the value itself. */
    static QStringList toQStringList(KJS::ExecState* exec, const KJS::Value& value);
    static KJS::Value stringList(KJS::ExecState* exec, const QStringList& list);

private:
    SharedPtr<ScriptArgument> argumentOf(const KJS::Value& value) const;

    KJS::ExecState* m_exec = nullptr;
    KJS::Value m_result;
};

/** Calls through the one long-lived context, whose test outcomes are marked as such. */
KJS::Value dispatchGenericScriptFunction(KJS::ExecState* exec, const KJS::List& args,
                                         ScriptContext::Function function);
/** Calls through a context of its own; its errors are plain script errors. */
KJS::Value dispatchGenericScriptFunction(KJS::ExecState* exec, ScriptContext::Function function,
                                         const KJS::List& args);
/** The same; functions that wait and look up are written with this name. */
KJS::Value jsScriptContextCall(KJS::ExecState* exec, const KJS::List& args, ScriptContext::Function function);

/** A script function that is nothing but a language-neutral one. */
template <ScriptContext::Function function>
KJS::Value passOn(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return jsScriptContextCall(exec, args, function);
}

} // namespace Torvix
