#include "agent/client.h"
#include "protocol/classmessages.h"
#include "protocol/eventmessages.h"
#include "protocol/usermessages.h"

using namespace Torvix::Protocol;

namespace {

QString q(const char* text)
{
    return QString::fromUtf8(text);
}

InstallHandler handlerFor(HandlerScope scope, const char* event, const ObjectRef& object = {},
                          const char* type = "")
{
    InstallHandler request;
    request.scope = scope;
    request.object = object.id;
    request.typeName = q(type);
    request.eventName = q(event);
    request.handler = q("onEvent");
    return request;
}

UninstallHandler undo(const InstallHandler& request)
{
    UninstallHandler result;
    result.scope = request.scope;
    result.object = request.object;
    result.typeName = request.typeName;
    result.eventName = request.eventName;
    result.handler = request.handler;
    return result;
}

} // namespace

TEST(AgentEvents, handlersHearOfEventsGloballyByObjectAndByType)
{
    Target target;
    const auto count = target.byName(q("count"));
    const InstallHandler cases[] = {handlerFor(HandlerScope::Object, "MouseButtonPress", count),
                                    handlerFor(HandlerScope::Type, "QMouseEvent", {}, "QPushButton"),
                                    handlerFor(HandlerScope::Global, "MouseButtonRelease")};
    for (const InstallHandler& request : cases) {
        target.client().request(request);
        target.action(q("clickButton"), {Value::ofObject(count)});
        EventHandled heard;
        ASSERT_TRUE(target.client().waitForPush(&heard)) << request.eventName.toStdString();
        EXPECT_EQ(heard.handler, q("onEvent"));
        EXPECT_EQ(heard.object.id, count.id);
        ASSERT_EQ(heard.arguments.size(), 1);
        EXPECT_GE(target.call(heard.arguments.first().object, q("x")).integer, 1) << "the event can be read";
        target.client().request(undo(request));
        while (target.client().waitForPush(&heard, 20)) {
        }
        target.action(q("clickButton"), {Value::ofObject(count)});
        EXPECT_FALSE(target.client().waitForPush(&heard, 50)) << "uninstalled";
        EXPECT_THROW(target.client().request(undo(request)), RequestError);
    }
    EXPECT_THROW(target.client().request(handlerFor(HandlerScope::Global, "NoSuchEvent")), RequestError);
}

TEST(AgentEvents, dialogsAreAnnouncedBeforeTheCallThatOpenedThemIsAnswered)
{
    Target target;
    target.client().request(handlerFor(HandlerScope::Global, "DialogOpened"));
    target.action(q("clickButton"), {Value::ofObject(target.byName(q("modal")))});
    EventHandled heard;
    ASSERT_TRUE(target.client().waitForPush(&heard, 1000));
    EXPECT_EQ(target.get(heard.object, q("objectName")).text, q("modalDialog"));
}

TEST(AgentEvents, recordsWhatAPersonDoes)
{
    Target target;
    const auto act = [&](const char* function, const QVector<Value>& arguments) {
        target.action(q(function), arguments);
    };
    target.client().request(Record{true});
    act("clickButton", {Value::ofObject(target.byName(q("count")))});
    act("type", {Value::ofObject(target.byName(q("nameEdit"))), Value::ofString(q("ab<Left>c"))});
    act("activateItem", {Value::ofObject(target.byName(q("tabs"))), Value::ofString(q("Views"))});
    act("clickItem", {Value::ofObject(target.byName(q("treeWidget"))), Value::ofString(q("Fruit.Apple"))});
    act("activateItem",
        {Value::ofObject(target.find({q("type"), q("QMenuBar")})), Value::ofString(q("File.New"))});
    QStringList lines;
    EventCaptured captured;
    while (target.client().waitForPush(&captured, 200)) {
        QString line = captured.methodName;
        for (const NameCondition& condition : captured.objectName)
            if (condition.property == q("name"))
                line += QLatin1Char(' ') + condition.text;
        for (const CapturedArg& argument : captured.arguments)
            line += QLatin1Char(' ') + argument.value;
        lines.append(line);
    }
    const QStringList expected = {q("clickButton count"),
                                  q("type nameEdit ab<Left>c"),
                                  q("activateItem qt_tabwidget_tabbar Views"),
                                  q("clickItem treeWidget Fruit.Apple"),
                                  q("activateItem File"),
                                  q("activateItem fileMenu New")};
    EXPECT_EQ(lines, expected) << lines.join(QLatin1Char('\n')).toStdString();
    target.client().request(Record{false});
    act("clickItem", {Value::ofObject(target.byName(q("treeWidget"))), Value::ofString(q("Nuts"))});
    EXPECT_FALSE(target.client().waitForPush(&captured, 50));
}

TEST(AgentEvents, thePickerTakesOneClick)
{
    Target target;
    const auto control = target.byName(q("control"));
    const auto count = target.byName(q("count"));
    target.client().request(Pick{true});
    target.action(q("clickButton"), {Value::ofObject(count)});
    Picked picked;
    ASSERT_TRUE(target.client().waitForPush(&picked));
    EXPECT_EQ(picked.object.id, count.id);
    EXPECT_EQ(target.get(control, q("clicks")).integer, 0) << "the click did nothing else";
    target.action(q("clickButton"), {Value::ofObject(count)});
    EXPECT_EQ(target.get(control, q("clicks")).integer, 1);
}

TEST(AgentEvents, sentEventsAreMadeFromTheirConstructor)
{
    Target target;
    const auto pad = target.byName(q("pad"));
    const ClassReply key = target.client().request(ClassByName{q("QKeyEvent")});
    ASSERT_FALSE(key.classes.isEmpty());
    SendEvent request;
    request.eventClassId = key.classes.first().self.id;
    request.target = pad.id;
    request.arguments = {Value::ofInt(6), Value::ofInt('A'), Value::ofInt(0), Value::ofString(q("a"))};
    target.client().request(request);
    EXPECT_EQ(target.get(pad, q("seen")).text, q("key A a"));
    request.arguments.clear();
    EXPECT_THROW(target.client().request(request), RequestError);
    request.eventClassId = pad.classId;
    EXPECT_THROW(target.client().request(request), RequestError);
}
