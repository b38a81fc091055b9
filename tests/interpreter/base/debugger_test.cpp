#include "interpreter/base/debugger.h"

#include "interpreter/base/fakeinterpreter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Torvix {

static void PrintTo(const LineInfo& info, std::ostream* out)
{
    *out << info.file.toStdString() << ":" << info.line;
}

namespace {

MATCHER_P2(At, file, line, "")
{
    return arg.file == QLatin1String(file) && arg.line == line;
}

struct DebuggerTest : testing::Test
{
    FakeInterpreter interpreter;
    FakeDebugger debugger{&interpreter};

    void enter(int line, int sourceId)
    {
        debugger.pushFrame(debugger.currentFrame());
        moveTo(line, sourceId);
    }
    void moveTo(int line, int sourceId)
    {
        debugger.setCurrentLine(line);
        debugger.setCurrentColumn(0);
        debugger.setCurrentSourceId(sourceId);
    }
};

TEST_F(DebuggerTest, CallStackIsInnermostFirstAndLeavesOutWhatIsNoFile)
{
    debugger.setCode(7, "main.js");
    debugger.setCode(9, "lib.js");
    EXPECT_TRUE(debugger.callStack().empty());

    enter(30, 7); // the script's own text, called from outside
    enter(4, 8);  // text that was given to eval
    enter(12, 9);
    EXPECT_EQ(debugger.frameDepth(), 3);
    EXPECT_THAT(debugger.callStack(), testing::ElementsAre(At("lib.js", 12), At("main.js", 30)));

    debugger.popFrame();
    EXPECT_THAT(debugger.callStack(), testing::ElementsAre(At("lib.js", 12), At("main.js", 30)))
        << "leaving alone does not move the current position";
    moveTo(31, 7);
    debugger.popFrame();
    debugger.popFrame();
    debugger.popFrame();
    EXPECT_EQ(debugger.frameDepth(), 0);
    EXPECT_THAT(debugger.callStack(), testing::ElementsAre(At("main.js", 31)));
}

TEST_F(DebuggerTest, AFrameThatSetsThePositionGivesTheCallersBack)
{
    debugger.setCode(7, "main.js");
    enter(30, 7);
    const DebuggerFrame caller = debugger.currentFrame();

    debugger.pushFrameAndSetCurrent(-1, -1, -1);
    EXPECT_EQ(debugger.currentFrame(), (DebuggerFrame{-1, -1, -1}));
    EXPECT_EQ(debugger.frameDepth(), 2);
    EXPECT_THAT(debugger.callStack(), testing::ElementsAre(At("main.js", 30)));

    debugger.popFrameAndSetCurrent();
    EXPECT_EQ(debugger.currentFrame(), caller);
    debugger.popFrameAndSetCurrent();
    debugger.popFrameAndSetCurrent();
    EXPECT_EQ(debugger.frameDepth(), 0);
}

TEST_F(DebuggerTest, SourceIdsKeepTheirFiles)
{
    debugger.setCode(1, "a.js");
    debugger.setCode(2, "b.js");
    debugger.setCode(5, "a.js");
    EXPECT_EQ(debugger.findSourceId(1), "a.js");
    EXPECT_EQ(debugger.findSourceId(2), "b.js");
    EXPECT_TRUE(debugger.findSourceId(3).isNull());
    EXPECT_EQ(debugger.sourceIdOf("a.js"), 5) << "a file that was parsed again";
    EXPECT_EQ(debugger.sourceIdOf("c.js"), -1);
}

TEST_F(DebuggerTest, BreakPointsBelongToALineOfOneSource)
{
    debugger.setBreakPoint(10, 3, true);
    debugger.setBreakPoint(10, 3, true);
    EXPECT_TRUE(debugger.hasBreakPoint(10, 3));
    EXPECT_FALSE(debugger.hasBreakPoint(3, 10));
    EXPECT_FALSE(debugger.hasBreakPoint(10, 4));
    debugger.setBreakPoint(10, 4, false);
    EXPECT_TRUE(debugger.hasBreakPoints());
    debugger.setBreakPoint(10, 3, false);
    EXPECT_FALSE(debugger.hasBreakPoints());
}

TEST_F(DebuggerTest, AStopLastsAsLongAsItsReceiversAndTheyChooseTheMode)
{
    EXPECT_EQ(debugger.debuggerMode(), Debugger::DbgBreakOnly);
    QStringList heard;
    QObject::connect(&debugger, &Debugger::stopped, [&] {
        heard.append("stopped");
        debugger.next(2);
    });
    QObject::connect(&debugger, &Debugger::stoppedAtObjectName,
                     [&](const QString& name, const QString& message) {
                         heard.append(name + "|" + message);
                         debugger.step();
                     });
    debugger.stop();
    EXPECT_EQ(heard, QStringList{"stopped"});
    EXPECT_EQ(debugger.debuggerMode(), Debugger::DbgNext);
    EXPECT_EQ(debugger.nextDepth(), 2);

    debugger.stopWithObjectName("names.ok", "nothing like it");
    EXPECT_EQ(heard.last(), "names.ok|nothing like it");
    EXPECT_EQ(debugger.debuggerMode(), Debugger::DbgStep);
    debugger.run();
    EXPECT_EQ(debugger.debuggerMode(), Debugger::DbgBreakOnly);
}

TEST(DebuggerOfInterpreter, CurrentDebuggerIsThatOfTheCurrentInterpreter)
{
    EXPECT_EQ(Debugger::self(), nullptr);
    FakeInterpreter outer;
    auto* outerDebugger = new FakeDebugger(&outer);
    EXPECT_EQ(Debugger::self(), nullptr);
    outer.setDebugger(outerDebugger);
    outer.setDebugger(outerDebugger);
    EXPECT_EQ(Debugger::self(), outerDebugger);
    {
        FakeInterpreter inner;
        EXPECT_EQ(Debugger::self(), nullptr);
        Interpreter::setSelf(&outer);
        EXPECT_EQ(Debugger::self(), outerDebugger);
    }
    EXPECT_EQ(Debugger::self(), outerDebugger) << "another interpreter's end changes nothing";
}

} // namespace
} // namespace Torvix
