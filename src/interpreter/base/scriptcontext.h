#pragma once

#include "gherkin/scriptactions.h"
#include "interpreter/base/debugger.h"
#include "interpreter/base/debuggerframe.h"
#include "interpreter/base/export.h"
#include "interpreter/base/nativescripttype.h"
#include "interpreter/base/scriptargument.h"
#include "shared/base/lineinfo.h"
#include "shared/base/sharedptr.h"

#include <QDateTime>
#include <QHash>
#include <QString>

#include <memory>
#include <utility>
#include <vector>

namespace Torvix {

class ApplicationContext;
class TestDataSet;
class TestResult;

/**
 * The frame of one call from a script into language-neutral code, `void f(ScriptContext*)`.
 *
 * The implementation reads arguments(), and before it returns leaves a value with
 * setResult(toArgument(...)) or an error with setError(). A language derives from it to make values
 * and to answer questions about the running script.
 */
class TORVIXINTERPRETER_EXPORT ScriptContext
{
public:
    using Function = void (*)(ScriptContext*);
    using Arguments = std::vector<SharedPtr<ScriptArgument>>;

    enum ErrorType {
        OrdinaryError = 0,       ///< ends the script unless it is caught
        VerificationFailure = 1, ///< a failed verification that ends the test case; no script error
        TestCaseSkipped = 2      ///< ends the test case as skipped; no script error
    };

    /** How a function left the context. */
    enum Status { Succeeded = 0, Failed = 1 };

    ScriptContext();
    ScriptContext(const ScriptContext&) = delete;
    ScriptContext& operator=(const ScriptContext&) = delete;
    virtual ~ScriptContext();

    /** A new context for another call at the same place: the result sink is copied, arguments,
     *  result and errors are not. The caller owns it. */
    virtual ScriptContext* lightCopy() const = 0;

    /** The last error wins. */
    virtual void setError(const QString& message, ErrorType type = OrdinaryError);
    /** An ordinary error of code at another place than the caller's. */
    virtual void setError(const QString& message, const DebuggerFrame& position);

    virtual void clearResult() = 0;
    virtual void setResult(SharedPtr<ScriptArgument> value) = 0;
    /** Sets a map with every readable property of the object as the result. */
    virtual void setObjectPropertiesResult(SharedPtr<Object> object);
    /** Sets a list of locations as the result, innermost first. */
    virtual void setStackTraceResult(const std::vector<Debugger::Location>& locations);

    /** These make script values. They are never null. */
    virtual SharedPtr<ScriptArgument> nullArgument() const = 0;
    virtual SharedPtr<ScriptArgument> toArgument(bool value) const = 0;
    virtual SharedPtr<ScriptArgument> toArgument(int value) const = 0;
    virtual SharedPtr<ScriptArgument> toArgument(long long value) const = 0;
    virtual SharedPtr<ScriptArgument> toArgument(double value) const = 0;
    virtual SharedPtr<ScriptArgument> toArgument(const QString& value) const = 0;
    virtual SharedPtr<ScriptArgument> toArgument(const QDateTime& value) const = 0;
    virtual SharedPtr<ScriptArgument> toArgument(const ScriptArgument::List& values) const = 0;
    virtual SharedPtr<ScriptArgument> toArgument(const ScriptArgument::Map& values) const = 0;
    virtual SharedPtr<ScriptArgument> toArgument(SharedPtr<NativeScriptObject> object) const = 0;
    virtual SharedPtr<ScriptArgument> toArgument(SharedPtr<Object> object) const = 0;
    /** A list of the table's records, which keep it. */
    virtual SharedPtr<ScriptArgument> toArgument(TestDataSet* dataSet) const = 0;
    virtual SharedPtr<ScriptArgument> toArgument(SharedPtr<ApplicationContext> context) const = 0;
    virtual SharedPtr<ScriptArgument> toArgument(const Debugger::Location& location) const = 0;
    /** A literal would otherwise become a boolean. */
    SharedPtr<ScriptArgument> toArgument(const char* utf8) const
    {
        return toArgument(QString::fromUtf8(utf8));
    }

