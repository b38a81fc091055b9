#include "interpreter/js/objects/jsapplicationcontext.h"

#include "interpreter/base/dummyrunnerinterface.h"
#include "interpreter/base/interpreter.h"
#include "interpreter/js/context/jsscriptargument.h"
#include "interpreter/js/context/jsscriptcontext.h"
#include "interpreter/js/context/jsutils.h"

namespace Torvix {

namespace {

/** Without a runner scripts are told so by one that has no applications. */
RunnerInterface* runner()
{
    static DummyRunnerInterface none;
    RunnerInterface* current = Interpreter::self()->runnerInterface();
    return current ? current : &none;
}

KJS::Value syntaxError(KJS::ExecState* exec, const char* message)
{
    return argError(exec, KJS::SyntaxError, QLatin1String(message));
}

KJS::Value generalError(KJS::ExecState* exec, const QString& message)
{
    return argError(exec, KJS::GeneralError, message);
}

KJS::Value wrapContext(KJS::ExecState* exec, const SharedPtr<ApplicationContext>& context)
{
    return new JsApplicationContextImp(exec, context);
}

KJS::Value dateValue(KJS::ExecState* exec, const QDateTime& time)
{
    JSScriptContext context;
    context.setJSArguments(exec, KJS::List::empty());
    return static_cast<const JSScriptArgument&>(*context.toArgument(time)).value();
}

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
             return KJS::String(runner()->operatingSystemName(c));
         }},
        {"pid", [](KJS::ExecState*, Context c) -> KJS::Value { return KJS::Number(runner()->processId(c)); }},
        {"cwd",
         [](KJS::ExecState*, Context c) -> KJS::Value { return KJS::String(runner()->workingDirectory(c)); }},
        {"host", [](KJS::ExecState*, Context c) -> KJS::Value { return KJS::String(runner()->host(c)); }},
        {"port", [](KJS::ExecState*, Context c) -> KJS::Value { return KJS::Number(runner()->port(c)); }},
        {"isRunning",
         [](KJS::ExecState*, Context c) -> KJS::Value { return KJS::Boolean(runner()->isRunning(c)); }},
        {"startTime",
         [](KJS::ExecState* exec, Context c) -> KJS::Value { return dateValue(exec, c->startTime); }},
        {"usedMemory",
         [](KJS::ExecState*, Context c) -> KJS::Value { return KJS::Number(runner()->usedMemory(c)); }},
        {"totalTime",
         [](KJS::ExecState*, Context c) -> KJS::Value { return KJS::Number(runner()->totalTime(c)); }},
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
        return argError(exec, KJS::TypeError,
                        QStringLiteral("isFrozen() requires a timeout in secs as argument"));
    return KJS::Boolean(runner()->isFrozen(unwrapAppContext(thisObj), args[0].toInt32(exec)));
}

KJS::Value readStream(KJS::ExecState* exec, const KJS::Object& thisObj, const KJS::List& args,
                      QString (RunnerInterface::*read)(SharedPtr<ApplicationContext>), const char* usage,
                      const char* unavailable)
{
    if (!args.isEmpty())
        return syntaxError(exec, usage);
    const QString text = (runner()->*read)(unwrapAppContext(thisObj));
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
    return KJS::String(runner()->environmentVariable(unwrapAppContext(thisObj), name));
}

KJS::Value jsDetachContext(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    if (!args.isEmpty())
        return syntaxError(exec, "detach() doesn't take any arguments");
    if (!runner()->detach(unwrapAppContext(thisObj)))
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

/** The arguments that starting and attaching have in common; passed on uninterpreted. */
struct LaunchArguments
{
    QString application;
    QString second;
    int third = -1;
    int fourth = -1;

    LaunchArguments(KJS::ExecState* exec, const KJS::List& args)
    {
        if (args.size() > 0)
            application = args[0].toString(exec).qstring();
        if (args.size() > 1)
            second = args[1].toString(exec).qstring();
        if (args.size() > 2)
            third = args[2].toInt32(exec);
        if (args.size() > 3)
            fourth = args[3].toInt32(exec);
    }
};

KJS::Value launched(KJS::ExecState* exec, const SharedPtr<ApplicationContext>& context, const QString& error,
                    const char* fallback)
{
    if (context->isValid())
        return wrapContext(exec, context);
    return generalError(exec, error.isEmpty() ? QString(QLatin1String(fallback)) : error);
}

} // namespace

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

