#include "support/application/running.h"

namespace {

using namespace Torvix;
using namespace Torvix::Testing;

TEST(Calculator, OneAndTwoAreThree)
{
    Running calculator(sample("widgets/calculator"));
    ASSERT_TRUE(calculator.isGood());
    const SharedPtr<Object> display = calculator.wait("{type='QLineEdit'}");
    for (const char* key : {"{type='Button' text='1'}", "{type='Button' text='+'}",
                            "{type='Button' text='2'}", "{type='Button' text='='}"})
        calculator.act("mouseClick", {calculator.wait(key)});
    EXPECT_EQ(utf8("3"), calculator.get(display, "text"));
    calculator.act("clickButton", {calculator.wait("{type='Button' text*='Clear A*'}")});
    EXPECT_EQ(utf8("0"), calculator.get(display, "text"));
}

TEST(Calculator, IsDescribedAndShown)
{
    Running calculator(sample("widgets/calculator"));
    ASSERT_TRUE(calculator.isGood());
    Inspector* inspector = Inspector::self();
    const SharedPtr<Object> button = calculator.wait("{type='Button' text='7' window={type='Calculator'}}");
    ASSERT_TRUE(button);
    const QString realName = *button->realName();
    EXPECT_TRUE(inspector->findObject(realName)->compare(button)) << qPrintable(realName);
    EXPECT_EQ(30, inspector->findAllObjects(utf8("{type='Button'}"))->size() + 3) << "27 buttons";
    const Class* type = button->objectClass();
    EXPECT_GE(type->inheritanceDepth(inspector->classByName(utf8("QWidget"))), 2);
    EXPECT_TRUE(inspector->parent(button)->compare(calculator.find("{type='Calculator'}")));

    const QRect bounds = *inspector->globalBounds(button);
    EXPECT_TRUE(inspector->objectAt(bounds.center().x(), bounds.center().y())->compare(button));
    EXPECT_TRUE(inspector->grabScreenshot(button)->startsWith("\x89PNG"));
    EXPECT_TRUE(inspector->highlight(button, 10));

    const QString miss = inspector->findObject(utf8("{type='Button' text='8' visible=false}")).error();
    EXPECT_TRUE(miss.contains(utf8("visible"))) << qPrintable(miss);
    EXPECT_FALSE(inspector->findObject(utf8("{type='NoSuchType'}")).error().isEmpty());
}

TEST(AddressBook, AnEntryAddedThroughMenuAndDialogIsARow)
{
    Running book(sample("itemviews/addressbook"));
    ASSERT_TRUE(book.isGood());
    const SharedPtr<Object> bar = book.wait("{type='QMenuBar'}");
    book.act("activateItem", {bar, value("Tools.Add Entry\\.\\.\\.")});
    const SharedPtr<Object> name = book.wait("{type='QLineEdit' window={type='AddDialog'}}");
    book.act("type", {name, value("Erika M.")});
    book.act("type", {book.wait("{type='QTextEdit' window={type='AddDialog'}}"), value("Heidestr. 17")});

    // While the dialog is open the main window takes no input, and the wait says so.
    const Inspector::WaitResult blocked = Inspector::self()->waitForObject(utf8("{type='QMenuBar'}"), 100);
    EXPECT_EQ(quint32(Protocol::WaitNotBlocked), blocked.failed);
    EXPECT_TRUE(blocked.error.contains(utf8("blocked"))) << qPrintable(blocked.error);

    book.act("clickButton", {book.wait("{type='QPushButton' text='OK' window={type='AddDialog'}}")});
    book.act("clickItem", {book.wait("{type='AddressWidget'}"), value("DEF")});
    const SharedPtr<Object> table = book.wait("{type='QTableView' visible=true}");
    const Inspector::WaitResult row = Inspector::self()->waitForItem(table, utf8("Erika M\\."), 5000);
    EXPECT_EQ(0u, row.failed) << qPrintable(row.error);
    const Inspector::WaitResult address = Inspector::self()->waitForItem(table, 0, 1, 5000);
    ASSERT_EQ(0u, address.failed);
    EXPECT_EQ(utf8("Heidestr. 17"), book.get(address.object, "text"));
    EXPECT_NE(0u, Inspector::self()->waitForItem(table, utf8("Nobody"), 50).failed);
}

TEST(Spreadsheet, ACellIsReadAndEdited)
{
    Running sheet(sample("itemviews/spreadsheet"));
    ASSERT_TRUE(sheet.isGood());
    const SharedPtr<Object> table = sheet.wait("{type='QTableWidget'}");
    const Inspector::WaitResult cell = Inspector::self()->waitForItem(table, 1, 0, 5000);
    ASSERT_EQ(0u, cell.failed) << qPrintable(cell.error);
    EXPECT_EQ(utf8("AirportBus"), sheet.get(cell.object, "text"));
    sheet.act("doubleClickItem", {table, value("AirportBus")});
    const SharedPtr<Object> editor = sheet.wait("{type='QLineEdit' container={type='QTableWidget'}}");
    sheet.act("type", {editor, value("<Ctrl+A>Tram<Return>")});
    const Inspector::WaitResult again = Inspector::self()->waitForItem(table, 1, 0, 5000);
    EXPECT_EQ(utf8("Tram"), sheet.get(again.object, "text"));
}

TEST(TabDialog, ATabIsChosenAndABoxIsTicked)
{
    Running dialog(sample("dialogs/tabdialog"), {utf8("/bin/sh")});
    ASSERT_TRUE(dialog.isGood());
    EXPECT_NE(0u, Inspector::self()->waitForObject(utf8("{type='QCheckBox' text='Readable'}"), 50).failed)
        << "not on the tab in front";
    dialog.act("clickItem", {dialog.wait("{type='QTabWidget'}"), value("Permissions")});
    const SharedPtr<Object> box = dialog.wait("{type='QCheckBox' text='Readable'}");
    const bool wasOn = dialog.get(box, "checked") == utf8("true");
    dialog.act("clickButton", {box});
    EXPECT_EQ(wasOn ? utf8("false") : utf8("true"), dialog.get(box, "checked"));
    dialog.act("clickButton", {dialog.wait("{type='QPushButton' text*='*Cancel'}")});
    for (int i = 0; i < 500 && dialog.model->isAlive(); ++i)
        Inspector::self()->processEvents(10);
    EXPECT_TRUE(dialog.model->endReason().contains(utf8("exited with status 0")))
        << qPrintable(dialog.model->endReason());
}

TEST(StandardDialogs, AModalDialogOpenedByAClickDoesNotHoldTheCaller)
{
    Running dialogs(sample("dialogs/standarddialogs"));
    ASSERT_TRUE(dialogs.isGood());
    dialogs.act("mouseClick", {dialogs.wait("{type='QPushButton' text='QInputDialog::get&Text()'}")});
    const SharedPtr<Object> edit = dialogs.wait("{type='QLineEdit' window={type='QInputDialog'}}");
    dialogs.act("type", {edit, value("<Ctrl+A>typed")});
    EXPECT_EQ(utf8("typed"), dialogs.get(edit, "text"));
    dialogs.act("type", {edit, value("<Return>")});
    EXPECT_TRUE(dialogs.wait("{type='QLabel' text='typed'}"));
    EXPECT_TRUE(edit->isInvalidated()) << "it went with its dialog";
}

} // namespace
