#include "agent/client.h"

#include "protocol/eventmessages.h"
#include "protocol/lookupmessages.h"
#include "protocol/screenmessages.h"
#include "protocol/usermessages.h"

using namespace Torvix::Protocol;

/** What only a display has: a clipboard for all, windows that become active, another application. */
namespace {

QString q(const char* text)
{
    return QString::fromUtf8(text);
}

Value text(const char* value)
{
    return Value::ofString(q(value));
}

Value object(Target& target, const char* name)
{
    return Value::ofObject(target.byName(q(name)));
}

} // namespace

TEST(X11, textIsCopiedFromOneApplicationToAnother)
{
    Target first;
    Target second(Target::corners());
    first.action(q("type"), {object(first, "nameEdit"), text("carried over<Ctrl+A><Ctrl+C>")});
    second.action(q("type"), {object(second, "completed"), text("<Ctrl+V>")});
    EXPECT_EQ(second.get(second.byName(q("completed")), q("text")).text, q("carried over"));
}

TEST(X11, aClickMakesItsWindowTheActiveOne)
{
    Target target(Target::corners());
    const auto corners = target.byName(q("corners"));
    target.call(corners, q("openLateWindow"), {Value::ofInt(0)});
    const WaitReply late = target.waitFor({q("name"), q("lateButton")});
    ASSERT_EQ(late.failed, 0u) << late.explanation.toStdString();
    // Out of the way of the first window.
    const auto lateWindow = target.byName(q("lateWindow"));
    target.call(lateWindow, q("move"), {Value::ofInt(700), Value::ofInt(300)});
    target.action(q("mouseClick"), {Value::ofObject(late.object)});
    EXPECT_TRUE(target.call(lateWindow, q("isActiveWindow")).integer);
    target.action(q("mouseClick"), {object(target, "completed")});
    EXPECT_TRUE(target.call(corners, q("isActiveWindow")).integer);
    target.action(q("nativeType"), {text("here")});
    EXPECT_EQ(target.get(target.byName(q("completed")), q("text")).text, q("here"));
    // Where it is clicked, it is on the screen.
    const RectReply bounds = target.client().request(GlobalBounds{late.object.id});
    const auto at =
        target.client().request(ObjectAt{bounds.x + bounds.width / 2, bounds.y + bounds.height / 2});
    EXPECT_EQ(at.object.id, late.object.id);
}

TEST(X11, documentsInAnAreaAreTypedIntoAndTiled)
{

    Target target(Target::example(q("widgets/mainwindows/mdi/mdi")));
    const auto menus = target.find({q("type"), q("QMenuBar")});
    target.action(q("activateItem"), {Value::ofObject(menus), text("File.New")});
    target.action(q("activateItem"), {Value::ofObject(menus), text("File.New")});
    const WaitReply inner = target.waitFor({q("type"), q("MdiChild"), q("occurrence"), q("2")});
    ASSERT_EQ(inner.failed, 0u) << inner.explanation.toStdString();
    target.action(q("type"), {Value::ofObject(inner.object), text("two")});
    EXPECT_EQ(target.get(inner.object, q("plainText")).text, q("two"));
    target.action(q("activateItem"), {Value::ofObject(menus), text("Window.Tile")});
    const RectReply tiled = target.client().request(GlobalBounds{inner.object.id});
    EXPECT_GT(tiled.width, 0);
}
