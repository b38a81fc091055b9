#pragma once

#include "engine/object.h"
#include "interpreter/base/interpreter.h"

#include <memory>

namespace KJS {
class ExecState;
}

namespace Torvix {

class JSScriptContext;
class OurKJSInterpreter;

/** The JavaScript interpreter that the runner gets. */
class JsInterpreter : public Interpreter
{
public:
    explicit JsInterpreter(RunnerInterface* runner);
    /** Leaves no wrapper, and so no reference to the application's objects, alive. */
    ~JsInterpreter() override;

    bool evaluate(const QString& code, const QString& fileName, bool, bool silent) override;
    bool call(const QString& name, const ObjectList& args) override;
    bool hasFunction(const QString& name) const override;
    bool checkSyntax(const QString& code, const QString& fileName) override;
    std::vector<Gherkin::ScriptLocation> matchingSteps(const Gherkin::Step& step) const override;
    QStringList registeredStepPatterns(Gherkin::StepType type) const override;
    bool addGlobalFunction(const QString& name, NativeScriptFunction function, const QStringList& mandatory,
                           const QStringList& optional, const QString& help) override;
    bool addType(const QString& name, void* key, const NativeScriptType& type) override;
    bool addNamespace(const QString& name, const NativeScriptNamespace& nameSpace) override;
    void initTestFunctions(TestResult* result) override;
    QString addToSearchPath(const QFileInfo& directory) override;
    int language() const override { return JavaScript; }
    void setError(const QString& message) override;
    void setScriptArguments(const QString& name, const QStringList& args) override;
    void setTimeLimit(int timeLimitMs) override;
    void interrupt() override;

    /** Evaluates an expression for its value: on a throw the thrown value, without a value the null
     *  value. `hadValue` tells of a value that was not thrown; only then is it the last result. */
    KJS::Value evaluateJs(const QString& code, bool* hadValue, const QString& fileName, bool, bool silent);

    /** Fills the error fields from an exception; a null `exception` takes the pending one. A test
     *  outcome writes nothing and sets `isTestOutcome`, which may be null. */
    void fetchErrorInfo(KJS::ExecState* exec, const KJS::Value* exception, bool* isTestOutcome);

    KJS::ExecState* getGlobalExecState() const;
    /** The script's name, then its arguments. */
    QStringList scriptArguments() const { return m_scriptArguments; }

    /** Keeps a script function so that call() finds it by the identifier that is returned. */
    QString registerCallBack(const KJS::Object& function);
    /** The identifier; null when it was not registered. */
    QString unregisterCallBack(const KJS::Object& function);

    /** The current interpreter if it is one of this language, else null. */
    static JsInterpreter* self();

private:
    /** Installs the enumerators of the application's global class as global constants. */
    void initBindings();
    KJS::Object findCallable(KJS::ExecState* exec, const QString& name);
    void fetchPrimitiveError(KJS::ExecState* exec, const KJS::Value& exception);
    QString fileOfFrozenError(KJS::ExecState* exec, const KJS::Object& error) const;
    /** For errors that have no place in a file: that of the innermost frame that has one. */
    void setErrorPlaceToCaller();
    void keepResult(const KJS::Value& value);

    std::unique_ptr<OurKJSInterpreter> m_interpreter;
    QStringList m_scriptArguments;
    std::unique_ptr<JSScriptContext> m_scriptContext;
};

} // namespace Torvix
