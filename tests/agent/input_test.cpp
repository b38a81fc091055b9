#include "agent/client.h"
#include "protocol/eventmessages.h"
#include "protocol/lookupmessages.h"
#include "protocol/screenmessages.h"
#include "protocol/waitmessages.h"

#include <QImage>

using namespace Torvix::Protocol;
using Kind = Value::Kind;

namespace {

QString q(const char* text)
{
    return QString::fromUtf8(text);
}

Value text(const char* value)
{
    return Value::ofString(q(value));
}

Value object(const ObjectRef& reference)
{
    return Value::ofObject(reference);
}

/** Brings a page of the main window's tabs to the front. */
void openPage(Target& target, const char* title)
{
    target.action(q("activateItem"), {object(target.byName(q("tabs"))), text(title)});
}

} // namespace

TEST(AgentInput, clicksArriveAsWindowSystemEvents)
{
    Target target;
    const auto control = target.byName(q("control"));
    const auto count = target.byName(q("count"));
    target.action(q("clickButton"), {object(count)});
    target.action(q("mouseClick"), {object(count)});
    target.action(q("mouseClick"), {object(count), Value::ofInt(5), Value::ofInt(6), Value::ofInt(0x04000000),
                                    Value::ofInt(1)});
    EXPECT_EQ(target.get(control, q("clicks")).integer, 3);
    const QStringList log = target.get(control, q("log")).text.split(QLatin1Char('\n'));
    EXPECT_TRUE(log.contains(q("count press button 1 modifiers 67108864 at 5,6 spontaneous 1")))
        << log.join(q("|")).toStdString();
    EXPECT_THROW(target.action(q("clickButton"), {object(target.byName(q("disabled")))}), RequestError);

    const auto pad = target.byName(q("pad"));
    target.action(q("doubleClick"), {object(pad), Value::ofInt(10), Value::ofInt(10)});
    target.action(q("mouseWheel"), {object(pad), Value::ofInt(0), Value::ofInt(-2)});
    target.action(q("mouseClick"), {object(pad), Value::ofInt(3), Value::ofInt(4), Value::ofInt(4)});
    const QString seen = target.get(pad, q("seen")).text;
    for (const char* line :
         {"press 1 0 10,10", "double 1 0 10,10", "wheel 0,-240", "press 2 0 3,4", "release 2 0 3,4"})
        EXPECT_TRUE(seen.split(QLatin1Char('\n')).contains(q(line))) << line << " in " << seen.toStdString();
    target.call(pad, q("forget"));
    target.action(q("mouseDrag"),
                  {object(pad), Value::ofInt(5), Value::ofInt(5), Value::ofInt(50), Value::ofInt(20)});
    const QStringList moves = target.get(pad, q("seen")).text.split(QLatin1Char('\n'));
    EXPECT_TRUE(moves.contains(q("move 1 0 30,15"))) << moves.join(q("|")).toStdString();
    EXPECT_EQ(moves.last(), q("release 1 0 55,25"));
}

TEST(AgentInput, pressMoveAndReleaseAreActionsOfTheirOwn)
{
    Target target;
    const auto pad = target.byName(q("pad"));
    MouseAction action;
    action.flags = MouseHasObject | MouseHasPosition | MouseHasButton;
    action.object = pad.id;
    action.x = 4;
    action.y = 5;
    action.button = 4; // the right one, as scripts count
    for (const MouseActionKind kind : {MouseActionKind::Press, MouseActionKind::Release}) {
        action.kind = kind;
        target.client().request(action);
    }
    EXPECT_EQ(target.get(pad, q("seen")).text, q("press 2 0 4,5\nrelease 2 0 4,5"));
}

