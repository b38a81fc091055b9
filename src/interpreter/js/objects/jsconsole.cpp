#include "interpreter/js/objects/jsconsole.h"

#include "engine/execstate.h"
#include "interpreter/js/scriptobject/jsutils.h"

namespace Torvix {

namespace {

KJS::Value jsConsoleAssert(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.isEmpty() || args.size() > 2)
        return syntaxError(exec, QStringLiteral("Function Console.assert() requires 1 or 2 parameters"));
    if (args[0].toBoolean(exec))
        return KJS::Undefined();
    QString message = QStringLiteral("ERROR: Assertion in script");
    if (args.size() > 1)
        message += QLatin1String(": ") + args[1].toString(exec).qstring();
    if (exec->hadException())
        return exec->exception(); // the message's own toString threw
    return generalError(exec, message);
}

const JsFunctionRow functions[] = {
    {"assert", jsConsoleAssert, 1},
    {nullptr, nullptr, 0},
};

} // namespace

JsConsoleImp::JsConsoleImp(KJS::ExecState*)
{
    putFunctions(this, functions);
}

KJS::Value DeprecatedJsConsoleImp::get(KJS::ExecState* exec, const KJS::Identifier&) const
{
    return referenceError(
        exec, QStringLiteral("The 'Console' object was result of a typo. Please use 'console' instead."));
}

} // namespace Torvix
