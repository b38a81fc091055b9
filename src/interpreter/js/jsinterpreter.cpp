#include "interpreter/js/jsinterpreter.h"

#include "engine/collector.h"
#include "engine/function.h"
#include "interpreter/js/bindings.h"
#include "interpreter/js/bridge/jsconvert.h"
#include "interpreter/js/bridge/jsscriptargument.h"
#include "interpreter/js/context/jsscriptcontext.h"
#include "interpreter/js/debug/jsdebugger.h"
#include "interpreter/js/errorhints.h"
#include "interpreter/js/jsglobal.h"
#include "interpreter/js/jspromise.h"
#include "interpreter/js/kjs/ourkjsinterpreter.h"
#include "interpreter/js/native/jsnativefunction.h"
#include "interpreter/js/native/jsnativetype.h"
#include "interpreter/js/objects/jstest.h"
#include "interpreter/js/scriptobject/exceptionkeeper.h"
#include "interpreter/js/scriptobject/testoutcome.h"
#include "interpreter/js/steps/stepqueries.h"
#include "interpreter/js/steps/stepscript.h"
#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/object.h"
#include "shared/host/environment.h"
#include "shared/host/realpath.h"

namespace Torvix {

namespace {

QString textOf(KJS::ExecState* exec, const KJS::Value& value)
{
    const ExceptionKeeper keeper(exec);
    return value.toString(exec).qstring();
}

/** A number property above 0, or 0. */
int positiveProperty(KJS::ExecState* exec, const KJS::Object& object, const char* name)
{
    const ExceptionKeeper keeper(exec);
    const KJS::Value value = object.get(exec, name);
    return value.type() == KJS::NumberType ? qMax(0, int(value.toInt32(exec))) : 0;
}

QString defaultModuleDirectory()
{
    return QString::fromStdString(Environment::getVariable("TORVIX_PREFIX")) +
           QStringLiteral("/lib/javascript");
}

/** Gives the debugger's position back after a call from outside. */
class PositionKeeper
{
public:
    explicit PositionKeeper(Debugger* debugger) : m_debugger(debugger), m_frame(debugger->currentFrame()) {}
    PositionKeeper(const PositionKeeper&) = delete;
    PositionKeeper& operator=(const PositionKeeper&) = delete;
    ~PositionKeeper()
    {
        m_debugger->setCurrentLine(m_frame.line);
        m_debugger->setCurrentColumn(m_frame.column);
        m_debugger->setCurrentSourceId(m_frame.sourceId);
    }

private:
    Debugger* m_debugger;
    DebuggerFrame m_frame;
};

} // namespace

// Each step needs the one before it.
JsInterpreter::JsInterpreter(RunnerInterface* runner) : Interpreter(runner)
{
    const KJS::Object global = new JsGlobalImp;
    m_scriptContext = std::make_unique<JSScriptContext>();
    ScriptContext::setCurrent(m_scriptContext.get());
    m_interpreter = std::make_unique<OurKJSInterpreter>(global);
    m_interpreter->setErrorHint(hintForError);
    initNativeTypes(m_interpreter.get());
    // Outside of calls, too, there are conversions to make.
    m_scriptContext->swapExecState(getGlobalExecState());
    initBindings();
    KJS::Object globalObject = m_interpreter->globalObject();
    ExtraFunctionImp::init(m_interpreter.get(), &globalObject, globalFunctions, globalObjects);
    initNativeAPI();
    m_interpreter->evaluate(QString::fromUtf8(stepScript), KJS::Value(), true);
    auto* debugger = new JsDebugger(this);
    debugger->attach(m_interpreter.get());
    setDebugger(debugger);
    addToSearchPath(QFileInfo(defaultModuleDirectory()));
}

JsInterpreter::~JsInterpreter()
{
    clearCallables();
    m_interpreter->clearCallBacks();
    debugger()->initVariableWatcher();
    setLastResult(nullptr);
    m_scriptContext.reset();
    ScriptContext::setCurrent(nullptr);
    m_interpreter.reset();
    while (KJS::Collector::collect()) {
    }
}

JsInterpreter* JsInterpreter::self()
{
    return dynamic_cast<JsInterpreter*>(Interpreter::self());
}

void JsInterpreter::initBindings()
{
    const KJS::Object global = m_interpreter->globalObject();
    static_cast<const JsGlobalImp*>(global.imp())->bindEnumerators(getGlobalExecState());
}

KJS::ExecState* JsInterpreter::getGlobalExecState() const
{
    return m_interpreter->globalExec();
}

void JsInterpreter::keepResult(const KJS::Value& value)
{
    setLastResult(new JSScriptArgument(getGlobalExecState(), value));
}

bool JsInterpreter::evaluate(const QString& code, const QString& fileName, bool, bool silent)
{
    clearError();
    setInterrupted(false);
    setLastResult(nullptr);
    ScriptContext::setCurrent(m_scriptContext.get());
    jsSourceFile = std::make_unique<QString>(realPath(fileName));
    m_interpreter->setSourceName(*jsSourceFile);
    const KJS::Completion completion = m_interpreter->evaluate(code, KJS::Value(), false);
    jsSourceFile.reset();
    if (completion.hasValue()) {
        setResultMessage(textOf(getGlobalExecState(), completion.value()));
        keepResult(completion.value());
    }
    if (completion.complType() != KJS::Throw)
        return true;
    if (!silent)
        fetchErrorInfo(getGlobalExecState(), &completion.value(), nullptr);
    return false;
}

KJS::Value JsInterpreter::evaluateJs(const QString& code, bool* hadValue, const QString&, bool, bool silent)
{
    *hadValue = false;
    clearError();
    setInterrupted(false);
    setLastResult(nullptr);
    ScriptContext::setCurrent(m_scriptContext.get());
    const KJS::Completion completion = m_interpreter->evaluate(code, KJS::Value(), false);
    if (completion.complType() == KJS::Throw) {
        if (!silent)
            fetchErrorInfo(getGlobalExecState(), &completion.value(), nullptr);
    } else if (completion.hasValue()) {
        *hadValue = true;
        keepResult(completion.value());
    }
    return completion.value();
}

/** The function of that name, or a null object with the error message set. */
KJS::Object JsInterpreter::findCallable(KJS::ExecState* exec, const QString& name)
{
    const KJS::Value property = m_interpreter->globalObject().get(exec, KJS::Identifier(name));
    KJS::Object function = KJS::Object::dynamicCast(property);
    if (property.isUndefined()) {
        function = m_interpreter->callBack(name);
        if (function.isNull()) {
            setErrorMessage(QStringLiteral("Can't find function '%1'").arg(name));
            return KJS::Object();
        }
    }
    if (!function.isNull() && function.implementsCall())
        return function;
    setErrorMessage(QStringLiteral("'%1' is not a function").arg(name));
    return KJS::Object();
}

bool JsInterpreter::call(const QString& name, const ObjectList& args)
{
    const PositionKeeper position(debugger());
    clearError();
    setInterrupted(false);
    KJS::ExecState* callInProgress = m_interpreter->innermostCall();
    KJS::ExecState* exec = callInProgress ? callInProgress : getGlobalExecState();
    KJS::Object function = findCallable(exec, name);
    if (function.isNull())
        return false;
    exec->clearException();
    KJS::List list;
    list.reserve(args.size());
    for (const SharedPtr<Object>& arg : args)
        list.append(jsNatify(exec, arg));
    if (exec->context().isNull() && function.inherits(&KJS::DeclaredFunctionImp::info)) {
        const auto* declared = static_cast<const KJS::DeclaredFunctionImp*>(function.imp());
        debugger()->setCurrentLine(declared->declarationLine());
        debugger()->setCurrentSourceId(declared->sourceId());
    }
    KJS::Object global = m_interpreter->globalObject();
    const KJS::Value answer = function.call(exec, global, list);
    if (!callInProgress)
        awaitPromise(exec, answer);
    if (!exec->hadException())
        return true;
    bool isTestOutcome = false;
    fetchErrorInfo(exec, nullptr, &isTestOutcome);
    if (isTestOutcome)
        clearError();
    return isTestOutcome;
}

bool JsInterpreter::hasFunction(const QString& name) const
{
    KJS::ExecState* exec = getGlobalExecState();
    const ExceptionKeeper keeper(exec);
    const KJS::Object function =
        KJS::Object::dynamicCast(m_interpreter->globalObject().get(exec, KJS::Identifier(name)));
    return !function.isNull() && function.implementsCall();
}

std::vector<Gherkin::ScriptLocation> JsInterpreter::matchingSteps(const Gherkin::Step& step) const
{
    return findMatchingSteps(getGlobalExecState(), step);
}

QStringList JsInterpreter::registeredStepPatterns(Gherkin::StepType type) const
{
    return findStepPatterns(getGlobalExecState(), type);
}

bool JsInterpreter::checkSyntax(const QString& code, const QString& fileName)
{
    int line = 0;
    KJS::UString message;
    if (m_interpreter->checkSyntax(code, &line, &message))
        return true;
    setErrorFile(fileName);
    setErrorMessage(message.qstring());
    setErrorLine(line);
    return false;
}

void JsInterpreter::fetchErrorInfo(KJS::ExecState* exec, const KJS::Value* exception, bool* isTestOutcome)
{
    const KJS::Value value = exception ? *exception : exec->exception();
    const KJS::Object error = KJS::Object::dynamicCast(value);
    if (error.isNull()) {
        fetchPrimitiveError(exec, value);
        return;
    }
    if (Torvix::isTestOutcome(exec, error)) {
        if (isTestOutcome)
            *isTestOutcome = true;
        return;
    }
    {
        const ExceptionKeeper keeper(exec);
        setErrorMessage(error.get(exec, "message").toString(exec).qstring());
    }
    const int sourceId = positiveProperty(exec, error, "sourceId");
    const QString file = sourceId ? debugger()->findSourceId(sourceId) : fileOfFrozenError(exec, error);
    const bool isEvaluatedText = sourceId && file.isNull() && sourceId < debugger()->nextSourceId();
    if (isEvaluatedText) {
        setErrorPlaceToCaller(); // a line of such a text would be taken for one of the script's file
        return;
    }
    if (const int line = positiveProperty(exec, error, "line"))
        setErrorLine(line);
    if (!file.isNull())
        setErrorFile(file);
}

/** The engine notes an error's source on the error itself, which a frozen one does not allow: it has the
 *  name of the source only. Null for any other object. */
QString JsInterpreter::fileOfFrozenError(KJS::ExecState* exec, const KJS::Object& error) const
{
    const ExceptionKeeper keeper(exec);
    if (!error.get(exec, "sourceId").isUndefined())
        return QString();
    const KJS::Value url = error.get(exec, "sourceURL");
    const QString file = url.type() == KJS::StringType ? url.toString(exec).qstring() : QString();
    return debugger()->sourceIdOf(file) > 0 ? file : QString();
}

void JsInterpreter::setErrorPlaceToCaller()
{
    const std::vector<LineInfo> stack = errorCallStack();
    if (stack.empty())
        return;
    setErrorFile(stack.front().file);
    setErrorLine(stack.front().line);
}

void JsInterpreter::fetchPrimitiveError(KJS::ExecState* exec, const KJS::Value& exception)
{
    setErrorMessage(QStringLiteral("Script threw exception: ") + textOf(exec, exception));
    setErrorPlaceToCaller();
}

void JsInterpreter::setError(const QString& message)
{
    KJS::ExecState* exec = getGlobalExecState();
    exec->setException(KJS::Error::create(exec, KJS::GeneralError, message, -1, -1));
}

bool JsInterpreter::addGlobalFunction(const QString& name, NativeScriptFunction function,
                                      const QStringList& mandatory, const QStringList& optional,
                                      const QString& help)
{
    KJS::Object global = m_interpreter->globalObject();
    global.put(getGlobalExecState(), KJS::Identifier(name),
               new JsNativeFunctionImp(m_interpreter.get(),
                                       JsNativeSignature(name, mandatory, optional, help), function));
    return true;
}

bool JsInterpreter::addType(const QString& name, void* key, const NativeScriptType& type)
{
    auto* prototype = new JsNativeTypePrototypeImp(m_interpreter.get(), type, key, name);
    addMembers(m_interpreter.get(), prototype);
    m_interpreter->addNativeType(key, prototype);
    KJS::Object constructor = new JsNativeTypeImp(m_interpreter.get(), name, prototype, key);
    constructor.putDirect("prototype", prototype, KJS::ReadOnly);
    prototype->putDirect("constructor", constructor, KJS::ReadOnly);
    KJS::Object global = m_interpreter->globalObject();
    global.put(getGlobalExecState(), KJS::Identifier(name), constructor, KJS::ReadOnly);
    return true;
}

bool JsInterpreter::addNamespace(const QString& name, const NativeScriptNamespace& nameSpace)
{
    KJS::Object global = m_interpreter->globalObject();
    global.put(getGlobalExecState(), KJS::Identifier(name),
               new JsNativeNamespaceImp(m_interpreter.get(), name, nameSpace));
    return true;
}

void JsInterpreter::initTestFunctions(TestResult* result)
{
    KJS::ExecState* exec = m_interpreter->globalExec();
    m_interpreter->globalObject().put(exec, "test", new JsTest(exec, result), KJS::None);
    ScriptContext::current()->setTestResult(result);
}

QString JsInterpreter::addToSearchPath(const QFileInfo& directory)
{
    m_interpreter->addToSearchPath(directory);
    return QString();
}

void JsInterpreter::setTimeLimit(int timeLimitMs)
{
    m_interpreter->setTimeLimit(timeLimitMs);
}

void JsInterpreter::interrupt()
{
    setInterrupted(true);
    m_interpreter->interrupt();
}

void JsInterpreter::setScriptArguments(const QString& name, const QStringList& args)
{
    Interpreter::setScriptArguments(name, args);
    m_scriptArguments = args;
    m_scriptArguments.prepend(name);
}

QString JsInterpreter::registerCallBack(const KJS::Object& function)
{
    return m_interpreter->registerCallBack(function);
}

QString JsInterpreter::unregisterCallBack(const KJS::Object& function)
{
    return m_interpreter->unregisterCallBack(function);
}

} // namespace Torvix
