#include "interpreter/base/dummyrunnerinterface.h"
#include "interpreter/base/interpreter.h"

#include <QLibrary>
#include <QProcess>
#include <QRegularExpression>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace Torvix {
namespace {

TEST(PluginExports, AreThreeCFunctions)
{
    QProcess nm;
    nm.start("nm", {"-D", "--defined-only", "--extern-only", "--format=posix", TORVIX_PLUGIN});
    ASSERT_TRUE(nm.waitForFinished());
    QStringList names;
    for (const QString& line :
         QString::fromLatin1(nm.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts))
        names.append(line.section(' ', 0, 0));
    names.sort();
    EXPECT_EQ(names, (QStringList{"createEventRecorder", "createInterpreter", "createScriptedObjectMap"}));
}

TEST(PluginExports, TheLoadedPluginRunsScripts)
{
    QLibrary plugin(TORVIX_PLUGIN);
    ASSERT_TRUE(plugin.load()) << plugin.errorString().toStdString();
    const auto create =
        reinterpret_cast<Interpreter* (*)(RunnerInterface*)>(plugin.resolve("createInterpreter"));
    ASSERT_NE(create, nullptr);
    DummyRunnerInterface runner;
    const std::unique_ptr<Interpreter> interpreter(create(&runner));
    EXPECT_EQ(Interpreter::self(), interpreter.get());
    EXPECT_EQ(interpreter->runnerInterface(), &runner);
    EXPECT_EQ(interpreter->language(), Interpreter::JavaScript);
    EXPECT_FALSE(interpreter->evaluate("\nnosuch()", "test.js", false, false));
    EXPECT_EQ(interpreter->errorFile(), "test.js");
    EXPECT_EQ(interpreter->errorLine(), 2);
}

} // namespace
} // namespace Torvix