TEST(AgentInput, typesTextAndKeySequences)
{
    Target target;
    const auto edit = target.byName(q("nameEdit"));
    target.action(q("type"), {object(edit), text("Hi <b> ü<Backspace>o!<Home>X")});
    EXPECT_EQ(target.get(edit, q("text")).text, q("XHi <b> o!"));
    target.action(q("type"), {object(edit), text("<Ctrl+A><Del>new")});
    EXPECT_EQ(target.get(edit, q("text")).text, q("new"));
    const auto pad = target.byName(q("pad"));
    target.action(q("type"), {object(pad), text("<Ctrl+Shift+F5>a")});
    EXPECT_TRUE(target.get(pad, q("seen")).text.contains(q("key Ctrl+Shift+F5")))
        << target.get(pad, q("seen")).text.toStdString();
    // A shortcut of a menu works as for a person.
    target.action(q("type"), {object(target.byName(q("pad"))), text("<Ctrl+N>")});
    EXPECT_EQ(target.get(target.byName(q("mainWindow")), q("lastAction")).text, q("&New"));
}

TEST(AgentInput, activatesMenusTabsAndComboBoxes)
{
    Target target;
    const auto window = target.byName(q("mainWindow"));
    const auto menuBar = target.find({q("type"), q("QMenuBar")});
    target.action(q("activateItem"), {object(menuBar), text("File.New")});
    EXPECT_EQ(target.get(window, q("lastAction")).text, q("&New"));
    target.action(q("activateItem"), {object(menuBar), text("File.Open Recent.Dot\\.and\\.more")});
    EXPECT_EQ(target.get(window, q("lastAction")).text, q("Dot.and.more"));
    EXPECT_THROW(target.action(q("activateItem"), {object(menuBar), text("File.Gone")}), RequestError);
    target.action(q("nativeType"), {text("<Esc><Esc>")});
    EXPECT_THROW(target.action(q("activateItem"), {object(menuBar), text("File.Nowhere")}), RequestError);

    openPage(target, "Inputs");
    EXPECT_EQ(target.get(target.byName(q("tabs")), q("currentIndex")).integer, 2);
    const auto combo = target.byName(q("combo"));
    target.action(q("activateItem"), {object(combo), text("dark\\.blue")});
    EXPECT_EQ(target.get(combo, q("currentText")).text, q("dark.blue"));
    const auto check = target.byName(q("check"));
    target.action(q("clickButton"), {object(check)});
    EXPECT_EQ(target.get(check, q("checked")).integer, 1);
}

TEST(AgentInput, reachesItemsOfViews)
{
    Target target;
    openPage(target, "Views");
    const auto list = target.byName(q("list"));
    target.action(q("clickItem"), {object(list), text("entry 150")});
    EXPECT_EQ(target.get(list, q("currentRow")).integer, 150);
    const auto tree = target.byName(q("treeWidget"));
    target.action(q("clickItem"), {object(tree), text("Fruit.Pear\\.green")});
    const auto current = target.call(tree, q("currentItem"));
    EXPECT_EQ(target.call(current.object, q("text"), {Value::ofInt(0)}).text, q("Pear.green"));
    target.action(q("collapseItem"), {object(tree), text("Fruit")});
    target.action(q("expandItem"), {object(tree), text("Nuts")});
    const auto nuts = target.call(tree, q("topLevelItem"), {Value::ofInt(1)});
    EXPECT_EQ(target.call(nuts.object, q("isExpanded")).integer, 1);

    // A cell is edited as by hand: double click, type over, Return.
    const auto table = target.byName(q("table"));
    const auto cell = target.call(table, q("item"), {Value::ofInt(2), Value::ofInt(1)});
    target.action(q("doubleClick"), {cell});
    target.action(q("nativeType"), {text("<Ctrl+A>edited<Return>")});
    EXPECT_EQ(target.call(cell.object, q("text")).text, q("edited"));

    FindItem find;
    find.container = tree.id;
    find.path = QStringList{q("Nuts"), q("Wal\\nut")};
    WaitReply found = target.client().request(find);
    EXPECT_EQ(found.failed, 0u);
    EXPECT_EQ(target.get(found.object, q("text")).text, q("Wal\\nut"));
    find.path = QStringList{q("Nuts"), q("Pea")};
    find.timeoutMs = 50;
    found = target.client().request(find);
    EXPECT_EQ(found.failed, quint32(WaitExists));
    EXPECT_EQ(found.explanation.toStdString(), "QTreeWidget 'treeWidget' has no item 'Nuts.Pea'. "
                                               "'Nuts' has 'leaf', 'Hazel', 'Wal\\\\nut'.");
    find.path.clear();
    find.row = 77;
    EXPECT_TRUE(target.client().request(find).explanation.endsWith(q("It has 2 rows and 2 columns.")));
    EXPECT_THROW(target.action(q("activateItem"), {object(list), text("Entry 150")}), RequestError);
}

