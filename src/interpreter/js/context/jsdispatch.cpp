// How a call gets from the engine into language-neutral code, and its outcome back.

#include "engine/error.h"
#include "engine/execstate.h"
#include "interpreter/js/context/jsscriptcontext.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "interpreter/js/scriptobject/testoutcome.h"

namespace Torvix {

namespace {

/** Sets the context's error as exception; a test outcome gets its mark. */
KJS::Value raiseMarkedError(KJS::ExecState* exec, const ScriptContext& context, KJS::ErrorType type)
{
    static const KJS::Identifier mark(torvixErrorType);
    KJS::Object error = KJS::Error::create(exec, type, context.errorMessage(), -1, -1);
    if (context.errorType() == ScriptContext::VerificationFailure)
        error.put(exec, mark, KJS::String(torvixVerificationFailure));
    else if (context.errorType() == ScriptContext::TestCaseSkipped)
        error.put(exec, mark, KJS::String(torvixTestcaseSkipped));
    exec->setException(error);
    return error;
}

/** Lets conversions of a context run in the caller's state for the length of a call. */
class ExecStateSwap
{
public:
    ExecStateSwap(JSScriptContext* context, KJS::ExecState* exec)
        : m_context(context)
        , m_saved(context->swapExecState(exec))
    {
    }
    ExecStateSwap(const ExecStateSwap&) = delete;
    ExecStateSwap& operator=(const ExecStateSwap&) = delete;
    ~ExecStateSwap() { m_context->swapExecState(m_saved); }

private:
    JSScriptContext* m_context;
    KJS::ExecState* m_saved;
};

} // namespace

KJS::Value JSScriptContext::raiseJSException()
{
    return raiseMarkedError(m_exec, *this, KJS::GeneralError);
}

KJS::Value dispatchGenericScriptFunction(KJS::ExecState* exec, const KJS::List& args,
                                         ScriptContext::Function function)
{
    auto* context = static_cast<JSScriptContext*>(ScriptContext::current());
    ScriptContext::Status status;
    {
        const ExecStateSwap swap(context, exec);
        context->setJSArguments(exec, args);
        status = context->execute(function);
    }
    // Nothing stands for undefined here: a call without a result gives the null value as it is.
    return status == ScriptContext::Failed ? raiseMarkedError(exec, *context, KJS::TypeError)
                                           : context->result();
}

KJS::Value dispatchGenericScriptFunction(KJS::ExecState* exec, ScriptContext::Function function,
                                         const KJS::List& args)
{
    return jsScriptContextCall(exec, args, function);
}

KJS::Value jsScriptContextCall(KJS::ExecState* exec, const KJS::List& args, ScriptContext::Function function)
{
    JSScriptContext context;
    context.setJSArguments(exec, args);
    if (context.execute(function) == ScriptContext::Failed)
        return typeError(exec, context.errorMessage());
    return context.result().isNull() ? KJS::Undefined() : context.result();
}

} // namespace Torvix
