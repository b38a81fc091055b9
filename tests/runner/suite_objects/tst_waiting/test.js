import { expectErrors } from "checks.js";
import * as names from "names.js";

function main() {
    startApplication("torvixtarget");
    eachConditionIsToldByItsName();
    theWaitEndsWithTheChange();
    itemsAreWaitedFor();
    timeoutsAreNumbers();
    aModalWindowStandsInTheWay();
}

function eachConditionIsToldByItsName() {
    const disabled = findObject(names.disabled);
    expectErrors([
        [() => waitForObject({ name: "coutn" }, 200),
            "TypeError: Object {name='coutn'} does not exist after 200 ms. " +
            "The closest is QPushButton 'count': its 'name' is 'count', not 'coutn'."],
        [() => waitForObjectExists({ name: "zzzzzz" }, 1),
            "TypeError: Object {name='zzzzzz'} does not exist after 1 ms. Nothing comes near it."],
        [() => waitForObject({ name: "table" }, 200),
            "TypeError: Object {name='table'} is not visible after 200 ms: " +
            "QTableWidget 'table' is there, but not ready: it is not visible."],
        [() => waitForObject({ name: "disabled" }, 50),
            "TypeError: Object {name='disabled'} is not enabled after 50 ms: " +
            "QPushButton 'disabled' is there, but not ready: it is disabled."],
        [() => waitForObject(disabled, 50),
            "TypeError: The QPushButton is not enabled after 50 ms: " +
            "QPushButton 'disabled' is there, but not ready: it is disabled."],
    ]);
    test.compare(waitForObjectExists(disabled), disabled, "it only has to exist");
    test.compare(waitForObjectExists({ name: "table" }).rowCount, 3);
}

function theWaitEndsWithTheChange() {
    const control = findObject(names.controls);
    control.appearLater(300);
    const late = waitForObject({ name: "lateLabel" }, 15000);
    test.compare(late.text, "late");
    const disabled = findObject(names.disabled);
    disabled.text = "Another";
    disabled.enabled = true;
    test.compare(waitForObject(disabled), disabled, "an object is waited for whatever its name is now");
    control.deleteLaterLabel();
    expectErrors([[() => waitForObject(late), "TypeError: The QLabel has been destroyed"]]);
}

function itemsAreWaitedFor() {
    expectErrors([
        [() => waitForObjectItem({ name: "tabel" }, 0, 0, 200),
            "TypeError: Object {name='tabel'} does not exist after 200 ms. " +
            "The closest is QTableWidget 'table': its 'name' is 'table', not 'tabel'."],
        [() => waitForObjectItem({ name: "table" }, 0, 0, 200),
            "TypeError: Item in row 0, column 0 is not visible after 200 ms: " +
            "The item '0, 0' of QTableWidget 'table' is not visible."],
        [() => waitForObjectItem({ name: "fileMenu" }, "Gone", 20),
            "TypeError: Item 'Gone' is not enabled after 20 ms: The item 'Gone' of QMenu 'fileMenu' is disabled."],
        [() => waitForObjectItem({ name: "zzz" }, undefined, 5),
            "TypeError: Object {name='zzz'} does not exist after 5 ms. Nothing comes near it."],
    ]);
    clickItem(waitForObjectExists({ type: "QTabBar" }), "Views");
    test.compare(waitForObjectItem({ name: "table" }, 2, 1).text, "cell 2.1");
    test.compare(waitForObjectItem({ name: "table" }, 2, 1, 0).text, "cell 2.1");
    test.compare(typeName(waitForObjectItem({ name: "treeWidget" }, "Fruit.Pear\\.green")), "QModelIndex");
    test.compare(waitForObjectItem({ name: "list" }, "entry 150").text, "entry 150");
    expectErrors([
        [() => waitForObjectItem({ name: "modelView" }, "Root.Iner", 20),
            "TypeError: Item 'Root.Iner' does not exist after 20 ms. " +
            "QTreeView 'modelView' has no item 'Root.Iner'. 'Root' has 'Inner'."],
        [() => waitForObjectItem({ name: "table" }, 9, 9, 20),
            "TypeError: Item in row 9, column 9 does not exist after 20 ms. " +
            "QTableWidget 'table' has no item '9, 9'. It has 3 rows and 2 columns."],
    ]);
    clickItem(waitForObject({ type: "QTabBar" }), "Controls");
}

function timeoutsAreNumbers() {
    const wrong = "TypeError: The timeout has to be a number of milliseconds, not ";
    expectErrors([
        [() => waitForObject(names.count, -1), wrong + "'-1'"],
        [() => waitForObject(names.count, NaN), wrong + "'NaN'"],
        [() => waitForObject(names.count, "5"), wrong + "'5'"],
        [() => waitForObjectItem({ name: "table" }, 0, 0, null), wrong + "'null'"],
        [() => waitForObject(), "TypeError: Wrong number of arguments (0), use waitForObject(name[, timeout])"],
        [() => waitForObjectItem(names.count), "TypeError: Wrong number of arguments (1), use " +
            "waitForObjectItem(name, item[, timeout]) or (name, row, column[, timeout])"],
    ]);
    test.compare(waitForObject(names.count, Infinity).objectName, "count");
    test.compare(testSettings.waitForObjectTimeout, 15000, "what suite.ini says, in each test case");
    testSettings.waitForObjectTimeout = 30;
    expectErrors([[() => waitForObject({ name: "zzz" }),
        "TypeError: Object {name='zzz'} does not exist after 30 ms. Nothing comes near it."]]);
    testSettings.waitForObjectTimeout = 15000;
}

function aModalWindowStandsInTheWay() {
    clickButton(waitForObject(names.modal));
    waitForObject(names.dialog);
    const blocked = "The item 'New' of QMenu 'fileMenu' cannot be reached: the modal window QDialog 'modalDialog' is open.";
    expectErrors([
        [() => waitForObject({ name: "count" }, 200),
            "TypeError: Object {name='count'} is blocked by a modal window after 200 ms: " +
            "QPushButton 'count' is there, but not ready: the modal window QDialog 'modalDialog' is open."],
        [() => waitForObjectItem({ name: "fileMenu" }, "New", 200),
            "TypeError: Item 'New' is blocked by a modal window after 200 ms: " + blocked],
        [() => mouseClick(findObject({ name: "count" })), "EvalError: Error in mouseClick() invocation: " +
            "QPushButton 'count' gets no input while the modal window QDialog 'modalDialog' is open"],
    ]);
    clickButton(waitForObject({ type: "QPushButton", text: /C[a]ncel/, window: names.dialog }));
    test.compare(waitForObject({ name: "count" }).objectName, "count");
}