TEST(AgentInput, itemsOfAModelAreThoseOfTheViewTheyWereFoundIn)
{
    Target target;
    openPage(target, "Views");
    // The header of the tree has the same model, but no place for its items.
    const auto tree = target.byName(q("treeWidget"));
    FindItem find;
    find.container = tree.id;
    find.path = QStringList{q("Fruit"), q("Pear.green")};
    const WaitReply found = target.client().request(find);
    ASSERT_EQ(found.failed, 0u);
    for (int i = 0; i < 20; ++i)
        EXPECT_GT(target.client().request(GlobalBounds{found.object.id}).height, 5);
}

TEST(AgentInput, keysGoToTheFocusAgainAfterAMenu)
{
    Target target;
    openPage(target, "Views");
    const auto list = target.byName(q("list"));
    target.action(q("clickItem"), {object(list), text("entry 10")});
    const auto menuBar = target.find({q("type"), q("QMenuBar")});
    target.action(q("activateItem"), {object(menuBar), text("File.Open Recent.One\\.txt")});
    target.action(q("type"), {object(list), text("<Down><Down>")});
    EXPECT_EQ(target.get(list, q("currentRow")).integer, 12);

    // An open menu does not take a click that is meant for a button.
    target.action(q("mouseClick"), {object(menuBar), Value::ofInt(20), Value::ofInt(10)});
    ASSERT_EQ(target.waitFor({q("type"), q("QMenu"), q("visible"), q("true")}).failed, 0u);
    target.action(q("clickItem"), {object(list), text("entry 14")});
    EXPECT_EQ(target.get(list, q("currentRow")).integer, 14);
}

TEST(AgentInput, aClickThatOpensAModalDialogReturns)
{
    Target target;
    const auto control = target.byName(q("control"));
    target.action(q("clickButton"), {object(target.byName(q("modal")))});
    const WaitReply dialog = target.waitFor({q("type"), q("QDialog"), q("name"), q("modalDialog")});
    ASSERT_EQ(dialog.failed, 0u) << dialog.explanation.toStdString();

    // What is behind the dialog gets no input, and says so.
    const WaitReply behind = target.waitFor({q("name"), q("count")}, 50);
    EXPECT_EQ(behind.failed, quint32(WaitNotBlocked));
    EXPECT_TRUE(behind.explanation.contains(q("modalDialog"))) << behind.explanation.toStdString();
    EXPECT_THROW(target.action(q("clickButton"), {object(target.byName(q("count")))}), RequestError);

    target.action(q("type"), {object(target.byName(q("modalEdit"))), text("inside")});
    target.action(q("clickButton"), {object(target.find({q("type"), q("QPushButton"), q("text"), q("OK")}))});
    EXPECT_EQ(target.get(control, q("log")).text.section(QLatin1Char('\n'), -1), q("accepted inside"));

    // The same from a menu, from a slot that is called, and from a getter.
    const auto menuBar = target.find({q("type"), q("QMenuBar")});
    target.action(q("activateItem"), {object(menuBar), text("File.Ask\\.\\.\\.")});
    target.action(q("closeWindow"), {object(target.waitFor({q("name"), q("modalDialog")}).object)});
    target.call(control, q("openModal"));
    target.action(q("closeWindow"), {object(target.waitFor({q("name"), q("modalDialog")}).object)});
    EXPECT_EQ(target.get(control, q("log")).text.section(QLatin1Char('\n'), -1), q("rejected"));

    const auto shapes = target.byName(q("shapes"));
    try {
        target.get(shapes, q("dialogText"));
        FAIL() << "the getter is in its dialog";
    } catch (const RequestError& error) {
        EXPECT_EQ(error.kind, ErrorClass::Blocked);
        EXPECT_NE(std::string(error.what()).find("getterBox"), std::string::npos) << error.what();
    }
    EXPECT_EQ(target.get(shapes, q("number")).integer, 42) << "other requests are served meanwhile";
    target.action(q("type"), {object(target.byName(q("getterBox"))), text("<Return>")});
    EXPECT_THROW(target.find({q("name"), q("getterBox")}), RequestError);
}

