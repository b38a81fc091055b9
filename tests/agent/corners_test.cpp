#include "agent/client.h"

#include "protocol/eventmessages.h"
#include "protocol/lookupmessages.h"
#include "protocol/membermessages.h"
#include "protocol/screenmessages.h"
#include "protocol/usermessages.h"

#include <QRect>

using namespace Torvix::Protocol;

/** What applications have beside forms. */
namespace {

QString q(const char* text)
{
    return QString::fromUtf8(text);
}

Value text(const char* value)
{
    return Value::ofString(q(value));
}

class AgentCorners : public testing::Test
{
protected:
    Value object(const char* name) { return Value::ofObject(target.byName(q(name))); }
    std::string log() { return target.get(target.byName(q("corners")), q("log")).text.toStdString(); }
    /** What is asked for must hold within a few seconds. */
    bool logSays(const char* line)
    {
        for (int i = 0; i < 300; ++i) {
            if (log().find(line) != std::string::npos)
                return true;
            target.client().pump(10);
        }
        return false;
    }

    Target target{Target::corners()};
};

} // namespace

TEST_F(AgentCorners, itemsOfAScene)
{
    // Objects of a scene are below the view, and have names.
    const auto far = target.find({q("type"), q("QGraphicsTextItem"), q("name"), q("farText")});
    const auto name = target.client().request(RealName{far.id}).name;
    EXPECT_EQ(target.client().request(Find{name}).object.id, far.id);
    NameConditions inView = Target::name({q("name"), q("farText")});
    NameCondition container;
    container.property = q("container");
    container.isNested = true;
    container.nested = Target::name({q("name"), q("view")});
    inView.append(container);
    EXPECT_EQ(target.client().request(Find{inView}).object.id, far.id);

    // A click brings it into view and selects it.
    EXPECT_FALSE(target.call(far, q("isSelected")).integer);
    target.action(q("mouseClick"), {Value::ofObject(far)});
    EXPECT_TRUE(target.call(far, q("isSelected")).integer);
    EXPECT_EQ(target.call(far, q("text")).text, q("far away"));

    // Those that are no objects are reached from the view.
    const auto view = target.byName(q("view"));
    Value box;
    for (const Value& item : target.call(view, q("items")).elements)
        if (target.call(item.object, q("kind")).text == q("QGraphicsRectItem"))
            box = item;
    ASSERT_NE(box.object.id, 0);
    target.action(q("mouseClick"), {box});
    EXPECT_TRUE(target.call(box.object, q("isSelected")).integer);
    EXPECT_FALSE(target.call(far, q("isSelected")).integer);
}

TEST_F(AgentCorners, aWidgetInASceneIsClickedThroughTheView)
{
    const auto button = target.find({q("name"), q("sceneButton"), q("visible"), q("true")});
    target.action(q("clickButton"), {Value::ofObject(button)});
    EXPECT_EQ(log(), "scene button\n");
    const RectReply bounds = target.client().request(GlobalBounds{button.id});
    const RectReply view = target.client().request(GlobalBounds{target.byName(q("view")).id});
    EXPECT_TRUE(QRect(view.x, view.y, view.width, view.height).contains(QPoint(bounds.x, bounds.y)));
    int times = 0;
    for (const auto& each :
         target.client().request(FindAll{Target::name({q("name"), q("sceneButton")})}).objects)
        times += each.id == button.id ? 1 : 0;
    EXPECT_EQ(times, 1) << "it is in the tree once";
}

TEST_F(AgentCorners, aContextMenuForWhereThePointerIs)
{
    for (const char* label : {"left", "right"}) {
        const Value button = Value::ofInt(4); // the right one
        target.action(q("mouseClick"), {object(label), button});
        ASSERT_EQ(target.waitFor({q("name"), q("contextMenu")}).failed, 0u);
        target.action(q("activateItem"), {object("contextMenu"), text("Copy")});
        EXPECT_TRUE(logSays((std::string("menu Copy on ") + label).c_str())) << log();
    }
}

TEST_F(AgentCorners, dragAndDropBetweenWidgets)
{
    const RectReply from = target.client().request(GlobalBounds{target.byName(q("source")).id});
    const RectReply to = target.client().request(GlobalBounds{target.byName(q("sink")).id});
    const int dx = to.x + to.width / 2 - from.x - 10;
    const int dy = to.y + to.height / 2 - from.y - 10;
    target.action(q("mouseDrag"),
                  {object("source"), Value::ofInt(10), Value::ofInt(10), Value::ofInt(dx), Value::ofInt(dy)});
    EXPECT_TRUE(logSays("dropped cargo")) << log();
    // The button is up again.
    target.action(q("clickButton"), {object("openFile")});
    EXPECT_EQ(target.waitFor({q("type"), q("QFileDialog")}).failed, 0u);
}

