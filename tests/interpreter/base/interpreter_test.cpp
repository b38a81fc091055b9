#include "interpreter/base/interpreter.h"

#include "interpreter/base/fakeinterpreter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Torvix {
namespace {

void installFirst(Interpreter* interpreter)
{
    interpreter->addNamespace("first", NativeScriptNamespace());
}

void installSecond(Interpreter* interpreter)
{
    interpreter->addGlobalFunction("second", nullptr, {}, {}, QString());
}

TEST(Interpreter, LatestIsCurrentUntilItGoes)
{
    EXPECT_EQ(Interpreter::self(), nullptr);
    auto first = std::make_unique<FakeInterpreter>();
    auto second = std::make_unique<FakeInterpreter>();
    EXPECT_EQ(Interpreter::self(), second.get());
    first.reset();
    EXPECT_EQ(Interpreter::self(), second.get());
    second.reset();
    EXPECT_EQ(Interpreter::self(), nullptr);
}

TEST(Interpreter, ClearingErrorsLeavesTheResultMessage)
{
    FakeInterpreter interpreter;
    interpreter.setErrorMessage("message");
    interpreter.setErrorLine(3);
    interpreter.setErrorFile("a.js");
    interpreter.setErrorCallStack({LineInfo{"a.js", 3}});
    interpreter.setResultMessage("42");
    EXPECT_EQ(interpreter.errorFile("script.js"), "a.js");

    interpreter.clearError();
    EXPECT_TRUE(interpreter.errorMessage().isEmpty());
    EXPECT_EQ(interpreter.errorLine(), 0);
    EXPECT_TRUE(interpreter.errorCallStack().empty());
    EXPECT_EQ(interpreter.errorFile("script.js"), "script.js");
    EXPECT_TRUE(interpreter.errorFile().isEmpty());
    EXPECT_EQ(interpreter.resultMessage(), "42");
}

TEST(Interpreter, NativeApiIsInstalledInOrderAndOnce)
{
    Interpreter::registerNativeAPI(installFirst);
    Interpreter::registerNativeAPI(installSecond);
    Interpreter::registerNativeAPI(installFirst);
    FakeInterpreter interpreter;
    interpreter.initNativeAPI();
    EXPECT_EQ(interpreter.added, (QStringList{"first", "second"}));
}

TEST(Interpreter, DefaultSearchPathsAreAddedThroughTheLanguage)
{
    FakeInterpreter interpreter;
    interpreter.addDefaultSearchPaths(QFileInfo("/suite/shared"));
    EXPECT_EQ(interpreter.added, QStringList{"/suite/shared"});
}

} // namespace
} // namespace Torvix