TEST(AgentInput, showsBoundsPicturesAndWhatIsAtAPoint)
{
    Target target;
    const auto count = target.byName(q("count"));
    const RectReply bounds = target.client().request(GlobalBounds{count.id});
    EXPECT_GT(bounds.width, 20);
    const auto at = target.client().request(ObjectAt{bounds.x + 3, bounds.y + 3}).object;
    EXPECT_EQ(at.id, count.id);
    for (const ScreenshotArea area :
         {ScreenshotArea::Object, ScreenshotArea::Window, ScreenshotArea::Screen}) {
        const QImage image = QImage::fromData(target.client().request(Screenshot{count.id, area}).png, "PNG");
        EXPECT_FALSE(image.isNull());
        if (area == ScreenshotArea::Object)
            EXPECT_EQ(image.size(), QSize(bounds.width, bounds.height));
        else
            EXPECT_GT(image.width(), bounds.width);
    }
    target.client().request(Highlight{count.id, 100});
    EXPECT_EQ(target.waitFor({q("name"), q("torvix_highlight")}, 1000, WaitVisible).failed, 0u);
    EXPECT_THROW(
        target.client().request(GlobalBounds{target.get(target.byName(q("shapes")), q("item")).object.id}),
        RequestError);
}

/** Positions are those of the desktop, pictures have the pixels of the device. */
TEST(AgentInput, clicksAndPicturesOnAScaledDesktop)
{
    for (const char* factor : {"1.5", "2"}) {
        SCOPED_TRACE(factor);
        Target target(Target::defaultProgram(), {},
                      {{q("QT_SCALE_FACTOR"), q(factor)}, {q("QT_AUTO_SCREEN_SCALE_FACTOR"), q("1")}});
        const auto pad = target.byName(q("pad"));
        target.action(q("mouseClick"), {object(pad), Value::ofInt(31), Value::ofInt(14)});
        target.action(q("mouseDrag"),
                      {object(pad), Value::ofInt(5), Value::ofInt(5), Value::ofInt(90), Value::ofInt(30)});
        const QStringList seen = target.get(pad, q("seen")).text.split(QLatin1Char('\n'));
        EXPECT_TRUE(seen.contains(q("press 1 0 31,14"))) << seen.join(q("|")).toStdString();
        EXPECT_EQ(seen.last(), q("release 1 0 95,35"));
        const auto count = target.byName(q("count"));
        const RectReply bounds = target.client().request(GlobalBounds{count.id});
        EXPECT_EQ(target.client().request(ObjectAt{bounds.x + 3, bounds.y + 3}).object.id, count.id);
        const auto size = [&](ScreenshotArea area) {
            return QImage::fromData(target.client().request(Screenshot{count.id, area}).png).size();
        };
        const double ratio = q(factor).toDouble();
        EXPECT_EQ(size(ScreenshotArea::Object), (QSizeF(bounds.width, bounds.height) * ratio).toSize());
        EXPECT_GE(size(ScreenshotArea::Screen).width(), 800) << "all of the device";
    }
}
