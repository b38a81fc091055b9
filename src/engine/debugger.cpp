#include "engine/debugger.h"

#include "engine/delayedinvocation.h"
#include "engine/jsc/runtime.h"

namespace KJS {

Debugger::Debugger() = default;

Debugger::~Debugger()
{
    attach(nullptr);
}

void Debugger::attach(Interpreter* interpreter)
{
    if (m_interpreter) {
        Runtime* const watched = Runtime::of(m_interpreter);
        watched->setDebugger(nullptr); // before the flag falls: it is told of nothing more
        watched->setHooksWanted(false);
    }
    m_interpreter = interpreter;
    if (!interpreter)
        return;
    Runtime* const runtime = Runtime::of(interpreter);
    if (runtime->debugger())
        runtime->debugger()->attach(nullptr);
    runtime->setDebugger(this);
    runtime->setHooksWanted(m_hooksWanted);
}

void Debugger::setHooksWanted(bool wanted)
{
    m_hooksWanted = wanted;
    if (m_interpreter)
        Runtime::of(m_interpreter)->setHooksWanted(wanted);
}

int Debugger::nextSourceId() const
{
    return m_interpreter ? Runtime::of(m_interpreter)->script().sources().nextSourceId() : 0;
}

bool Debugger::sourceParsed(ExecState*, int, const UString&, int)
{
    return true;
}

bool Debugger::sourceUnused(ExecState*, int)
{
    return true;
}

bool Debugger::exception(ExecState*, const Value&, bool)
{
    return true;
}

bool Debugger::atStatement(ExecState*)
{
    return true;
}

bool Debugger::enterContext(ExecState*)
{
    return true;
}

bool Debugger::exitContext(ExecState*, const Completion&)
{
    return true;
}

DelayedInvocation::~DelayedInvocation() = default;

DelayedInvocationScheduler::~DelayedInvocationScheduler() = default;

} // namespace KJS
