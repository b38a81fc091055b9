#include "agent/client.h"
#include "protocol/applicationmessages.h"
#include "protocol/lookupmessages.h"
#include "protocol/waitmessages.h"

using namespace Torvix::Protocol;

/** Applications that know nothing of us, as Debian ships them. */
namespace {

QString q(const char* text)
{
    return QString::fromUtf8(text);
}

Value text(const char* value)
{
    return Value::ofString(q(value));
}

void clickText(Target& target, const char* type, const char* label)
{
    target.action(q("clickButton"),
                  {Value::ofObject(target.find({q("type"), q(type), q("text"), q(label)}))});
}

} // namespace

TEST(AgentExamples, calculatorAddsOneAndTwo)
{
    Target target(Target::example(q("widgets/widgets/calculator/calculator")));
    for (const char* button : {"1", "+", "2", "="})
        clickText(target, "Button", button);
    const auto display = target.find({q("type"), q("QLineEdit")});
    EXPECT_EQ(target.get(display, q("text")).text, q("3"));
}

TEST(AgentExamples, addressBookTakesAnEntryThroughMenuAndDialog)
{
    Target target(Target::example(q("widgets/itemviews/addressbook/addressbook")));
    const auto menuBar = target.find({q("type"), q("QMenuBar")});
    target.action(q("activateItem"), {Value::ofObject(menuBar), text("Tools.Add Entry\\.\\.\\.")});
    const WaitReply name = target.waitFor({q("type"), q("QLineEdit"), q("visible"), q("true")});
    ASSERT_EQ(name.failed, 0u) << name.explanation.toStdString();
    target.action(q("type"), {Value::ofObject(name.object), text("Ann Lee")});
    const WaitReply address = target.waitFor({q("type"), q("QTextEdit"), q("visible"), q("true")});
    target.action(q("type"), {Value::ofObject(address.object), text("High Street")});
    clickText(target, "QPushButton", "OK");
    bool found = false;
    for (const ObjectRef& view :
         target.client().request(FindAll{Target::name({q("type"), q("QTableView")})}).objects) {
        const Value model = target.call(view, q("model"));
        if (target.call(model.object, q("rowCount")).integer == 0)
            continue;
        const Value index = target.call(model.object, q("index"), {Value::ofInt(0), Value::ofInt(0)});
        found = found || target.get(index.object, q("text")).text == q("Ann Lee");
    }
    EXPECT_TRUE(found);
}

TEST(AgentExamples, spreadsheetCellIsReadAndEdited)
{
    Target target(Target::example(q("widgets/itemviews/spreadsheet/spreadsheet")));
    const auto table = target.find({q("type"), q("QTableWidget")});
    const Value cell = target.call(table, q("item"), {Value::ofInt(1), Value::ofInt(0)});
    EXPECT_EQ(target.call(cell.object, q("text")).text, q("AirportBus"));
    target.action(q("doubleClick"), {cell});
    target.action(q("nativeType"), {text("<Ctrl+A>Train<Return>")});
    EXPECT_EQ(target.call(cell.object, q("text")).text, q("Train"));
}

TEST(AgentExamples, tabDialogChangesPagesAndCloses)
{
    Target target(Target::example(q("widgets/dialogs/tabdialog/tabdialog")), {q("/etc/hostname")});
    const auto tabs = target.find({q("type"), q("QTabWidget")});
    target.action(q("activateItem"), {Value::ofObject(tabs), text("Permissions")});
    EXPECT_EQ(target.get(tabs, q("currentIndex")).integer, 1);
    const auto box =
        target.find({q("type"), q("QCheckBox"), q("text"), q("Writable"), q("visible"), q("true")});
    const bool before = target.get(box, q("checked")).integer;
    target.action(q("clickButton"), {Value::ofObject(box)});
    EXPECT_NE(bool(target.get(box, q("checked")).integer), before);
    target.client().begin(Ping());
    try {
        clickText(target, "QPushButton", "Cancel");
    } catch (const std::runtime_error&) {
        // the program may be gone before it answers
    }
    EXPECT_TRUE(target.client().waitForEnd(5000));
}
