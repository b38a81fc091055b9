#pragma once

#include "gherkin/export.h"
#include "gherkin/pickle.h"
#include "gherkin/scriptactions.h"

namespace Gherkin {

/** What a feature run tells while it goes on. Every operation does nothing unless it is overridden. */
class GHERKIN_EXPORT FeatureListener
{
public:
    virtual ~FeatureListener();
    virtual void featureStarted(const Feature&) {}
    virtual void scenarioStarted(const Pickle&) {}
    virtual void stepStarted(const Step&) {}
    /** `result` is a StepStatus. */
    virtual void stepEnded(const Step&, const ScriptResult& /*result*/) {}
    /** A step that is not run because something before it went wrong. */
    virtual void stepSkipped(const Step&) {}
    /** `result` is a HookStatus other than HookPassed. */
    virtual void hookFailed(HookType, HookPhase, const QString& /*title*/, const ScriptResult& /*result*/) {}
    virtual void scenarioEnded(const Pickle&, bool /*passed*/) {}
    virtual void featureEnded(const Feature&, bool /*passed*/) {}
};

/**
 * Runs the pickles of a feature in their order. True if every hook and every step passed.
 *
 * Around the feature, each scenario and each step that is run, the hooks for its start and its end are
 * executed. A step that does not pass, and a start hook that does not, end the scenario: its other steps
 * are skipped. A start hook of the feature that does not pass skips all scenarios, which then neither
 * start nor end. The end hooks of what has started are executed in any case.
 */
GHERKIN_EXPORT bool runFeature(const Feature& feature, const QVector<Pickle>& pickles, ScriptActions& actions,
                               FeatureListener& listener);

} // namespace Gherkin
