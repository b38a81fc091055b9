#pragma once

#include "engine/export.h"

namespace KJS {

class Completion;
class ExecState;
class Interpreter;
class UString;
class Value;

/**
 * Told of what scripts do; derive, override, attach. The exec states are those of the running frames
 * and stay valid until exitContext. A hook that answers false ends the script: it stops as by
 * Interpreter::interrupt(). Hooks may run script of the same interpreter, which then calls hooks too.
 *
 * Order: sourceParsed comes before any of a text runs. Each frame (program, module, eval code,
 * function) is entered, its statements are announced, each before it runs, and it is left, also when
 * an exception or a `return` ends it. `exception` comes once a throw, while all frames are still there.
 */
class TORVIXKJS_EXPORT Debugger
{
public:
    Debugger();
    Debugger(const Debugger&) = delete;
    Debugger& operator=(const Debugger&) = delete;
    /** Detaches. */
    virtual ~Debugger();

    /** `errorLine` is 0, or the line of the error of a text that cannot be parsed. */
    virtual bool sourceParsed(ExecState* exec, int sourceId, const UString& source, int errorLine);
    /** Not called by this engine: sources stay known as long as the interpreter. */
    virtual bool sourceUnused(ExecState* exec, int sourceId);
    /** `caught`: a script's catch, or a promise, takes it. The base answers true. */
    virtual bool exception(ExecState* exec, const Value& value, bool caught);
    virtual bool atStatement(ExecState* exec);
    /** The frame is there; curStmtFirstLine() is the line of its declaration. */
    virtual bool enterContext(ExecState* exec);
    /** The frame is still there. The completion carries no value. */
    virtual bool exitContext(ExecState* exec, const Completion& completion);

    /**
     * Watches that interpreter from now on, in place of its earlier debugger; frames that are entered
     * are announced by enterContext, outermost first. Null detaches.
     */
    void attach(Interpreter* interpreter);
    Interpreter* interpreter() const { return m_interpreter; }

    /**
     * Whether atStatement, enterContext and exitContext are called; at first they are. Lowered, each
     * statement costs one store only; positions and frames stay exact, and sourceParsed and exception
     * are still called. Lowering calls exitContext for the announced frames, innermost first; raising
     * announces the entered ones again.
     */
    void setHooksWanted(bool wanted);
    bool hooksWanted() const { return m_hooksWanted; }

    /** The id that the next source text of the attached interpreter will get; 0 without one. */
    int nextSourceId() const;

private:
    friend class Runtime;
    Interpreter* m_interpreter = nullptr;
    bool m_hooksWanted = true;
};

} // namespace KJS
