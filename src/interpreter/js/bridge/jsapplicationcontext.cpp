#include "interpreter/js/bridge/jsapplicationcontext.h"

#include "interpreter/base/dummyrunnerinterface.h"
#include "interpreter/base/interpreter.h"
#include "interpreter/js/scriptobject/jsutils.h"

namespace Torvix {

namespace {

KJS::Value scriptValue(const QString& text)
{
    return KJS::String(text);
}
KJS::Value scriptValue(bool truth)
{
    return KJS::Boolean(truth);
}
template <class Number>
KJS::Value scriptValue(Number number)
{
    return KJS::Number(number);
}

/** A member of the context as a property. */
template <auto member>
KJS::Value readMember(KJS::ExecState*, const JsApplicationContextImp& self)
{
    return scriptValue((*self.context()).*member);
}

/** What the runner knows of the context, asked on each read. */
template <auto question>
KJS::Value askRunner(KJS::ExecState*, const JsApplicationContextImp& self)
{
    return scriptValue((applicationRunner()->*question)(self.context()));
}

KJS::Value readStartTime(KJS::ExecState* exec, const JsApplicationContextImp& self)
{
    return dateValue(exec, self.context()->startTime);
}

KJS::Value jsContextToString(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    if (!args.isEmpty())
        return syntaxError(exec, "toString() does not take any parameter");
    return KJS::String(unwrapAppContext(thisObj)->name);
}

KJS::Value jsIsFrozen(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    if (args.size() != 1)
        return syntaxError(exec, "isFrozen() requires a timout in secs as argument");
    if (args[0].dispatchType() != KJS::NumberType)
        return typeError(exec, QStringLiteral("isFrozen() requires a timeout in secs as argument"));
    return KJS::Boolean(applicationRunner()->isFrozen(unwrapAppContext(thisObj), args[0].toInt32(exec)));
}

KJS::Value readStream(KJS::ExecState* exec, const KJS::Object& thisObj, const KJS::List& args,
                      QString (RunnerInterface::*read)(SharedPtr<ApplicationContext>), const char* usage,
                      const char* unavailable)
{
    if (!args.isEmpty())
        return syntaxError(exec, usage);
    const QString text = (applicationRunner()->*read)(unwrapAppContext(thisObj));
    if (text.isNull())
        return generalError(exec, QLatin1String(unavailable));
    return KJS::String(text);
}

KJS::Value jsReadStdout(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    return readStream(exec, thisObj, args, &RunnerInterface::readStandardOutput,
                      "readStdout() doesn't take any arguments", "The AUT standard output is not available.");
}

KJS::Value jsReadStderr(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    return readStream(exec, thisObj, args, &RunnerInterface::readStandardError,
                      "readStderr() doesn't take any arguments", "The AUT standard error is not available.");
}

KJS::Value jsEnvironmentVariable(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    if (args.size() != 1)
        return syntaxError(exec, "requires a variable name");
    const QString name = args[0].toString(exec).qstring();
    if (exec->hadException())
        return KJS::Undefined();
    return KJS::String(applicationRunner()->environmentVariable(unwrapAppContext(thisObj), name));
}

KJS::Value jsDetachContext(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    if (!args.isEmpty())
        return syntaxError(exec, "detach() doesn't take any arguments");
    if (!applicationRunner()->detach(unwrapAppContext(thisObj)))
        return generalError(exec, QStringLiteral("detach() failed"));
    return KJS::Undefined();
}

// The published lengths: environmentVariable has 0 although it needs an argument.
const JsFunctionRow methods[] = {
    {"toString", jsContextToString, 0},
    {"isFrozen", jsIsFrozen, 1},
    {"readStdout", jsReadStdout, 0},
    {"readStderr", jsReadStderr, 0},
    {"environmentVariable", jsEnvironmentVariable, 0},
    {"detach", jsDetachContext, 0},
    {nullptr, nullptr, 0},
};

} // namespace

RunnerInterface* applicationRunner()
{
    static DummyRunnerInterface none;
    RunnerInterface* current = Interpreter::self()->runnerInterface();
    return current ? current : &none;
}

const KJS::ClassInfo JsApplicationContextImp::info = {"ApplicationContext"};

const JsPropertyRow<JsApplicationContextImp> JsApplicationContextImp::properties[] = {
    {"name", readMember<&ApplicationContext::name>},
    {"commandLine", readMember<&ApplicationContext::commandLine>},
    {"osName", askRunner<&RunnerInterface::operatingSystemName>},
    {"pid", askRunner<&RunnerInterface::processId>},
    {"cwd", askRunner<&RunnerInterface::workingDirectory>},
    {"host", askRunner<&RunnerInterface::host>},
    {"port", askRunner<&RunnerInterface::port>},
    {"isRunning", askRunner<&RunnerInterface::isRunning>},
    {"startTime", readStartTime},
    {"usedMemory", askRunner<&RunnerInterface::usedMemory>},
    {"totalTime", askRunner<&RunnerInterface::totalTime>},
    {nullptr},
};

JsApplicationContextImp::JsApplicationContextImp(KJS::ExecState*, SharedPtr<ApplicationContext> context)
    : m_context(std::move(context))
{
    putFunctions(this, methods);
}

JsApplicationContextImp::~JsApplicationContextImp() = default;

SharedPtr<ApplicationContext> unwrapAppContext(const KJS::Value& value)
{
    const auto* handle = unwrap<JsApplicationContextImp>(value);
    return handle ? handle->context() : new ApplicationContext;
}

} // namespace Torvix
