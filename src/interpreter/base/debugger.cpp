#include "interpreter/base/debugger.h"

#include "interpreter/base/interpreter.h"

namespace Torvix {

Debugger::Debugger(Interpreter* interpreter) : m_interpreter(interpreter) {}

Debugger::~Debugger() = default;

Debugger* Debugger::self()
{
    Interpreter* interpreter = Interpreter::self();
    return interpreter ? interpreter->debugger() : nullptr;
}

void Debugger::setCurrentLine(int line)
{
    m_current.line = line;
}

void Debugger::setCurrentColumn(int column)
{
    m_current.column = column;
}

void Debugger::setCurrentSourceId(int sourceId)
{
    m_current.sourceId = sourceId;
}

void Debugger::stop()
{
    Q_EMIT stopped();
}

void Debugger::stopWithObjectName(const QString& objectName, const QString& message)
{
    Q_EMIT stoppedAtObjectName(objectName, message);
}

void Debugger::run()
{
    setDebuggerMode(DbgBreakOnly);
}

void Debugger::next(int depth)
{
    m_nextDepth = depth;
    setDebuggerMode(DbgNext);
}

void Debugger::step()
{
    setDebuggerMode(DbgStep);
}

std::vector<VariableRow> Debugger::variableBindings(const QString&) const
{
    return {};
}

void Debugger::initVariableWatcher() {}

void Debugger::setInteractive(bool interactive)
{
    m_interactive = interactive;
}

void Debugger::setDebuggerMode(DbgMode mode)
{
    m_mode = mode;
}

void Debugger::setBreakPoint(int line, int sourceId, bool set)
{
    if (set)
        m_breakPoints.insert(qMakePair(sourceId, line));
    else
        m_breakPoints.remove(qMakePair(sourceId, line));
}

bool Debugger::hasBreakPoint(int line, int sourceId) const
{
    return m_breakPoints.contains(qMakePair(sourceId, line));
}

void Debugger::popFrame()
{
    if (!m_frames.empty())
        m_frames.pop_back();
}

void Debugger::pushFrameAndSetCurrent(int line, int column, int sourceId)
{
    pushFrame(m_current);
    setCurrentLine(line);
    setCurrentColumn(column);
    setCurrentSourceId(sourceId);
}

void Debugger::popFrameAndSetCurrent()
{
    if (m_frames.empty())
        return;
    const DebuggerFrame caller = m_frames.back();
    m_frames.pop_back();
    setCurrentLine(caller.line);
    setCurrentColumn(caller.column);
    setCurrentSourceId(caller.sourceId);
}

std::vector<LineInfo> Debugger::callStack() const
{
    std::vector<LineInfo> stack;
    stack.reserve(m_frames.size() + 1);
    const auto add = [this, &stack](const DebuggerFrame& frame) {
        const auto source = m_sources.constFind(frame.sourceId);
        if (source != m_sources.constEnd())
            stack.push_back(LineInfo{*source, frame.line});
    };
    add(m_current);
    // The outermost frame is where the engine was entered from outside: no code of the script.
    for (auto frame = m_frames.size(); frame > 1; --frame)
        add(m_frames[frame - 1]);
    return stack;
}

void Debugger::setCode(int sourceId, const QString& fileName)
{
    m_sources.insert(sourceId, fileName);
}

QString Debugger::findSourceId(int sourceId) const
{
    return m_sources.value(sourceId);
}

int Debugger::sourceIdOf(const QString& fileName) const
{
    int newest = -1;
    for (auto source = m_sources.cbegin(); source != m_sources.cend(); ++source) {
        if (source.key() > newest && source.value() == fileName)
            newest = source.key();
    }
    return newest;
}

} // namespace Torvix
