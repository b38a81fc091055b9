#include "gherkin/featurerun.h"

namespace Gherkin {

FeatureListener::~FeatureListener() = default;

namespace {

class FeatureRun
{
public:
    FeatureRun(ScriptActions& actions, FeatureListener& listener) : m_actions(actions), m_listener(listener)
    {
    }

    bool run(const Feature& feature, const QVector<Pickle>& pickles)
    {
        m_listener.featureStarted(feature);
        bool passed = hook(FeatureHook, HookStart, feature.title);
        if (passed) {
            for (const Pickle& pickle : pickles)
                passed = runScenario(pickle) && passed;
        }
        passed = hook(FeatureHook, HookEnd, feature.title) && passed;
        m_listener.featureEnded(feature, passed);
        return passed;
    }

private:
    bool runScenario(const Pickle& pickle)
    {
        m_listener.scenarioStarted(pickle);
        bool passed = hook(ScenarioHook, HookStart, pickle.title);
        for (const Step& step : pickle.steps) {
            if (passed)
                passed = runStep(step);
            else
                m_listener.stepSkipped(step);
        }
        passed = hook(ScenarioHook, HookEnd, pickle.title) && passed;
        m_listener.scenarioEnded(pickle, passed);
        return passed;
    }

    bool runStep(const Step& step)
    {
        m_listener.stepStarted(step);
        bool passed = hook(StepHook, HookStart, step.text());
        if (passed) {
            const ScriptResult result = m_actions.lookupAndExecuteStep(step);
            passed = result.status == StepPassed;
            m_listener.stepEnded(step, result);
        } else {
            m_listener.stepSkipped(step);
        }
        return hook(StepHook, HookEnd, step.text()) && passed;
    }

    bool hook(HookType type, HookPhase phase, const QString& title)
    {
        const ScriptResult result = m_actions.executeHook(type, phase, title);
        if (result.status == HookPassed)
            return true;
        m_listener.hookFailed(type, phase, title, result);
        return false;
    }

    ScriptActions& m_actions;
    FeatureListener& m_listener;
};

} // namespace

bool runFeature(const Feature& feature, const QVector<Pickle>& pickles, ScriptActions& actions,
                FeatureListener& listener)
{
    return FeatureRun(actions, listener).run(feature, pickles);
}

} // namespace Gherkin
