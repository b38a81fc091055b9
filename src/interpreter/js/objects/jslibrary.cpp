#include "interpreter/js/objects/jslibrary.h"

#include "interpreter/base/debugger.h"
#include "interpreter/js/objects/jsscheduler.h"

#include <QLibrary>

#include <memory>

namespace Torvix {

namespace {

class JsLibraryInstanceImp : public KJS::ObjectImp
{
public:
    static const KJS::ClassInfo info;
    static constexpr const char* invalidObject = "Called on non-Library object";

    JsLibraryInstanceImp(const KJS::Object& prototype, std::unique_ptr<QLibrary> loaded)
        : ObjectImp(prototype)
        , library(std::move(loaded))
    {
    }
    const KJS::ClassInfo* classInfo() const override { return &info; }
    bool isValid() const { return true; }

    const std::unique_ptr<QLibrary> library; ///< its end does not unload the code
};

const KJS::ClassInfo JsLibraryInstanceImp::info = {"Library"};

/** The NAME of "void NAME()"; null for any other text. */
QString functionName(const QString& signature)
{
    const int blank = signature.indexOf(QLatin1Char(' '));
    if (blank <= 0 || signature.left(blank) != QLatin1String("void"))
        return QString();
    const QString call = signature.mid(blank + 1);
    const int parameters = call.indexOf(QLatin1Char('('));
    if (parameters <= 0 || call.mid(parameters) != QLatin1String("()"))
        return QString();
    return call.left(parameters);
}

/** The library that a function is called on; null with the exception set. */
QLibrary* libraryOf(KJS::ExecState* exec, const KJS::Object& thisObj)
{
    const auto* self = unwrapThis<JsLibraryInstanceImp>(exec, thisObj);
    return self ? self->library.get() : nullptr;
}

/** The address of a symbol; null with the exception set, whose text names it as %1. */
QFunctionPointer resolve(KJS::ExecState* exec, QLibrary* library, const QString& symbol, const char* missing)
{
    const QFunctionPointer address = library->resolve(symbol.toUtf8().constData());
    if (!address)
        syntaxError(exec, QString(missing).arg(symbol));
    return address;
}

KJS::Value jsLibraryInvoke(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    if (!hasArguments(exec, args, 1, "invoke() expects a function signature"))
        return exec->exception();
    const QString name = functionName(args[0].toString(exec).qstring());
    if (exec->hadException())
        return exec->exception();
    if (name.isNull())
        return syntaxError(exec, "Only signature currently supported: 'void <func>()' ");
    QLibrary* library = libraryOf(exec, thisObj);
    if (!library)
        return exec->exception();
    const QFunctionPointer function =
        resolve(exec, library, name, "Could not find symbol for function '%1' in library");
    if (!function)
        return exec->exception();
    function();
    return KJS::Undefined();
}

KJS::Value jsLibraryInitModule(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    using InitFunction = void (*)(KJS::ExecState*, KJS::DelayedInvocationScheduler*);

    if (!hasArguments(exec, args, 1, "initModule() requires a module name argument."))
        return exec->exception();
    QLibrary* library = libraryOf(exec, thisObj);
    if (!library)
        return exec->exception();
    const QString symbol = args[0].toString(exec).qstring() + QLatin1String("Init");
    if (exec->hadException())
        return exec->exception();
    const QFunctionPointer init = resolve(exec, library, symbol, "Could not find expected init symbol '%1'.");
    if (!init)
        return exec->exception();
    KJS::ExecState* globalExec = exec->interpreter()->globalExec();
    reinterpret_cast<InitFunction>(init)(globalExec, JsScheduler::instance(Debugger::self(), globalExec));
    // What fails in a module is told in the state that the module knows.
    if (globalExec->hadException() && !exec->hadException()) {
        exec->setException(globalExec->exception());
        globalExec->clearException();
    }
    return exec->hadException() ? exec->exception() : KJS::Undefined();
}

const JsFunctionRow methods[] = {
    {"invoke", jsLibraryInvoke, 1},
    {"initModule", jsLibraryInitModule, 0},
    {nullptr, nullptr, 0},
};

class JsLibraryPrototypeImp : public KJS::ObjectImp
{
public:
    explicit JsLibraryPrototypeImp(KJS::ExecState* exec)
        : ObjectImp(exec->interpreter()->builtinObjectPrototype())
    {
        putFunctions(this, methods);
    }
};

} // namespace

JsLibraryImp::JsLibraryImp(KJS::ExecState* exec) : JsConstructorImp(exec, new JsLibraryPrototypeImp(exec)) {}

KJS::Object JsLibraryImp::construct(KJS::ExecState* exec, const KJS::List& args)
{
    if (!hasArguments(exec, args, 1, "Library constructor() takes a path argument"))
        return KJS::Object();
    const QString path = args[0].toString(exec).qstring();
    if (exec->hadException())
        return KJS::Object();
    auto library = std::make_unique<QLibrary>(path);
    if (!library->load()) {
        generalError(exec, QLatin1String("Failed to open library '") + path + QLatin1Char('\''));
        return KJS::Object();
    }
    return new JsLibraryInstanceImp(instancePrototype(exec), std::move(library));
}

} // namespace Torvix
