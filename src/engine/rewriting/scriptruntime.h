#pragma once

#include "engine/rewriting/framestack.h"
#include "engine/rewriting/rewriter.h"
#include "engine/rewriting/scripthooks.h"

#include <exception>
#include <functional>
#include <memory>
#include <vector>

namespace KJS::Rewriting {

/** How a script run ended: with an exception, or else with a value. Neither is protected. */
struct Outcome
{
    JSValueRef value = nullptr;
    JSValueRef exception = nullptr;

    bool threw() const { return exception != nullptr; }
};

/** A syntax error as the engine words it; `ok` when there is none. */
struct SyntaxReport
{
    bool ok = true;
    int line = 0;
    QString message;
};

/** A variable of a frame. The value is null while the variable is not initialised. */
struct Variable
{
    QString name;
    JSValueRef value = nullptr;
};

/**
 * Runs scripts of one global context with hooks. Make it right after the context, before any script
 * runs there; it must outlive the context's last run, and be destroyed before the context is released.
 *
 * Whatever makes script run from C++ goes through evaluate(), call(), construct() or run(): they keep
 * the frame stack right, report uncaught exceptions, let promise jobs run when the outermost one ends,
 * and throw a pending C++ exception on when the outermost one ends.
 */
class ScriptRuntime
{
public:
    ScriptRuntime(Rewriter& rewriter, JSGlobalContextRef context, ScriptHooks& hooks, Flavour flavour);
    ~ScriptRuntime();
    ScriptRuntime(const ScriptRuntime&) = delete;
    ScriptRuntime& operator=(const ScriptRuntime&) = delete;

    JSGlobalContextRef context() const;
    FrameStack& frames();
    SourceTable& sources();

    // Running script ----------------------------------------------------------------------------

    /**
     * Evaluates a script; its value is the completion value. A script with import or export
     * declarations stays a script. `thisObject` null means the global object. A syntax error gives
     * the engine's SyntaxError, with "line" and "sourceId".
     */
    Outcome evaluate(const QString& text, const QString& url, JSObjectRef thisObject = nullptr);

    /** Calls a function object from C++. */
    Outcome call(JSObjectRef function, JSObjectRef thisObject, const std::vector<JSValueRef>& arguments);
    Outcome construct(JSObjectRef constructor, const std::vector<JSValueRef>& arguments);

    /** Any other use of the C API that can run script: conversions, property access, ... */
    Outcome run(const std::function<JSValueRef(JSValueRef* exception)>& action);

    /** Whether a text parses as a script or as a module; never runs it and tells no hook. */
    SyntaxReport checkSyntax(const QString& text);

    // Hooks -------------------------------------------------------------------------------------

    /**
     * Raises or lowers the flag. Raising announces the frames that are entered, outermost first,
     * before it returns; after lowering, a listener forgets the frames it knows.
     */
    void setHooksWanted(bool wanted);
    bool hooksWanted() const;

    // Frames ------------------------------------------------------------------------------------

    int line(int frame) const;
    /** 0 when the frame has no known source. */
    int sourceId(int frame) const;
    /** Null for frames without a known function. */
    const FunctionInfo* function(int frame) const;

    /** The declaration of a function object; null for the engine's own functions and other objects. */
    const FunctionInfo* functionOf(JSObjectRef object) const;

    /**
     * Null where there is none to be had: a derived constructor before `super` returns. In the fast
     * flavour a plain function that never mentions `this` answers the global object.
     */
    JSValueRef thisAt(int frame) const;

    // Debug flavour only: empty answers in the fast one ---------------------------------------------

    /** The variables of a frame, one list a scope, innermost scope first. */
    std::vector<std::vector<Variable>> variablesAt(int frame);
    /** Assigns as script would: a constant or an uninitialised variable throws. */
    Outcome setVariable(int frame, const QString& name, JSValueRef value);
    /** Evaluates an expression with the frame's variables and its `this`. No hook is called. */
    Outcome evaluateInFrame(int frame, const QString& expression);

    // C++ exceptions and termination ------------------------------------------------------------------

    /**
     * For a catch (...) in a native function that script called: keeps the exception and returns the
     * value to put into `*exception`. Script cannot catch it (its finally blocks run).
     */
    JSValueRef carryCurrentException();
    bool carriesException() const;

    /**
     * After `seconds` of running, and again after each further such time, `shouldStop` is asked; when
     * it answers true (or is empty) the run ends with an exception that script cannot catch and that
     * runs no finally block. The runtime stays usable. Holds for the context group.
     */
    void setTimeLimit(double seconds, std::function<bool()> shouldStop = {});
    void clearTimeLimit();
    /** For a native function that script called: ends the run as the time limit does, but through the finally
     *  blocks. Returns the value to put into `*exception`. */
    JSValueRef stop();
    /** Whether the last outermost run was ended by the time limit or by stop(). */
    bool wasStopped() const;

    /** Before a collection: lets go of what left frames still hold. */
    void dropDeadFrames();

    class Private;

private:
    std::unique_ptr<Private> d;
};

} // namespace KJS::Rewriting
