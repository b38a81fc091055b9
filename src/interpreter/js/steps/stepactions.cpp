#include "interpreter/js/steps/stepactions.h"

#include "engine/execstate.h"
#include "engine/interpreter.h"
#include "engine/list.h"
#include "interpreter/base/debugger.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "interpreter/js/scriptobject/testoutcome.h"

namespace Torvix {

using Gherkin::ScriptResult;

namespace {

constexpr const char* multipleMatches = "__TorvixMultipleMatches ";

ScriptResult resultOf(int status, const QString& message = QString())
{
    ScriptResult result;
    result.status = status;
    result.message = message.toStdString();
    return result;
}

KJS::Object tableArray(KJS::ExecState* exec, const QVector<QStringList>& rows)
{
    KJS::Object table = emptyArray(exec);
    for (int row = 0; row < rows.size(); ++row)
        table.put(exec, unsigned(row), arrayFromQStringList(exec, rows[row]));
    return table;
}

} // namespace

/** What a step or hook function gets as its first argument. */
class JsStepFindAndExecuteFn::JsContextImp : public KJS::ObjectImp
{
public:
    explicit JsContextImp(KJS::Value* userData) : m_userData(userData) {}

    void put(KJS::ExecState* exec, const KJS::Identifier& name, const KJS::Value& value,
             int attributes = KJS::None) override
    {
        static const KJS::Identifier userData("userData");
        if (!m_userData) {
            generalError(exec, QStringLiteral("Failure to set property. Context is destroyed."));
        } else if (name == userData) {
            *m_userData = value;
            ObjectImp::put(exec, name, value, attributes);
        } else {
            generalError(exec,
                         QStringLiteral("Failure to set property. Use context.userData for custom data."));
        }
    }

    /** Past the check, for what the context comes with. */
    void fill(KJS::ExecState* exec, const char* name, const KJS::Value& value)
    {
        ObjectImp::put(exec, name, value, KJS::None);
    }

