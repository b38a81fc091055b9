#include "interpreter/base/scriptcontext.h"

#include "interpreter/base/fakecontext.h"
#include "objectmodel/objectname.h"
#include "objectmodel/propertyvalue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace Torvix {
namespace {

void succeed(ScriptContext* context)
{
    context->setResult(context->toArgument("done"));
}

void fail(ScriptContext* context)
{
    context->setError("inner", ScriptContext::TestCaseSkipped);
}

void callFailing(ScriptContext* context)
{
    EXPECT_EQ(context->execute(fail), ScriptContext::Failed);
    context->setResult(context->toArgument(1));
}

void failThenCall(ScriptContext* context)
{
    context->setError("outer");
    EXPECT_EQ(context->execute(succeed), ScriptContext::Succeeded);
}

void burst(ScriptContext* context)
{
    context->setError("before");
    throw std::runtime_error("burst");
}

TEST(ScriptContext, EachCallHasTheStatusOfItsOwnFunction)
{
    FakeContext context;
    EXPECT_EQ(context.execute(succeed), ScriptContext::Succeeded);
    EXPECT_EQ(context.result->toString(), "done");
    EXPECT_EQ(context.execute(fail), ScriptContext::Failed);
    EXPECT_FALSE(bool(context.result)) << "no result is left over";
    EXPECT_EQ(context.errorMessage(), "inner");
    EXPECT_EQ(context.errorType(), ScriptContext::TestCaseSkipped);
    EXPECT_EQ(context.execute(callFailing), ScriptContext::Succeeded);
    EXPECT_EQ(context.execute(failThenCall), ScriptContext::Failed);
    EXPECT_EQ(context.errorType(), ScriptContext::OrdinaryError);
    EXPECT_THROW(context.execute(burst), std::runtime_error);
    EXPECT_EQ(context.execute(succeed), ScriptContext::Succeeded);
    EXPECT_TRUE(context.errorMessage().isEmpty());
}

TEST(ScriptContext, AnErrorMayHaveAPositionOfItsOwn)
{
    FakeContext context;
    context.setError("there", DebuggerFrame{12, 0, 3});
    EXPECT_EQ(context.errorPosition(), (DebuggerFrame{12, 0, 3}));
    EXPECT_EQ(context.errorType(), ScriptContext::OrdinaryError);
    context.setError("here", ScriptContext::VerificationFailure);
    EXPECT_EQ(context.errorPosition().sourceId, -1) << "the last error wins whole";
}

TEST(ScriptContext, FunctionsAndConstantsOfScripts)
{
    FakeContext context;
    context.addGlobalFunction("succeed", succeed);
    context.addGlobalFunction("fail", fail);
    context.addMemberFunction("Thing", "go", fail);
    context.addConstant("three", 3);
    EXPECT_TRUE(context.tryGlobalCall("succeed"));
    EXPECT_EQ(context.result->toString(), "done");
    EXPECT_FALSE(context.tryGlobalCall("fail"));
    EXPECT_EQ(context.errorMessage(), "inner");
    EXPECT_FALSE(context.tryGlobalCall("nosuch"));
    EXPECT_EQ(context.errorMessage(), "Unknown function 'nosuch'");
    EXPECT_TRUE(context.hasGlobalFunction("fail"));
    EXPECT_FALSE(context.hasGlobalFunction("go"));
    EXPECT_EQ(context.memberFunction("Thing", "go"), &fail);
    EXPECT_EQ(context.memberFunction("go", "Thing"), nullptr);
    EXPECT_EQ(context.constantValue("three"), 3);
    EXPECT_FALSE(context.hasConstant("four"));
}

TEST(ScriptContext, ArgumentsBeyondTheLastAreNull)
{
    FakeContext context;
    context.setArguments({context.toArgument(1)});
    EXPECT_EQ(context.argument(0)->toInteger(), 1);
    EXPECT_FALSE(bool(context.argument(1)));
    EXPECT_FALSE(bool(context.argument(-1)));
    context.clearArguments();
    EXPECT_EQ(context.argumentCount(), 0);
}

TEST(ScriptContext, StackTracesAreListsOfLocations)
{
    FakeContext context;
    context.setStackTraceResult({LineInfo{"a.js", 3}, LineInfo{"b.js", 9}});
    EXPECT_EQ(context.result->toString(), "[a.js@3,b.js@9]");
}

TEST(ScriptArgument, MapsBecomeRealNames)
{
    const FakeContext context;
    const SharedPtr<ScriptArgument> window =
        context.toArgument(ScriptArgument::Map{{"type", context.toArgument("QDialog")}});
    const SharedPtr<ScriptArgument> button =
        context.toArgument(ScriptArgument::Map{{"type", context.toArgument("QPushButton")},
                                               {"text", context.toArgument("it's")},
                                               {"visible", context.toArgument(true)},
                                               {"occurrence", context.toArgument(2)},
                                               {"window", window}});
    const Result<ObjectName> read = ObjectName::fromString(button->toRealName());
    ASSERT_TRUE(read) << read.error().toStdString();
    const ObjectName& name = *read;
    EXPECT_EQ(name.properties().value("text").value, "it's");
    EXPECT_EQ(name.properties().value("occurrence").value, "2");
    EXPECT_EQ(name.properties().value("visible").value, "true");
    EXPECT_EQ(name.properties().value("window").type, PropertyValue::Name);
    EXPECT_EQ(name.properties().value("window").value, "{type='QDialog'}");
    EXPECT_EQ(context.toArgument("names.ok")->toRealName(), "names.ok");
}

} // namespace
} // namespace Torvix
