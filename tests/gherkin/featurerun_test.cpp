#include "gherkin/featurerun.h"

#include <QMap>

#include <gtest/gtest.h>

namespace {

using namespace Gherkin;

/** Answers with what is planned for a step's text or a hook's name, and writes everything down. */
class RecordingActions : public ScriptActions, public FeatureListener
{
public:
    ScriptResult lookupAndExecuteStep(const Step& step) override { return answer(step.text()); }
    ScriptResult executeHook(HookType type, HookPhase phase, const QString& title) override
    {
        static const char* const types[] = {"Feature", "Scenario", "Step"};
        return answer(QString(phase == HookStart ? "+%1 %2" : "-%1 %2").arg(types[type], title));
    }
    void stepEnded(const Step& step, const ScriptResult& result) override
    {
        log += QString("%1 -> %2").arg(step.text()).arg(result.status);
    }
    void stepSkipped(const Step& step) override { log += step.text() + " skipped"; }
    void hookFailed(HookType, HookPhase, const QString& title, const ScriptResult& result) override
    {
        log += QString("hook of %1 -> %2").arg(title).arg(result.status);
    }
    void scenarioEnded(const Pickle& pickle, bool passed) override
    {
        log += pickle.title + (passed ? " passed" : " failed");
    }

    QMap<QString, int> planned;
    QStringList log;

private:
    ScriptResult answer(const QString& what)
    {
        log += what;
        ScriptResult result;
        result.status = planned.value(what, 0);
        return result;
    }
};

class FeatureRunTest : public testing::Test
{
protected:
    FeatureRunTest()
    {
        QVector<ParseError> errors;
        EXPECT_TRUE(parseFeature("Feature: F\nScenario: A\nGiven a1\nThen a2\nScenario: B\nGiven b1\n",
                                 feature, errors));
    }
    bool run() { return runFeature(feature, compilePickles(feature), actions, actions); }

    Feature feature;
    RecordingActions actions;
};

TEST_F(FeatureRunTest, HooksSurroundWhatTheyAreAbout)
{
    EXPECT_TRUE(run());
    EXPECT_EQ(QStringList({"+Feature F",  "+Scenario A", "+Step a1",    "a1",       "a1 -> 0",
                           "-Step a1",    "+Step a2",    "a2",          "a2 -> 0",  "-Step a2",
                           "-Scenario A", "A passed",    "+Scenario B", "+Step b1", "b1",
                           "b1 -> 0",     "-Step b1",    "-Scenario B", "B passed", "-Feature F"}),
              actions.log);
}

TEST_F(FeatureRunTest, AStepThatDoesNotPassEndsItsScenarioOnly)
{
    for (int status : {StepNotFound, StepAmbiguous, StepFailed, StepUnusable, StepAbortsScenario}) {
        actions.log.clear();
        actions.planned = {{"a1", status}};
        EXPECT_FALSE(run());
        EXPECT_EQ(QStringList({"a1", QString("a1 -> %1").arg(status), "-Step a1", "a2 skipped", "-Scenario A",
                               "A failed", "+Scenario B"}),
                  actions.log.mid(3, 7));
        EXPECT_TRUE(actions.log.contains("B passed"));
    }
}

TEST_F(FeatureRunTest, AStartHookThatDoesNotPassKeepsFromRunningWhatItIsAbout)
{
    actions.planned = {{"+Step a1", HookFailed}, {"+Scenario B", HookAborts}};
    EXPECT_FALSE(run());
    EXPECT_EQ(QStringList({"+Feature F", "+Scenario A", "+Step a1", "hook of a1 -> 1", "a1 skipped",
                           "-Step a1", "a2 skipped", "-Scenario A", "A failed", "+Scenario B",
                           "hook of B -> 3", "b1 skipped", "-Scenario B", "B failed", "-Feature F"}),
              actions.log);
    actions.log.clear();
    actions.planned = {{"+Feature F", HookUnusable}};
    EXPECT_FALSE(run());
    EXPECT_EQ(QStringList({"+Feature F", "hook of F -> 2", "-Feature F"}), actions.log);
}

TEST_F(FeatureRunTest, AnEndHookThatDoesNotPassFailsWhatItIsAbout)
{
    actions.planned = {{"-Step a1", HookFailed}, {"-Scenario B", HookFailed}};
    EXPECT_FALSE(run());
    EXPECT_TRUE(actions.log.contains("a2 skipped"));
    EXPECT_TRUE(actions.log.contains("A failed"));
    EXPECT_TRUE(actions.log.contains("B failed"));
    actions.planned = {{"-Feature F", HookFailed}};
    EXPECT_FALSE(run());
}

} // namespace
