#pragma once

#include "engine/object.h"
#include "gherkin/scriptactions.h"

#include <QString>

#include <memory>

namespace Torvix {

/**
 * Runs the steps and hooks of a feature through the functions of the script. An exception of the script
 * never leaves it: it becomes a status.
 */
class JsStepFindAndExecuteFn : public Gherkin::ScriptActions
{
public:
    /** @param stepFunctionName the script function that finds and runs a step; empty for ours */
    JsStepFindAndExecuteFn(KJS::ExecState* exec, const QString& stepFunctionName);
    ~JsStepFindAndExecuteFn() override;

    Gherkin::ScriptResult lookupAndExecuteStep(const Gherkin::Step& step) override;
    Gherkin::ScriptResult executeHook(Gherkin::HookType type, Gherkin::HookPhase phase,
                                      const QString& title) override;

private:
    class JsContextImp;
    class Context;

    KJS::Object findFunction(const QString& name);
    KJS::Value call(KJS::Object function, const KJS::List& args);
    /** Takes the pending exception off the state. */
    Gherkin::ScriptResult failure(int outcomeStatus, int errorStatus);
    Gherkin::ScriptResult stepResult(const KJS::Value& answer);

    KJS::ExecState* m_exec;
    QString m_setupError; ///< told at each use
    KJS::Object m_stepFunction;
    KJS::Object m_hookFunction;
    KJS::Value m_userData;
};

} // namespace Torvix
