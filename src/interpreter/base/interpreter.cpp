#include "interpreter/base/interpreter.h"

#include "interpreter/base/debugger.h"

#include <QVector>

namespace Torvix {

namespace {

Interpreter* current = nullptr;

QVector<Interpreter::NativeApiInstaller>& installers()
{
    static QVector<Interpreter::NativeApiInstaller> list;
    return list;
}

} // namespace

Interpreter::Interpreter(RunnerInterface* runner) : m_runner(runner)
{
    current = this;
}

Interpreter::~Interpreter()
{
    if (current == this)
        current = nullptr;
}

Interpreter* Interpreter::self()
{
    return current;
}

void Interpreter::setSelf(Interpreter* interpreter)
{
    current = interpreter;
}

void Interpreter::registerNativeAPI(NativeApiInstaller installer)
{
    if (!installers().contains(installer))
        installers().append(installer);
}

void Interpreter::initNativeAPI()
{
    for (NativeApiInstaller install : installers())
        install(this);
}

int Interpreter::errorLine() const
{
    return m_errorLine;
}

QString Interpreter::errorFile(const QString& fallback) const
{
    return m_errorFile.isEmpty() ? fallback : m_errorFile;
}

void Interpreter::initUtilFunctions() {}

void Interpreter::setScriptArguments(const QString& name, const QStringList& arguments)
{
    m_scriptName = name;
    m_scriptArguments = arguments;
}

QString Interpreter::registerCallable(SharedPtr<ScriptArgument> callable)
{
    if (!callable || !callable->isCallable())
        return QString();
    const QString identifier = callable->callableIdentifier();
    m_callables.insert(identifier, callable);
    return identifier;
}

void Interpreter::unregisterCallable(const QString& identifier)
{
    m_callables.remove(identifier);
}

bool Interpreter::isCallableAvailable(const QString& identifier) const
{
    return m_callables.contains(identifier);
}

SharedPtr<ScriptArgument> Interpreter::invokeCallable(const QString& identifier,
                                                      const ScriptArgument::List& arguments, QString* error)
{
    // The copy keeps the callable alive when it unregisters itself.
    const SharedPtr<ScriptArgument> callable = m_callables.value(identifier);
    if (callable)
        return callable->invoke(arguments, error);
    *error = QStringLiteral("No function is registered as '%1'").arg(identifier);
    return nullptr;
}

void Interpreter::clearCallables()
{
    m_callables.clear();
}

void Interpreter::clearError()
{
    m_errorMessage.clear();
    m_errorLine = 0;
    m_errorFile.clear();
    m_errorCallStack.clear();
}

void Interpreter::setErrorMessage(const QString& message)
{
    m_errorMessage = message;
}

void Interpreter::setResultMessage(const QString& message)
{
    m_resultMessage = message;
}

void Interpreter::setErrorLine(int line)
{
    m_errorLine = line;
}

void Interpreter::setErrorFile(const QString& file)
{
    m_errorFile = file;
}

void Interpreter::setDebugger(Debugger* debugger)
{
    if (debugger != m_debugger.get())
        m_debugger.reset(debugger);
}

void Interpreter::addDefaultSearchPaths(const QFileInfo& directory)
{
    addToSearchPath(directory);
}

} // namespace Torvix
