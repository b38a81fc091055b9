#pragma once

#include "engine/debugger.h"
#include "interpreter/base/debugger.h"

#include <vector>

namespace Torvix {

class Interpreter;

/** The engine's hooks. */
class KjsDebuggerBase : public KJS::Debugger
{
public:
    ~KjsDebuggerBase() override;
};

/**
 * Knows where the engine's scripts stand.
 *
 * Each source that comes from a file is tied to it, and an uncaught exception leaves its call stack
 * with the interpreter. Positions are the engine's own, exact without a hook at each statement; those
 * hooks are switched off.
 */
class JsDebugger : public Torvix::Debugger, public KjsDebuggerBase
{
    Q_OBJECT

public:
    explicit JsDebugger(Interpreter* interpreter);
    ~JsDebugger() override;

    int nextSourceId() const override;
    std::vector<LineInfo> callStack() const override;

    /** State of an entered frame, 0 being the innermost; null beyond the outermost. */
    KJS::ExecState* execState(unsigned depth) const;

    bool sourceParsed(KJS::ExecState* exec, int sourceId, const KJS::UString& source, int errorLine) override;
    bool exception(KJS::ExecState* exec, const KJS::Value& value, bool caught) override;
};

} // namespace Torvix
