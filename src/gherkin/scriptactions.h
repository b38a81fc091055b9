#pragma once

#include "gherkin/export.h"
#include "gherkin/step.h"

#include <QString>

#include <string>

namespace Gherkin {

/** How a step ended (ScriptResult::status of lookupAndExecuteStep). */
enum StepStatus {
    StepPassed = 0,
    StepNotFound = 1,       ///< no step function matches
    StepAmbiguous = 2,      ///< several match; the message begins with their number
    StepFailed = 4,         ///< the step function threw; message, file and line tell what and where
    StepUnusable = 5,       ///< the script cannot run steps, or the function answered nonsense
    StepAbortsScenario = 6, ///< a verification failed or the test case was skipped, already reported
};

/** How the hooks of one event ended (ScriptResult::status of executeHook). */
enum HookStatus {
    HookPassed = 0,
    HookFailed = 1,   ///< a hook threw; message, file and line tell what and where
    HookUnusable = 2, ///< the script cannot run hooks
    HookAborts = 3,   ///< a verification failed or the test case was skipped, already reported
};

/** What a hook is about. */
enum HookType { FeatureHook = 0, ScenarioHook = 1, StepHook = 2 };

/** Whether a hook runs before or after what it is about. */
enum HookPhase { HookStart = 0, HookEnd = 1 };

/** How a step function or the hooks of one event ended. */
struct ScriptResult
{
    /** A StepStatus or a HookStatus. */
    int status = 0;
    /** UTF-8; empty if there is nothing to tell. */
    std::string message;
    /** UTF-8; the script file of the failure, empty if it is not known. */
    std::string file;
    /** From 1; -1 if it is not known. */
    int line = -1;
};

/** The script's side of a feature run: whoever runs features calls it for each step and each hook. */
class GHERKIN_EXPORT ScriptActions
{
public:
    virtual ~ScriptActions();

    /** Finds the step function for `step` and runs it. Never throws; the result is a StepStatus. */
    virtual ScriptResult lookupAndExecuteStep(const Step& step) = 0;

    /**
     * Runs the hooks that are registered for an event, in the order of their registration. `title`
     * is that of the feature or the scenario, or the text of the step. The result is a HookStatus.
     */
    virtual ScriptResult executeHook(HookType type, HookPhase phase, const QString& title) = 0;
};

} // namespace Gherkin