    /** Functions and constants that scripts of this context see as globals. */
    virtual void addGlobalFunction(const QString& name, Function function);
    virtual void addStaticMemberFunction(const QString& className, const QString& member,
                                         Function function) = 0;
    virtual void addMemberFunction(const QString& className, const QString& member, Function function);
    virtual void addConstant(const QString& name, int value);

    /** Position of the running script, depth 0 being the innermost frame; false below the last. */
    virtual bool lineInfo(LineInfo* info, unsigned int depth) const = 0;
    /** Truth of a value by the language's rules. */
    virtual bool verify(SharedPtr<ScriptArgument> value) = 0;
    /** Runs code that is expected to fail. Exactly one text is non-empty: the first when it did, the
     *  second when it did not or could not be run. */
    virtual std::pair<QString, QString> catchException(SharedPtr<ScriptArgument> code) = 0;
    /** The language's loose equality. */
    virtual bool compare(SharedPtr<ScriptArgument> a, SharedPtr<ScriptArgument> b) = 0;
    /** Truth of an expression; a failed evaluation gives false and a text in `error`, which is
     *  otherwise cleared. */
    virtual bool evaluateExpression(const QString& expression, QString* error,
                                    const QString& fileName) const = 0;
    /** Runs the text of a file; false when the language can't. */
    virtual bool sourceCode(const QString& code, const QString& fileName) = 0;
    /** What runs the steps and hooks of a feature in the script. `stepFunctionName` is the script function
     *  that finds and runs a step; empty for that of the tool. */
    virtual std::unique_ptr<Gherkin::ScriptActions>
    gherkinScriptActions(const QString& stepFunctionName) const = 0;

    /** The one long-lived context of the current interpreter; null without one. */
    static ScriptContext* current();
    static void setCurrent(ScriptContext* context);

    /**
     * Runs a function against this context with its arguments. Result and error are cleared first.
     *
     * A call may run inside another on one context: each gives the status of its own function. An
     * exception of the function passes through.
     */
    Status execute(Function function);
    /** The same for native script functions: false when the function answered so. */
    bool execute(NativeScriptFunction function);
    bool execute(NativeScriptMethod method, SharedPtr<NativeScriptObject> object);
    /** The new object, or null; an error is told by errorMessage(). */
    SharedPtr<NativeScriptObject> execute(NativeScriptConstructor constructor);

    void setArguments(Arguments arguments) { m_arguments = std::move(arguments); }
    void clearArguments() { m_arguments.clear(); }
    const Arguments& arguments() const { return m_arguments; }
    int argumentCount() const { return int(m_arguments.size()); }
    /** Argument by index; null beyond the last. */
    SharedPtr<ScriptArgument> argument(int index) const;

    QString errorMessage() const { return m_errorMessage; }
    ErrorType errorType() const { return m_errorType; }
    /** Where the error is if setError said so; all -1 otherwise. */
    DebuggerFrame errorPosition() const { return m_errorPosition; }

    TestResult* testResult() const { return m_testResult; }
    /** Borrowed. */
    void setTestResult(TestResult* result) { m_testResult = result; }

    bool hasGlobalFunction(const QString& name) const;
    /** Executes a global function; false with an error in the context when it failed or there is
     *  none of that name. */
    bool tryGlobalCall(const QString& name);
    bool hasConstant(const QString& name) const;
    /** 0 for an unknown name. */
    int constantValue(const QString& name) const;
    /** Null for an unknown member. */
    Function memberFunction(const QString& className, const QString& member) const;

private:
    class Execution;

    Arguments m_arguments;
    QString m_errorMessage;
    ErrorType m_errorType = OrdinaryError;
    DebuggerFrame m_errorPosition;
    Execution* m_execution = nullptr; ///< the innermost call that runs now
    TestResult* m_testResult = nullptr;
    QHash<QString, Function> m_globalFunctions;
    QHash<QPair<QString, QString>, Function> m_memberFunctions;
    QHash<QString, int> m_constants;
};

} // namespace Torvix
