// A dialog with tabs.
import * as names from 'names.js';
const tabs = { type: "QTabWidget" };

function main() {
    const context = startApplication("tabdialog " + torvixinfo.testCase + "/test.js");
    test.compare(waitForObject(tabs).currentIndex, 0);
    test.compare(findObject({ type: "QLineEdit", visible: true }).text, "test.js");

    activateItem(tabs, "Permissions");
    test.compare(findObject(tabs).currentIndex, 1);
    const executable = waitForObject({ type: "QCheckBox", text: "Executable" });
    test.verify(!executable.checked);
    clickButton(executable);
    test.verify(executable.checked);
    test.verify(!object.exists({ type: "QListWidget", visible: true }), "the list is on the third page");

    clickItem(tabs, "Applications");
    const list = waitForObject({ type: "QListWidget" });
    clickItem(list, "Application 17");
    test.compare(list.currentItem().text(), "Application 17");
    mouseClick(waitForObjectItem(list, "Application 2"));
    test.compare(list.currentRow, 1);

    clickButton(names.button("OK"));
    test.verify(waitFor(() => !context.isRunning, 2000));
}