KJS::Value jsStartApplication(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.isEmpty() || args.size() > 4)
        return syntaxError(exec, "startApplication() takes between 1 and 4 arguments");
    const LaunchArguments launch(exec, args);
    if (exec->hadException())
        return KJS::Undefined();
    if (launch.application.isEmpty())
        return generalError(exec, QStringLiteral("empty application specified to startApplication()"));
    QString error;
    const SharedPtr<ApplicationContext> context =
        runner()->startApplication(launch.application, launch.second, launch.third, launch.fourth, &error);
    return launched(exec, context, error, "startApplication() failed");
}

KJS::Value jsAttachToApplication(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    // The arguments are converted before they are counted, unlike those of startApplication: intended.
    const LaunchArguments launch(exec, args);
    if (exec->hadException())
        return KJS::Undefined();
    if (args.size() > 4)
        return syntaxError(exec, "attachToApplication() takes between 1 and 4 arguments");
    if (launch.application.isEmpty())
        return generalError(exec, QStringLiteral("empty application specified to attachToApplication()"));
    QString error;
    const SharedPtr<ApplicationContext> context =
        runner()->attachToApplication(launch.application, launch.second, launch.third, launch.fourth, &error);
    return launched(exec, context, error, "attachToApplication() failed");
}

KJS::Value jsWaitForApplicationLaunch(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.size() > 1)
        return syntaxError(exec, "waitForApplicationLaunch() takes zero or one argument");
    const int timeout = args.isEmpty() ? -1 : args[0].toInt32(exec);
    if (exec->hadException())
        return KJS::Undefined();
    QString error;
    const SharedPtr<ApplicationContext> context = runner()->waitForApplicationLaunch(timeout, &error);
    // There is no text of its own for an empty error: intended.
    return launched(exec, context, error, "");
}

KJS::Value jsSetApplicationContext(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.size() > 1)
        return syntaxError(exec, "setApplicationContext(context)");
    SharedPtr<ApplicationContext> context = runner()->defaultApplicationContext();
    if (!args.isEmpty()) {
        context = unwrapAppContext(args[0]);
        if (!context->isValid())
            return argError(exec, KJS::TypeError,
                            QStringLiteral("Invalid type passed to setApplicationContext()"));
    }
    if (!runner()->setCurrentApplicationContext(context))
        return argError(exec, KJS::TypeError, QStringLiteral("Cannot switch to invalid application context"));
    return KJS::Undefined();
}

KJS::Value jsApplicationContext(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.size() != 1)
        return syntaxError(exec, "applicationContext() takes one argument");
    if (args[0].dispatchType() != KJS::StringType)
        return argError(exec, KJS::TypeError,
                        QStringLiteral("applicationContext() argument has to be of type string"));
    return wrapContext(exec, runner()->applicationContext(args[0].toString(exec).qstring()));
}

KJS::Value jscurrentApplicationContext(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (!args.isEmpty())
        return syntaxError(exec, "currentApplicationContext()");
    return wrapContext(exec, runner()->applicationContext(QString()));
}

KJS::Value jsdefaultApplicationContext(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (!args.isEmpty())
        return syntaxError(exec, "defaultApplicationContext()");
    return wrapContext(exec, runner()->defaultApplicationContext());
}

KJS::Value jsApplicationContextList(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (!args.isEmpty())
        return syntaxError(exec, "applicationContextList()");
    KJS::Object array = emptyArray(exec);
    unsigned index = 0;
    for (const SharedPtr<ApplicationContext>& context : runner()->applicationContexts())
        array.put(exec, index++, wrapContext(exec, context));
    return array;
}

} // namespace Torvix
