#pragma once

#include "engine/completion.h"
#include "engine/error.h"
#include "engine/execstate.h"
#include "engine/object.h"

#include <memory>

namespace KJS {

struct InterpreterOptions
{
    /**
     * Whether the variables of script frames can be read and expressions evaluated there
     * (Context::variableObject, Context::evaluate). Tight loops then cost 3 to 20 times as much.
     */
    bool debugVariables = false;
    /** Folder of rewritten texts; null: `torvix/scripts` in the user's cache folder; empty: none. */
    QString cacheFolder;
};

/**
 * A script world: global object, built-ins, and what its scripts made. Any number of them can exist in
 * a process, one may be used inside a call of another; objects of one are not for the other. All
 * use is on one thread, except interrupt().
 *
 *     KJS::Interpreter interpreter;
 *     KJS::Completion done = interpreter.evaluate("6 * 7");
 *     if (done.complType() == KJS::Throw)
 *         qWarning() << done.value().toString(interpreter.globalExec()).qstring();
 *
 * Promise jobs run when the outermost evaluate or call (from C++ outside any script) ends. The
 * destructor destroys every C++ object of its scripts that no Value holds; one that is still held
 * lives on without script properties until its last Value goes.
 */
class TORVIXKJS_EXPORT Interpreter
{
public:
    /**
     * `global` is to be the global object: its `get` is asked for names that neither a script
     * declared nor the global object has as an own property, and its hasProperty and propList serve
     * `in` and enumeration. It must be new (not in use by an interpreter). A null object makes a
     * plain one.
     */
    explicit Interpreter(const Object& global = Object(), const InterpreterOptions& options = {});
    virtual ~Interpreter();
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    /** Called while the collector marks, see ValueImp::mark. */
    virtual void mark();
    /** A number for the class, for those who derive; 0 here. */
    virtual int rtti();

    /**
     * The file of a module that script names: an absolute path, by which the module is known from
     * then on. On failure a null string, with the message of the script's exception in `*error`.
     * The base knows no modules.
     */
    virtual UString searchModule(const UString& name, UString* error);
    /** The text of a module that searchModule found; a null string with `*error` on failure. */
    virtual UString loadModuleCode(const UString& path, UString* error);

    /**
     * Parses and runs a script. `thisValue` null (or no object) means the global object. `internal`
     * is for texts of the tool itself: the debugger is not told of them, their frames have source id
     * -1. Names declared by one text are seen by the later ones. A C++ exception of a native
     * function leaves through here.
     */
    Completion evaluate(const UString& code, const Value& thisValue = Value(), bool internal = false);
    /** Names the next text for stack traces and SourceURL (a path, say); it holds for one evaluate. */
    void setSourceName(const UString& name);

    /** Whether the text parses; on false, from 1, the line, and the engine's message. Never runs it. */
    bool checkSyntax(const UString& code, int* line, UString* message);

    /** What is asked for a text to add to an error's message, given the message, when the error is first
     *  seen after its throw; an empty string for nothing. An error may be asked for again. */
    void setErrorHint(QString (*hint)(const QString& message));

    ExecState* globalExec();
    Object globalObject() const;

    /** The exec state of the innermost running frame; the global one when no script runs. */
    ExecState* currentExec();
    /** Number of entered frames, and the exec state of each: 1 is the outermost. */
    int frameCount() const;
    ExecState* frameExec(int frame);

    /** Name of a source, by its id; a null string when unknown. */
    UString sourceName(int sourceId) const;

    // Stopping ------------------------------------------------------------------------------------

    /**
     * Ends a script that runs (an outermost evaluate or call) longer than that; 0: no limit. The
     * result is a Throw with an Error "Script stopped after N ms"; catch and finally blocks of the
     * script do not run, and the interpreter stays usable. Native calls in progress are not broken
     * off.
     */
    void setTimeLimit(int timeLimitMs);
    /** Ends the running script in the same way, with "Script interrupted". Callable from any thread. */
    void interrupt();
    /** Whether the running script is to end for either reason, which happens once script has run for
     *  some time. A native function that waits asks for itself. */
    bool isStopping() const;

    // The built-ins as they were made, whatever scripts do to the global names -----------------------

    Object builtinObject() const;
    Object builtinFunction() const;
    Object builtinArray() const;
    Object builtinBoolean() const;
    Object builtinString() const;
    Object builtinNumber() const;
    Object builtinDate() const;
    Object builtinRegExp() const;
    /** The constructor of that class of errors. */
    Object builtinError(ErrorType type = GeneralError) const;

    Object builtinObjectPrototype() const;
    Object builtinFunctionPrototype() const;
    Object builtinArrayPrototype() const;
    Object builtinBooleanPrototype() const;
    Object builtinStringPrototype() const;
    Object builtinNumberPrototype() const;
    Object builtinDatePrototype() const;
    Object builtinRegExpPrototype() const;
    Object builtinErrorPrototype(ErrorType type = GeneralError) const;

protected:
    /** For extensions without a new virtual operation; does nothing here. */
    virtual void virtual_hook(int id, void* data);

private:
    friend class Runtime;
    std::unique_ptr<class Runtime> d;
};

} // namespace KJS
