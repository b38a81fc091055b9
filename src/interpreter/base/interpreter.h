#pragma once

#include "gherkin/scriptlocation.h"
#include "gherkin/step.h"
#include "interpreter/base/export.h"
#include "interpreter/base/nativescripttype.h"
#include "interpreter/base/scriptargument.h"
#include "objectmodel/object.h"
#include "shared/base/lineinfo.h"
#include "shared/base/sharedptr.h"

#include <QFileInfo>
#include <QMap>
#include <QString>
#include <QStringList>

#include <atomic>
#include <memory>
#include <vector>

namespace Torvix {

class Debugger;
class RunnerInterface;
class TestResult;

/**
 * A script interpreter as the runner uses it, whatever the language.
 *
 * The runner gets one from a language plug-in, adds search paths, results and arguments, evaluates
 * the script's text, calls `main` by name, reads the error fields after a false answer, and deletes
 * it. evaluate() and call() clear the error fields first, so that those tell of the latest run.
 * Everything runs on the thread that made the interpreter.
 */
class TORVIXINTERPRETER_EXPORT Interpreter
{
public:
    enum Language { JavaScript = 0 };

    /** Adds a part of the script API to an interpreter under construction. */
    using NativeApiInstaller = void (*)(Interpreter*);

    /** Borrows the runner, which may be null; the new interpreter becomes self(). */
    explicit Interpreter(RunnerInterface* runner);
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;
    virtual ~Interpreter();

    /** Runs a script's text. `fileName` is what errors name; `silent` leaves the error fields empty
     *  on failure; the first flag has no effect at present. False when the script threw. */
    virtual bool evaluate(const QString& code, const QString& fileName, bool, bool silent) = 0;
    /** Calls a script function by its global name or callback identifier. A test outcome that ends
     *  the call (failed verification, skipped test case) is no error: it gives true. */
    virtual bool call(const QString& name, const ObjectList& arguments) = 0;
    /** True for the name of a global function; callback identifiers are not looked at. */
    virtual bool hasFunction(const QString& name) const = 0;
    /** Parses only. False fills message, file and line. */
    virtual bool checkSyntax(const QString& code, const QString& fileName) = 0;
    /** Where the functions of the script are that match a step; runs none of them. */
    virtual std::vector<Gherkin::ScriptLocation> matchingSteps(const Gherkin::Step& step) const = 0;
    /** The patterns of the steps of a type that the script has, those of any type among them. */
    virtual QStringList registeredStepPatterns(Gherkin::StepType type) const = 0;

    /** Line of the last error, from 1; 0 when it is not known. */
    virtual int errorLine() const;
    /** File of the last error, or `fallback` when it is not known. */
    virtual QString errorFile(const QString& fallback = QString()) const;

    /** These add to the global scope; true when added. */
    virtual bool addGlobalFunction(const QString& name, NativeScriptFunction function,
                                   const QStringList& mandatoryArguments,
                                   const QStringList& optionalArguments, const QString& help) = 0;
    virtual bool addType(const QString& name, void* key, const NativeScriptType& type) = 0;
    virtual bool addNamespace(const QString& name, const NativeScriptNamespace& nameSpace) = 0;

    /** Lets scripts report results to this sink, which is borrowed. */
    virtual void initTestFunctions(TestResult* result) = 0;
    virtual void initUtilFunctions();

    /** Appends a directory in which modules are searched. An error text, or empty. */
    virtual QString addToSearchPath(const QFileInfo& directory) = 0;
    virtual int language() const = 0;
    /** Makes the call in progress end with this error. */
    virtual void setError(const QString& message) = 0;
    virtual void setScriptArguments(const QString& name, const QStringList& arguments);

    /** Keeps a callable so that it can be invoked later by the identifier that is returned; null
     *  when the value is no callable. */
    virtual QString registerCallable(SharedPtr<ScriptArgument> callable);
    virtual void unregisterCallable(const QString& identifier);
    virtual void clearError();
    virtual void setErrorMessage(const QString& message);
    virtual void setResultMessage(const QString& message);
    virtual void setErrorLine(int line);
    virtual void setErrorFile(const QString& file);
    /** Takes ownership. */
    virtual void setDebugger(Debugger* debugger);
    virtual bool isCallableAvailable(const QString& identifier) const;
    /** Null with `error` filled when it failed or is not registered. */
    virtual SharedPtr<ScriptArgument> invokeCallable(const QString& identifier,
                                                     const ScriptArgument::List& arguments, QString* error);

    /** Ends each run that takes longer, with an error that says so; 0 for no limit. */
    virtual void setTimeLimit(int timeLimitMs) = 0;
    /** Ends the run in progress with an error. Callable from any thread; the interpreter stays usable. */
    virtual void interrupt() = 0;
    /** Whether interrupt() was called since the last evaluation or call began. Native code that waits
     *  asks this and returns early: the run then ends as soon as it is back in the script. */
    bool isInterrupted() const { return m_isInterrupted; }

    /** The process-wide current interpreter; the latest one made unless setSelf said otherwise. */
    static Interpreter* self();
    static void setSelf(Interpreter* interpreter);

    /** Adds a part to the script API of every interpreter that is made from now on. Libraries above
     *  this one call it once; adding an installer again has no effect. */
    static void registerNativeAPI(NativeApiInstaller installer);

    QString errorMessage() const { return m_errorMessage; }
    /** Text of the value that the last evaluation ended with. */
    QString resultMessage() const { return m_resultMessage; }
    /** Where the last uncaught exception was thrown, innermost frame first. */
    std::vector<LineInfo> errorCallStack() const { return m_errorCallStack; }
    void setErrorCallStack(const std::vector<LineInfo>& stack) { m_errorCallStack = stack; }

    /** Value that the last evaluation ended with; null when there was none. */
    SharedPtr<ScriptArgument> lastResult() const { return m_lastResult; }

    /** Adds the directories that every script of this directory's test finds modules in. */
    void addDefaultSearchPaths(const QFileInfo& directory);

    Debugger* debugger() const { return m_debugger.get(); }
    RunnerInterface* runnerInterface() const { return m_runner; }
    QString scriptName() const { return m_scriptName; }

protected:
    void clearCallables();
    /** Runs every registered installer on this interpreter, in the order of registration. */
    void initNativeAPI();
    void setLastResult(SharedPtr<ScriptArgument> value) { m_lastResult = value; }
    /** For interrupt() and for the beginning of a run. */
    void setInterrupted(bool isInterrupted) { m_isInterrupted = isInterrupted; }

private:
    std::atomic<bool> m_isInterrupted{false};
    QString m_errorMessage;
    QString m_resultMessage;
    int m_errorLine = 0;
    QString m_errorFile;
    std::vector<LineInfo> m_errorCallStack;
    SharedPtr<ScriptArgument> m_lastResult;
    std::unique_ptr<Debugger> m_debugger;
    RunnerInterface* m_runner;
    QString m_scriptName;
    QStringList m_scriptArguments;
    QMap<QString, SharedPtr<ScriptArgument>> m_callables;
};

} // namespace Torvix
