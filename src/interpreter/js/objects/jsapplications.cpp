#include "interpreter/js/objects/jsapplications.h"

#include "engine/list.h"
#include "interpreter/base/runnerinterface.h"
#include "interpreter/js/bridge/jsapplicationcontext.h"
#include "interpreter/js/scriptobject/jsutils.h"

namespace Torvix {

namespace {

KJS::Value wrapContext(KJS::ExecState* exec, const SharedPtr<ApplicationContext>& context)
{
    return new JsApplicationContextImp(exec, context);
}

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
    const SharedPtr<ApplicationContext> context = applicationRunner()->startApplication(
        launch.application, launch.second, launch.third, launch.fourth, &error);
    return launched(exec, context, error, "startApplication() failed");
}

KJS::Value jsAttachToApplication(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    // Counted after their conversion, so what a conversion throws is told first, unlike in startApplication.
    const LaunchArguments launch(exec, args);
    if (exec->hadException())
        return KJS::Undefined();
    if (args.size() > 4)
        return syntaxError(exec, "attachToApplication() takes between 1 and 4 arguments");
    if (launch.application.isEmpty())
        return generalError(exec, QStringLiteral("empty application specified to attachToApplication()"));
    QString error;
    const SharedPtr<ApplicationContext> context = applicationRunner()->attachToApplication(
        launch.application, launch.second, launch.third, launch.fourth, &error);
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
    const SharedPtr<ApplicationContext> context =
        applicationRunner()->waitForApplicationLaunch(timeout, &error);
    // Here the runner always has a text.
    return launched(exec, context, error, "");
}

KJS::Value jsSetApplicationContext(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.size() > 1)
        return syntaxError(exec, "setApplicationContext(context)");
    SharedPtr<ApplicationContext> context = applicationRunner()->defaultApplicationContext();
    if (!args.isEmpty()) {
        context = unwrapAppContext(args[0]);
        if (!context->isValid())
            return typeError(exec, QStringLiteral("Invalid type passed to setApplicationContext()"));
    }
    if (!applicationRunner()->setCurrentApplicationContext(context))
        return typeError(exec, QStringLiteral("Cannot switch to invalid application context"));
    return KJS::Undefined();
}

KJS::Value jsApplicationContext(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.size() != 1)
        return syntaxError(exec, "applicationContext() takes one argument");
    if (args[0].dispatchType() != KJS::StringType)
        return typeError(exec, QStringLiteral("applicationContext() argument has to be of type string"));
    return wrapContext(exec, applicationRunner()->applicationContext(args[0].toString(exec).qstring()));
}

KJS::Value jscurrentApplicationContext(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (!args.isEmpty())
        return syntaxError(exec, "currentApplicationContext()");
    return wrapContext(exec, applicationRunner()->applicationContext(QString()));
}

KJS::Value jsdefaultApplicationContext(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (!args.isEmpty())
        return syntaxError(exec, "defaultApplicationContext()");
    return wrapContext(exec, applicationRunner()->defaultApplicationContext());
}

KJS::Value jsApplicationContextList(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (!args.isEmpty())
        return syntaxError(exec, "applicationContextList()");
    KJS::Object array = emptyArray(exec);
    unsigned index = 0;
    for (const SharedPtr<ApplicationContext>& context : applicationRunner()->applicationContexts())
        array.put(exec, index++, wrapContext(exec, context));
    return array;
}

} // namespace Torvix
