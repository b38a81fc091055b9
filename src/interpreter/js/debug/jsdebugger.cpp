#include "interpreter/js/debug/jsdebugger.h"

#include "engine/interpreter.h"
#include "interpreter/base/interpreter.h"
#include "interpreter/js/kjs/ourkjsinterpreter.h"

namespace Torvix {

KjsDebuggerBase::~KjsDebuggerBase() = default;

JsDebugger::JsDebugger(Interpreter* interpreter) : Torvix::Debugger(interpreter)
{
    setHooksWanted(false);
}

JsDebugger::~JsDebugger() = default;

int JsDebugger::nextSourceId() const
{
    return KJS::Debugger::nextSourceId();
}

KJS::ExecState* JsDebugger::execState(unsigned depth) const
{
    KJS::Interpreter* engine = KJS::Debugger::interpreter();
    const int count = engine ? engine->frameCount() : 0;
    return depth < unsigned(count) ? engine->frameExec(count - int(depth)) : nullptr;
}

std::vector<LineInfo> JsDebugger::callStack() const
{
    std::vector<LineInfo> stack;
    for (unsigned depth = 0; const KJS::ExecState* state = execState(depth); ++depth) {
        const KJS::Context context = state->context();
        const QString file = findSourceId(context.sourceId());
        if (!file.isNull())
            stack.push_back(LineInfo{file, context.curStmtFirstLine(), context.functionName().qstring()});
    }
    return stack;
}

bool JsDebugger::sourceParsed(KJS::ExecState*, int sourceId, const KJS::UString&, int)
{
    if (!jsSourceFile)
        return true; // text that is no file, such as what eval is given, stays unknown
    setCode(sourceId, *jsSourceFile);
    jsSourceFile.reset();
    return true;
}

bool JsDebugger::exception(KJS::ExecState* exec, const KJS::Value& value, bool caught)
{
    // Later the frames are gone.
    if (!caught)
        Torvix::Debugger::interpreter()->setErrorCallStack(callStack());
    return KJS::Debugger::exception(exec, value, caught);
}

} // namespace Torvix
