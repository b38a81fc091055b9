#include "interpreter/base/scriptcontext.h"

#include "interpreter/base/nativescriptobject.h"
#include "interpreter/base/objectproperties.h"
#include "objectmodel/object.h"

namespace Torvix {

namespace {

ScriptContext* currentContext = nullptr;

} // namespace

/**
 * One running call: starts with a free result and no error, and knows whether an error was left in
 * it. Calls nest on one context, and what an inner one left does not count for the outer one.
 */
class ScriptContext::Execution
{
public:
    explicit Execution(ScriptContext* context) : m_context(context), m_outer(context->m_execution)
    {
        m_context->m_execution = this;
        m_context->clearResult();
        m_context->m_errorMessage.clear();
        m_context->m_errorType = OrdinaryError;
        m_context->m_errorPosition = DebuggerFrame();
    }
    Execution(const Execution&) = delete;
    Execution& operator=(const Execution&) = delete;
    ~Execution() { m_context->m_execution = m_outer; }

    void fail() { m_failed = true; }
    bool failed() const { return m_failed; }

private:
    ScriptContext* m_context;
    Execution* m_outer;
    bool m_failed = false;
};

ScriptContext::ScriptContext() = default;
ScriptContext::~ScriptContext() = default;

ScriptContext* ScriptContext::current()
{
    return currentContext;
}

void ScriptContext::setCurrent(ScriptContext* context)
{
    currentContext = context;
}

ScriptContext::Status ScriptContext::execute(Function function)
{
    Execution execution(this);
    function(this);
    return execution.failed() ? Failed : Succeeded;
}

bool ScriptContext::execute(NativeScriptFunction function)
{
    Execution execution(this);
    return function(this);
}

bool ScriptContext::execute(NativeScriptMethod method, SharedPtr<NativeScriptObject> object)
{
    Execution execution(this);
    return method(this, object);
}

SharedPtr<NativeScriptObject> ScriptContext::execute(NativeScriptConstructor constructor)
{
    Execution execution(this);
    return constructor(this);
}

void ScriptContext::setError(const QString& message, ErrorType type)
{
    m_errorMessage = message;
    m_errorType = type;
    m_errorPosition = DebuggerFrame();
    if (m_execution)
        m_execution->fail();
}

void ScriptContext::setError(const QString& message, const DebuggerFrame& position)
{
    setError(message, OrdinaryError);
    m_errorPosition = position;
}

SharedPtr<ScriptArgument> ScriptContext::argument(int index) const
{
    return index >= 0 && index < argumentCount() ? m_arguments[std::size_t(index)] : nullptr;
}

void ScriptContext::setObjectPropertiesResult(SharedPtr<Object> object)
{
    const Result<SharedPtr<ScriptArgument>> properties = objectPropertiesArgument(*this, object);
    if (properties)
        setResult(*properties);
    else
        setError(properties.error());
}

void ScriptContext::setStackTraceResult(const std::vector<Debugger::Location>& locations)
{
    ScriptArgument::List list;
    list.reserve(locations.size());
    for (const Debugger::Location& location : locations)
        list.push_back(toArgument(location));
    setResult(toArgument(list));
}

void ScriptContext::addGlobalFunction(const QString& name, Function function)
{
    m_globalFunctions.insert(name, function);
}

bool ScriptContext::hasGlobalFunction(const QString& name) const
{
    return m_globalFunctions.contains(name);
}

bool ScriptContext::tryGlobalCall(const QString& name)
{
    const Function function = m_globalFunctions.value(name);
    if (function)
        return execute(function) == Succeeded;
    setError(QStringLiteral("Unknown function '%1'").arg(name));
    return false;
}

void ScriptContext::addMemberFunction(const QString& className, const QString& member, Function function)
{
    m_memberFunctions.insert(qMakePair(className, member), function);
}

ScriptContext::Function ScriptContext::memberFunction(const QString& className, const QString& member) const
{
    return m_memberFunctions.value(qMakePair(className, member));
}

void ScriptContext::addConstant(const QString& name, int value)
{
    m_constants.insert(name, value);
}

bool ScriptContext::hasConstant(const QString& name) const
{
    return m_constants.contains(name);
}

int ScriptContext::constantValue(const QString& name) const
{
    return m_constants.value(name);
}

} // namespace Torvix
