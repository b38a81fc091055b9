#pragma once

#include "engine/context.h"
#include "engine/value.h"

namespace KJS {

class Interpreter;

/**
 * Where script runs, and the exception that is pending there. Each entered script frame has one; a
 * native function gets the one of the code that called it. Outside any frame there is
 * Interpreter::globalExec(). The pointer stays valid until the frame is left; the global one lives as
 * long as its interpreter.
 *
 * An exception that a native function leaves here is what its script caller sees. An exception of
 * script that C++ called arrives here and stays until it is cleared.
 */
class TORVIXKJS_EXPORT ExecState
{
public:
    Interpreter* interpreter() const { return m_interpreter; }

    /** The frame; a null context (no running code) for the global exec state. */
    Context context() const { return Context(m_interpreter, m_frame); }

    bool hadException() const { return !m_exception.isNull(); }
    /** The null value when none is pending. */
    const Value& exception() const { return m_exception; }
    void setException(const Value& exception) { m_exception = exception; }
    void clearException() { m_exception = Value(); }

private:
    friend class Runtime;
    ExecState(Interpreter* interpreter, int frame) : m_interpreter(interpreter), m_frame(frame) {}

    Interpreter* m_interpreter;
    int m_frame; // 0: the global one
    Value m_exception;
};

} // namespace KJS
