// import and export, in scripts and in modules.

#include "engine/rewriting/runtimefixture.h"

namespace KJS::Rewriting {
namespace {

class Modules : public testing::TestWithParam<Flavour>
{
protected:
    Modules() : world(machine, GetParam())
    {
        // modules.txt: "=== name" begins a module
        for (const QString& part : readFile(QStringLiteral("modules.txt")).split(QStringLiteral("=== "))) {
            const int end = part.indexOf(QLatin1Char('\n'));
            if (end > 0)
                world.hooks.modules[part.left(end)] = part.mid(end + 1);
        }
    }
    std::string run(const char* text)
    {
        return world.run(QString::fromUtf8(text), QStringLiteral("main.js")).toStdString();
    }

    Machine machine;
    World world;
};

TEST_P(Modules, EveryForm)
{
    world.runtime.setHooksWanted(true);
    // each program runs in one context after the others; {program, its value}
    const QStringList cases = readFile(QStringLiteral("modulecases.txt")).split(QStringLiteral("\n-----\n"));
    ASSERT_GT(cases.size(), 10);
    for (const QString& item : cases) {
        const int split = item.indexOf(QStringLiteral("\n=> "));
        ASSERT_GT(split, 0) << item.toStdString();
        EXPECT_EQ(world.run(item.left(split), QStringLiteral("main.js")).toStdString(),
                  item.mid(split + 4).trimmed().toStdString())
            << item.toStdString();
        EXPECT_EQ(world.runtime.frames().depth(), 0) << item.toStdString();
        EXPECT_EQ(world.hooks.faults.toStdString(), "") << item.toStdString();
    }
}

TEST_P(Modules, AreParsedInOrderAndOnce)
{
    run("import {one} from 'cycle1'; import 'cycle2'; import {one as again} from 'cycle1'");
    EXPECT_EQ(world.hooks.parsed.toStdString(), "main.js:0 /m/cycle1:0 /m/cycle2:0 ");
}

struct Failure
{
    const char* program;
    const char* exception;
    const char* url;
    int line;
};

TEST_P(Modules, FailuresNameTheirOwnFileAndLine)
{
    const Failure cases[] = {
        {"1;\nimport 'missing'", "Error: no module missing", "main.js", 2},
        {"import 'importsMissing'", "Error: no module missing", "/m/importsMissing", 3},
        {"import 'throwing'", "Error: module body", "/m/throwing", 2},
        {"import 'broken'", "SyntaxError: Unexpected identifier 'b'", "/m/broken", 3},
        {"import 'earlyError'", "SyntaxError: Invalid regular expression: missing )", "/m/earlyError", 2},
        {"import 'topLevelAwait'", nullptr, "/m/topLevelAwait", 2},
        {"\n\nimport {nope} from 'names'", "SyntaxError: Importing binding name 'nope' is not found.",
         "main.js", 3},
        {"import 'importsNope'", "SyntaxError: Importing binding name 'nope' is not found.", "/m/importsNope",
         2},
        {"import {twice} from 'ambiguous'",
         "SyntaxError: Importing binding name 'twice' cannot be resolved due to ambiguous multiple bindings.",
         "main.js", 1},
        {"import {call} from 'throwingLater';\ncall()",
         "TypeError: null is not an object (evaluating 'null.x')", "/m/throwingLater", 2},
    };
    for (const Failure& item : cases) {
        SCOPED_TRACE(item.program);
        const Outcome outcome =
            world.runtime.evaluate(QString::fromUtf8(item.program), QStringLiteral("main.js"));
        ASSERT_TRUE(outcome.threw());
        if (item.exception) {
            EXPECT_EQ(world.context.text(outcome.exception).toStdString(), item.exception);
        }
        EXPECT_EQ(world.context.errorText(outcome.exception, "line").toInt(), item.line);
        const SourceInfo* source =
            world.runtime.sources().source(world.context.errorText(outcome.exception, "sourceId").toInt());
        ASSERT_TRUE(source);
        EXPECT_EQ(source->url.toStdString(), item.url);
    }
    EXPECT_EQ(run("import 'throwing'"), "throws Error: module body") << "a failed evaluation stays failed";
    world.hooks.modules[QStringLiteral("missing")] = QStringLiteral("export default 'mended'");
    EXPECT_EQ(run("import m from 'missing'; m"), "mended");
}

INSTANTIATE_TEST_SUITE_P(Flavours, Modules, testing::Values(Flavour::Fast, Flavour::Debug),
                         [](const auto& flavour) {
                             return std::string(flavour.param == Flavour::Fast ? "Fast" : "Debug");
                         });

} // namespace
} // namespace KJS::Rewriting