TEST_F(AgentCorners, tooltipCompleterAndFileDialog)
{
    MouseAction move;
    move.kind = MouseActionKind::Move;
    move.object = target.byName(q("left")).id;
    move.flags = MouseHasObject;
    target.client().request(move);
    const WaitReply tip = target.waitFor({q("type"), q("QTipLabel"), q("text"), q("tip of left")});
    EXPECT_EQ(tip.failed, 0u) << tip.explanation.toStdString();

    target.action(q("type"), {object("completed"), text("ap")});
    const WaitReply popup = target.waitFor({q("type"), q("QListView"), q("visible"), q("true")});
    ASSERT_EQ(popup.failed, 0u) << popup.explanation.toStdString();
    target.action(q("clickItem"), {Value::ofObject(popup.object), text("apricot")});
    EXPECT_EQ(target.get(target.byName(q("completed")), q("text")).text, q("apricot"));

    target.action(q("clickButton"), {object("openFile")});
    const WaitReply edit = target.waitFor({q("type"), q("QLineEdit"), q("name"), q("fileNameEdit")});
    ASSERT_EQ(edit.failed, 0u) << edit.explanation.toStdString();
    target.action(q("type"), {Value::ofObject(edit.object), text("passwd<Return>")});
    EXPECT_TRUE(logSays("file /etc/passwd")) << log();
}

TEST_F(AgentCorners, theExtensionOfAToolBar)
{
    const auto hidden = target.find({q("type"), q("QToolButton"), q("text"), q("Tool 29")});
    EXPECT_THROW(target.action(q("clickButton"), {Value::ofObject(hidden)}), RequestError) << "not in view";
    target.action(q("clickButton"), {object("qt_toolbar_ext_button")});
    const WaitReply shown = target.waitFor({q("type"), q("QToolButton"), q("text"), q("Tool 29")});
    ASSERT_EQ(shown.failed, 0u) << shown.explanation.toStdString();
    target.action(q("clickButton"), {Value::ofObject(shown.object)});
    EXPECT_TRUE(logSays("Tool 29")) << log();
}

TEST_F(AgentCorners, anObjectOfAnotherThreadIsNotTouched)
{
    const auto corners = target.byName(q("corners"));
    const Value worker = target.get(corners, q("worker"));
    ASSERT_NE(worker.object.id, 0);
    try {
        target.get(worker.object, q("rounds"));
        FAIL();
    } catch (const RequestError& error) {
        EXPECT_NE(std::string(error.what()).find("thread"), std::string::npos) << error.what();
    }
    EXPECT_THROW(target.client().request(RealName{worker.object.id}), RequestError);
    EXPECT_FALSE(target.get(corners, q("workerTouched")).integer);
    target.call(corners, q("endWorker"));
    ObjectsDestroyed gone;
    ASSERT_TRUE(target.client().waitForPush(&gone)) << "its end is told all the same";
    EXPECT_TRUE(gone.objects.contains(worker.object.id));
}

TEST_F(AgentCorners, stormsLateWindowsAndDeathsInTheMiddleOfACall)
{
    const auto corners = target.byName(q("corners"));
    target.call(corners, q("storm"), {Value::ofInt(500)});
    while (!logSays("storm over"))
        target.client().request(FindAll{Target::name({q("name"), q("stormy")})});
    target.call(corners, q("openLateWindow"), {Value::ofInt(50)});
    const WaitReply late = target.waitFor({q("name"), q("lateButton")});
    ASSERT_EQ(late.failed, 0u) << late.explanation.toStdString();
    target.action(q("clickButton"), {Value::ofObject(late.object)});
    EXPECT_TRUE(logSays("late button"));
    target.action(q("closeWindow"), {object("lateWindow")});
    EXPECT_THROW(target.byName(q("lateButton")), RequestError);

    // The object of the call, and its arguments, may go while it runs.
    const auto left = target.byName(q("left"));
    EXPECT_EQ(target.call(corners, q("deleteWhileCalled"), {Value::ofObject(left)}).integer, 7);
    EXPECT_THROW(target.get(left, q("text")), RequestError);
    EXPECT_EQ(target.call(corners, q("deleteWhileCalled"), {Value::ofObject(corners)}).integer, 7);
    EXPECT_THROW(target.get(corners, q("log")), RequestError);
}

TEST(AgentMirrored, clicksHitTheRightPlaceFromRightToLeft)
{
    Target target(Target::corners(), {q("--right-to-left")});
    const auto left = target.byName(q("left"));
    const auto right = target.byName(q("right"));
    EXPECT_GT(target.client().request(GlobalBounds{left.id}).x,
              target.client().request(GlobalBounds{right.id}).x);
    target.action(q("clickButton"), {Value::ofObject(target.byName(q("qt_toolbar_ext_button")))});
    const WaitReply shown = target.waitFor({q("type"), q("QToolButton"), q("text"), q("Tool 29")});
    ASSERT_EQ(shown.failed, 0u) << shown.explanation.toStdString();
    target.action(q("clickButton"), {Value::ofObject(shown.object)});
    EXPECT_NE(target.get(target.byName(q("corners")), q("log")).text.indexOf(q("Tool 29")), -1);
}

TEST(AgentWindows, aWindowWithoutWidgetsIsClickedTypedIntoAndShown)
{
    Target target(Target::example(q("qpa/windows/windows")));
    const auto windows = target.client().request(TopLevels()).objects;
    ASSERT_GE(windows.size(), 2);
    const Value window = Value::ofObject(windows.first());
    target.action(q("mouseClick"), {window, Value::ofInt(20), Value::ofInt(20)});
    target.action(q("type"), {window, text("abc")});
    const QByteArray png =
        target.client().request(Screenshot{windows.first().id, ScreenshotArea::Object}).png;
    EXPECT_TRUE(png.startsWith("\x89PNG"));
}