    void destroy() { m_userData = nullptr; }

private:
    KJS::Value* m_userData; ///< the owner's; null once the call is over
};

/** The context of one call: nothing can be written to it afterwards. */
class JsStepFindAndExecuteFn::Context
{
public:
    Context(KJS::ExecState* exec, KJS::Value* userData)
        : m_exec(exec)
        , m_imp(new JsContextImp(userData))
        , m_object(m_imp)
    {
        fill("userData", *userData);
    }
    ~Context() { m_imp->destroy(); }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    void fill(const char* name, const KJS::Value& value) { m_imp->fill(m_exec, name, value); }
    const KJS::Object& object() const { return m_object; }

private:
    KJS::ExecState* m_exec;
    JsContextImp* m_imp; ///< kept alive by the object
    KJS::Object m_object;
};

JsStepFindAndExecuteFn::JsStepFindAndExecuteFn(KJS::ExecState* exec, const QString& stepFunctionName)
    : m_exec(exec)
    , m_userData(emptyArray(exec))
{
    m_stepFunction =
        findFunction(stepFunctionName.isEmpty() ? QStringLiteral("_torvixExecuteStep") : stepFunctionName);
    if (!m_stepFunction.isNull())
        m_hookFunction = findFunction(QStringLiteral("_torvixExecuteHook"));
    if (m_setupError.isEmpty())
        exec->clearException();
}

JsStepFindAndExecuteFn::~JsStepFindAndExecuteFn() = default;

KJS::Object JsStepFindAndExecuteFn::findFunction(const QString& name)
{
    const KJS::Value value = m_exec->interpreter()->globalObject().get(m_exec, KJS::Identifier(name));
    if (value.isUndefined()) {
        m_setupError = QStringLiteral("Can't find function '%1'").arg(name);
        return {};
    }
    KJS::Object function = KJS::Object::dynamicCast(value);
    if (function.isNull() || !function.implementsCall()) {
        m_setupError = QStringLiteral("'%1' is not a function").arg(name);
        return {};
    }
    return function;
}

KJS::Value JsStepFindAndExecuteFn::call(KJS::Object function, const KJS::List& args)
{
    Debugger* debugger = Debugger::self();
    KJS::Object global = m_exec->interpreter()->globalObject();
    debugger->pushFrameAndSetCurrent(-1, -1, -1);
    const KJS::Value answer = function.call(m_exec, global, args);
    debugger->popFrameAndSetCurrent();
    return answer;
}

ScriptResult JsStepFindAndExecuteFn::lookupAndExecuteStep(const Gherkin::Step& step)
{
    if (!m_setupError.isEmpty())
        return resultOf(Gherkin::StepUnusable, m_setupError);
    Context context(m_exec, &m_userData);
    if (!step.multiLineText.isEmpty())
        context.fill("multiLineText", arrayFromQStringList(m_exec, step.multiLineText));
    if (!step.table.isEmpty())
        context.fill("table", tableArray(m_exec, step.table));
    KJS::List args;
    const QString keyword = Gherkin::stepKeyword(step.type);
    if (!keyword.isEmpty())
        args.append(KJS::String(keyword));
    args.append(KJS::String(step.text()));
    args.append(context.object());
    const KJS::Value answer = call(m_stepFunction, args);
    if (m_exec->hadException())
        return failure(Gherkin::StepAbortsScenario, Gherkin::StepFailed);
    return stepResult(answer);
}

ScriptResult JsStepFindAndExecuteFn::stepResult(const KJS::Value& answer)
{
    if (answer.type() == KJS::NumberType)
        return resultOf(answer.toNumber(m_exec) == 1 ? Gherkin::StepNotFound : Gherkin::StepUnusable);
    if (answer.type() != KJS::StringType)
        return resultOf(Gherkin::StepPassed);
    const QString text = answer.toString(m_exec).qstring();
    if (text == QLatin1String("__TorvixAbortScenario"))
        return resultOf(Gherkin::StepAbortsScenario);
    if (text.startsWith(QLatin1String(multipleMatches)))
        return resultOf(Gherkin::StepAmbiguous, text.mid(int(qstrlen(multipleMatches))));
    return resultOf(Gherkin::StepPassed);
}

ScriptResult JsStepFindAndExecuteFn::executeHook(Gherkin::HookType type, Gherkin::HookPhase phase,
                                                 const QString& title)
{
    static const char* const whats[] = {"Feature", "Scenario", "Step"};
    static const char* const whens[] = {"Start", "End"};
    if (!m_setupError.isEmpty())
        return resultOf(Gherkin::HookUnusable, m_setupError);
    if (type < Gherkin::FeatureHook || type > Gherkin::StepHook || phase < Gherkin::HookStart ||
        phase > Gherkin::HookEnd)
        return resultOf(Gherkin::HookPassed);
    Context context(m_exec, &m_userData);
    context.fill("title", KJS::String(title));
    call(m_hookFunction, {KJS::String(whens[phase]), KJS::String(whats[type]), context.object()});
    return m_exec->hadException() ? failure(Gherkin::HookAborts, Gherkin::HookFailed)
                                  : resultOf(Gherkin::HookPassed);
}

ScriptResult JsStepFindAndExecuteFn::failure(int outcomeStatus, int errorStatus)
{
    const KJS::Value exception = m_exec->exception();
    m_exec->clearException();
    const KJS::Object error = KJS::Object::dynamicCast(exception);
    ScriptResult result = resultOf(errorStatus);
    if (error.isNull()) {
        result.message = exception.toString(m_exec).qstring().toStdString();
    } else if (isTestOutcome(m_exec, error)) {
        result.status = outcomeStatus;
    } else {
        result.message = error.get(m_exec, "message").toString(m_exec).qstring().toStdString();
        const int sourceId = error.get(m_exec, "sourceId").toInt32(m_exec);
        if (sourceId > 0) {
            result.file = Debugger::self()->findSourceId(sourceId).toStdString();
            result.line = error.get(m_exec, "line").toInt32(m_exec);
        }
    }
    m_exec->clearException(); // of a getter or toString of the error
    return result;
}

} // namespace Torvix
