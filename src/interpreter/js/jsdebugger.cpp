#include "interpreter/js/jsdebugger.h"

#include "engine/interpreter.h"
#include "interpreter/js/jsinterpreter.h"
#include "interpreter/js/ourkjsinterpreter.h"

namespace Torvix {

KjsDebuggerBase::~KjsDebuggerBase() = default;

JsDebugger::JsDebugger(JsInterpreter* interpreter) : Torvix::Debugger(interpreter)
{
    setHooksWanted(false);
}

JsDebugger::~JsDebugger() = default;

int JsDebugger::nextSourceId() const
{
    return KJS::Debugger::nextSourceId();
}

std::vector<KJS::ExecState*> JsDebugger::execStates() const
{
    KJS::Interpreter* engine = KJS::Debugger::interpreter();
    std::vector<KJS::ExecState*> states;
    const int count = engine ? engine->frameCount() : 0;
    states.reserve(std::size_t(count));
    for (int frame = 1; frame <= count; ++frame)
        states.push_back(engine->frameExec(frame));
    return states;
}

std::vector<LineInfo> JsDebugger::callStack() const
{
    const std::vector<KJS::ExecState*> states = execStates();
    std::vector<LineInfo> stack;
    for (auto state = states.rbegin(); state != states.rend(); ++state) {
        const KJS::Context context = (*state)->context();
        const QString file = findSourceId(context.sourceId());
        if (!file.isNull())
            stack.push_back(LineInfo{file, context.curStmtFirstLine()});
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
