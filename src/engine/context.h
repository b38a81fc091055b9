#pragma once

#include "engine/export.h"
#include "engine/value.h"

namespace KJS {

class Interpreter;

/** A script frame: program, module or eval code, or a running function. Valid while it is entered. */
class TORVIXKJS_EXPORT Context
{
public:
    /** No frame. */
    Context() = default;

    /** Whether there is no frame; the other operations then have nothing to tell. */
    bool isNull() const { return m_frame <= 0; }

    /** First line of the running statement, from 1; of the declaration before the first; -1 for none. */
    int curStmtFirstLine() const;
    /** Id of the source text; -1 for code that is not a listed source. */
    int sourceId() const;
    /** Name of the function as declared; null for program code and anonymous functions. */
    UString functionName() const;
    /** 1 for the outermost frame. */
    int depth() const { return m_frame; }

    /**
     * The `this` of the frame. Undefined and null are given as the global object, other primitives
     * boxed. In a derived constructor before `super` returned there is none: a ReferenceError is left
     * in the exec state, and the result is a null object.
     */
    Object getThisBinding(ExecState* exec) const;

    /**
     * An object with the frame's variables: the global object for program code, otherwise a snapshot
     * with the function's variables, inner blocks hiding outer ones, which are empty unless the
     * interpreter was made with InterpreterOptions::debugVariables.
     */
    Object variableObject() const;

    /**
     * Evaluates an expression with the variables (debugVariables only) and the `this` of the frame;
     * no debugger hook is called. The null value after an exception, which is in the exec state.
     */
    Value evaluate(ExecState* exec, const UString& expression) const;

private:
    friend class ExecState;
    friend class Interpreter;
    Context(Interpreter* interpreter, int frame) : m_interpreter(interpreter), m_frame(frame) {}

    Interpreter* m_interpreter = nullptr;
    int m_frame = 0;
};

} // namespace KJS
