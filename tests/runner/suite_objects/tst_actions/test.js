import { expectErrors } from "checks.js";
import * as names from "names.js";

function main() {
    startApplication("torvixtarget");
    theMouseGoesWhereItIsSent();
    keysComeAsTheyAreWritten();
    buttonsAreClickedAndDialogsAnswered();
    itemsAreActivated();
    valuesAreScrolledTo();
    wrongTargetsAreErrors();
}

function seen() {
    const pad = findObject({ name: "pad" });
    const text = pad.seen;
    pad.forget();
    return text.split("\n").join("; ");
}

function theMouseGoesWhereItIsSent() {
    const pad = waitForObject({ name: "pad" });
    seen();
    mouseClick(pad, 10, 20, MouseButton.LeftButton);
    test.compare(seen().replace(/move[^;]*; /, ""), "press 1 0 10,20; release 1 0 10,20");
    mouseClick(pad, 5, 6, Modifier.Control, MouseButton.RightButton);
    test.compare(seen().replace(/move[^;]*; /, ""), "press 2 4 5,6; release 2 4 5,6");
    doubleClick(pad, 7, 8);
    test.verify(seen().includes("double 1 0 7,8"));
    mouseDrag(pad, 10, 10, 30, 5, Modifier.None, MouseButton.LeftButton);
    const drag = seen();
    test.verify(/press 1 0 10,10; .*move 1 0 40,15.*; release 1 0 40,15$/.test(drag), "the way of the drag", drag);
    mouseWheel(pad, 0, 1);
    test.compare(seen(), "wheel 0,120");
}

function keysComeAsTheyAreWritten() {
    const edit = waitForObject(names.nameEdit);
    type(edit, "Gr\u00fc\u00dfe <Shift+Home>");
    test.compare([edit.text, edit.selectedText].join("|"), "Gr\u00fc\u00dfe |Gr\u00fc\u00dfe ");
    type(edit, "<Delete>x");
    nativeType("y<Return>");
    test.compare(edit.text, "xy");
    setFocus(findObject({ name: "pad" }));
    seen();
    nativeType("a<Ctrl+S>");
    test.verify(/^key A a; .*key Ctrl\+S \x13$/.test(seen()));
}

function buttonsAreClickedAndDialogsAnswered() {
    const control = findObject(names.controls);
    control.clearLog();
    const before = control.clicks;
    clickButton(findObject(names.count));
    test.compare(control.clicks, before + 1);
    clickButton(findObject(names.modal));
    type(waitForObject({ name: "modalEdit" }), "in the dialog");
    clickButton(waitForObject({ type: "QPushButton", text: /.?OK/, window: names.dialog }));
    waitFor(() => !object.exists(names.dialog), 2000);
    test.verify(control.log.endsWith("accepted in the dialog"));
    clickButton(findObject(names.modal));
    closeWindow(waitForObject(names.dialog));
    waitFor(() => !object.exists(names.dialog), 2000);
    test.verify(control.log.endsWith("rejected"));
}

function itemsAreActivated() {
    const window = findObject(names.mainWindow);
    activateItem(waitForObject({ type: "QMenuBar" }), "File.Open Recent.Dot\\.and\\.more");
    test.compare(window.lastAction, "Dot.and.more");
    activateItem(waitForObjectItem({ type: "QMenuBar" }, "File").menu(), "New");
    test.compare(window.lastAction, "&New");
    clickItem(waitForObject({ type: "QTabBar" }), "Views");
    clickItem(waitForObject({ name: "list" }), "entry 150", Modifier.None, MouseButton.LeftButton);
    test.compare(findObject({ name: "list" }).currentItem().text(), "entry 150");
    const tree = waitForObject({ name: "treeWidget" });
    expandItem(tree, "Nuts");
    test.compare(tree.isExpanded(waitForObjectItem(tree, "Nuts")), true);
    collapseItem(tree, "Nuts");
    test.compare(tree.isExpanded(waitForObjectItem(tree, "Nuts")), false);
    doubleClickItem(findObject({ name: "treeWidget" }), "Fruit.Apple");
    test.compare(findObject({ name: "treeWidget" }).currentItem().text(0), "Apple");
    mouseClick(waitForObjectItem({ name: "table" }, 1, 1));
    test.compare(findObject({ name: "table" }).currentItem().text(), "cell 1.1");
}

function valuesAreScrolledTo() {
    scrollTo(findObject({ name: "list" }), "entry 10");
    clickItem(waitForObject({ type: "QTabBar" }), "Inputs");
    scrollTo(waitForObject({ name: "slider" }), 42);
    test.compare(findObject({ name: "slider" }).value, 42);
    activateItem(waitForObject({ name: "combo" }), "dark\\.blue");
    test.compare(findObject({ name: "combo" }).currentText, "dark.blue");
    clickButton(waitForObject({ name: "check" }));
    test.compare(findObject({ name: "check" }).checked, true);
    highlightObject(findObject({ name: "check" }), 1);
}

function wrongTargetsAreErrors() {
    const failed = name => "EvalError: Error in " + name + "() invocation: ";
    expectErrors([
        [() => clickButton(findObject({ name: "slider" })), failed("clickButton") + "QSlider 'slider' is no button"],
        [() => clickButton(findObject(names.disabled)), failed("clickButton") + "QPushButton 'disabled' is disabled"],
        [() => mouseClick(findObject({ name: "list" })), failed("mouseClick") + "QListWidget 'list' is not visible"],
        [() => type(findObject({ name: "nameEdit" }), "x"), failed("type") + "QLineEdit 'nameEdit' is not visible"],
        [() => highlightObject(findObject({ name: "check" }), -1),
            "Error: The duration has to be a whole number of milliseconds from 0"],
        [() => snooze(-1), "Error: snooze() needs a number of seconds from 0, not '-1'"],
        [() => isNull(), "Error: Wrong number of arguments (0), use isNull(object)"],
        [() => typeName(1, 2), "Error: Wrong number of arguments (2), use typeName(value)"],
        [() => findFile("images", "x"), "Error: findFile() finds 'testdata' and 'scripts', not 'images'"],
    ]);
}
