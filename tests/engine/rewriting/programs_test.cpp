// Programs that must mean the same bare and rewritten. Each file in programs/ is a table: programs
// are separated by a line of dashes, a line of hashes splits a program into scripts of one context.

#include "engine/rewriting/runtimefixture.h"

namespace KJS::Rewriting {
namespace {

enum class Way { Bare, Fast, FastHooked, Debug, DebugHooked };

QString runBare(Machine& machine, const QStringList& scripts)
{
    Context context(machine.group());
    QString log;
    for (const QString& script : scripts) {
        Outcome outcome;
        outcome.value =
            JSEvaluateScript(context, JsString(script), nullptr, JsString("t.js"), 1, &outcome.exception);
        log += context.describe(outcome) + QLatin1Char('\n');
    }
    return context.output + log;
}

QString runRewritten(Machine& machine, const QStringList& scripts, Way way)
{
    const bool isDebug = way == Way::Debug || way == Way::DebugHooked;
    World world(machine, isDebug ? Flavour::Debug : Flavour::Fast);
    world.runtime.setHooksWanted(way == Way::FastHooked || way == Way::DebugHooked);
    QString log;
    for (const QString& script : scripts)
        log += world.run(script) + QLatin1Char('\n');
    EXPECT_EQ(world.runtime.frames().depth(), 0);
    EXPECT_EQ(world.hooks.shadow, 0);
    EXPECT_EQ(world.hooks.faults.toStdString(), "");
    return world.context.output + log;
}

class Programs : public testing::TestWithParam<const char*>
{
};

TEST_P(Programs, MeanTheSameRewritten)
{
    Machine machine;
    const QString table = readFile(QStringLiteral("programs/") + QLatin1String(GetParam()));
    const QStringList programs = table.split(QStringLiteral("\n-----\n"));
    ASSERT_GT(programs.size(), 3);
    for (const QString& program : programs) {
        const QStringList scripts = program.split(QStringLiteral("\n#####\n"));
        const QString bare = runBare(machine, scripts);
        for (Way way : {Way::Fast, Way::FastHooked, Way::Debug, Way::DebugHooked}) {
            SCOPED_TRACE(program.toStdString() + "\nway " + std::to_string(static_cast<int>(way)));
            EXPECT_EQ(runRewritten(machine, scripts, way).toStdString(), bare.toStdString());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Tables, Programs,
                         testing::Values("statements.txt", "functions.txt", "classes.txt", "suspensions.txt",
                                         "evals.txt", "values.txt", "refused.txt", "early.txt"),
                         [](const auto& table) {
                             const std::string name = table.param;
                             return name.substr(0, name.find('.'));
                         });

TEST(Programs, AreReallyRewritten)
{
    Machine machine;
    for (const char* file :
         {"statements.txt", "functions.txt", "classes.txt", "suspensions.txt", "evals.txt", "values.txt"}) {
        const QStringList programs =
            readFile(QStringLiteral("programs/") + QLatin1String(file)).split(QStringLiteral("\n-----\n"));
        for (const QString& program : programs)
            for (const QString& script : program.split(QStringLiteral("\n#####\n")))
                for (Flavour flavour : {Flavour::Fast, Flavour::Debug}) {
                    const auto text = machine.rewriter.rewrite(script, SourceKind::Script, flavour);
                    EXPECT_TRUE(text) << script.toStdString();
                    if (!text)
                        continue;
                    EXPECT_EQ(text->code.count(QLatin1Char('\n')), script.count(QLatin1Char('\n')));
                    EXPECT_FALSE(script.contains(text->prefix));
                }
    }
}

} // namespace
} // namespace KJS::Rewriting
