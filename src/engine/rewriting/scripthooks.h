#pragma once

#include "engine/rewriting/sourcetable.h"

#include <JavaScriptCore/JavaScript.h>

#include <QString>

#include <optional>

namespace KJS::Rewriting {

/** An answer that is a text, or an error text that becomes the script's exception. */
struct TextAnswer
{
    bool ok = false;
    QString text; ///< the answer, or the error's message

    static TextAnswer answer(QString text) { return {true, std::move(text)}; }
    static TextAnswer failure(QString message) { return {false, std::move(message)}; }
};

/**
 * What a ScriptRuntime tells and asks. Called on the script's thread, inside script execution; a hook
 * may run script of the same runtime. A C++ exception that leaves a hook ends the run: script
 * cannot catch it, and the outermost native call throws it on.
 *
 * Statement and frame hooks come only while the flag is up (ScriptRuntime::setHooksWanted). Frames
 * are numbered as in FrameStack; in each of the three the frame is the top of the stack.
 */
class ScriptHooks
{
public:
    virtual ~ScriptHooks() = default;

    /** Before a statement runs; the frame's line is that of the statement. */
    virtual void statementReached(int /*frame*/) {}
    /** The frame is on the stack, none of its statements has run; its line is the function's first. */
    virtual void frameEntered(int /*frame*/) {}
    /** The frame is still on the stack. */
    virtual void frameLeft(int /*frame*/) {}

    /**
     * Once for each throw, when it is first seen by script, flag or no flag. The frames from `frame`
     * down are as at the throw. `caught` says whether a catch of script takes it; what leaves an async
     * function counts as not caught.
     */
    virtual void exceptionThrown(JSValueRef /*value*/, bool /*caught*/, int /*frame*/) {}

    /** What to add to the message of an error before script first sees it; mostly an empty string. */
    virtual QString hintFor(const QString& /*message*/) { return QString(); }

    /** After the promise jobs of a run: a rejected promise that nobody handles. */
    virtual void rejectionUnhandled(JSValueRef /*reason*/) {}

    /**
     * A text gets an id, before any of it runs: scripts, modules, evals, Function constructors (whose
     * text is the whole function expression). `errorLine` is 0, or the line of its syntax error when
     * it cannot be parsed. A text given to eval again and again is announced once.
     */
    virtual void sourceParsed(const SourceInfo& /*source*/, int /*errorLine*/) {}

    /** The file (or other key) of a module that `importer` names; equal answers are one module. */
    virtual TextAnswer resolveModule(const QString& name, const QString& importer) = 0;
    /** The text of a module; sourceParsed for that text follows at once. */
    virtual TextAnswer readModule(const QString& path) = 0;

    /** Whether an object answers `in` by hostHasProperty: objects of classes of ours do. */
    virtual bool isHostObject(JSContextRef, JSObjectRef object)
    {
        return JSObjectGetPrivate(object) != nullptr;
    }

    /**
     * `key in object` for a host object; nothing leaves the answer to the engine. The key is a string
     * or a symbol. An exception goes to `*exception`.
     */
    virtual std::optional<bool> hostHasProperty(JSContextRef, JSObjectRef /*object*/, JSValueRef /*key*/,
                                                JSValueRef* /*exception*/)
    {
        return std::nullopt;
    }
};

} // namespace KJS::Rewriting
