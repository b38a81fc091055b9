#include "interpreter/js/bridge/jsapplicationcontext.h"

#include "interpreter/base/dummyrunnerinterface.h"
#include "interpreter/base/interpreter.h"
#include "interpreter/js/scriptobject/jsutils.h"

namespace Torvix {

namespace {

using Context = const SharedPtr<ApplicationContext>&;

/** The properties that are computed on each read. */
struct PropertyRow
{
    KJS::Identifier name;
    KJS::Value (*read)(KJS::ExecState*, Context);
};

const std::vector<PropertyRow>& properties()
{
    static const std::vector<PropertyRow> table = {
        {"name", [](KJS::ExecState*, Context c) -> KJS::Value { return KJS::String(c->name); }},
        {"commandLine", [](KJS::ExecState*, Context c) -> KJS::Value { return KJS::String(c->commandLine); }},
        {"osName",
         [](KJS::ExecState*, Context c) -> KJS::Value {
             return KJS::String(applicationRunner()->operatingSystemName(c));
         }},
        {"pid",
         [](KJS::ExecState*, Context c) -> KJS::Value {
             return KJS::Number(applicationRunner()->processId(c));
         }},
        {"cwd",
         [](KJS::ExecState*, Context c) -> KJS::Value {
             return KJS::String(applicationRunner()->workingDirectory(c));
         }},
        {"host",
         [](KJS::ExecState*, Context c) -> KJS::Value { return KJS::String(applicationRunner()->host(c)); }},
        {"port",
         [](KJS::ExecState*, Context c) -> KJS::Value { return KJS::Number(applicationRunner()->port(c)); }},
        {"isRunning",
         [](KJS::ExecState*, Context c) -> KJS::Value {
             return KJS::Boolean(applicationRunner()->isRunning(c));
         }},
        {"startTime",
         [](KJS::ExecState* exec, Context c) -> KJS::Value { return dateValue(exec, c->startTime); }},
        {"usedMemory",
         [](KJS::ExecState*, Context c) -> KJS::Value {
             return KJS::Number(applicationRunner()->usedMemory(c));
         }},
        {"totalTime",
         [](KJS::ExecState*, Context c) -> KJS::Value {
             return KJS::Number(applicationRunner()->totalTime(c));
         }},
    };
    return table;
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

// environmentVariable has length 0 although it needs an argument: intended.
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

const KJS::ClassInfo JsApplicationContextImp::info = {"ApplicationContext", nullptr};

JsApplicationContextImp::JsApplicationContextImp(KJS::ExecState*, SharedPtr<ApplicationContext> context)
    : m_context(std::move(context))
{
    putFunctions(this, methods);
}

JsApplicationContextImp::~JsApplicationContextImp() = default;

KJS::Value JsApplicationContextImp::get(KJS::ExecState* exec, const KJS::Identifier& name) const
{
    for (const PropertyRow& row : properties()) {
        if (row.name == name)
            return row.read(exec, m_context);
    }
    return ObjectImp::get(exec, name);
}

SharedPtr<ApplicationContext> unwrapAppContext(const KJS::Value& value)
{
    const KJS::Object object = KJS::Object::dynamicCast(value);
    if (object.inherits(&JsApplicationContextImp::info))
        return static_cast<JsApplicationContextImp*>(object.imp())->context();
    return new ApplicationContext;
}

} // namespace Torvix
