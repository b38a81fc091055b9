// A dialog fills a table, which tabs filter.
import * as names from 'names.js';
const dialog = { type: "AddDialog" };

function add(name, address) {
    activateItem(waitForObject(names.menuBar), "Tools.Add Entry...");
    type(waitForObject({ type: "QLineEdit", window: dialog }), name);
    type(waitForObject({ type: "QTextEdit", window: dialog }), address);
    clickButton(waitForObject(names.button("OK", dialog)));
}

function main() {
    startApplication("addressbook");
    add("Ann Lee", "High Street");
    add("Bob Ray", "Low Street");
    add("Zoe Fox", "Main Street");
    const tabs = waitForObject({ type: "AddressWidget" });
    activateItem(tabs, "ABC");
    const table = waitForObject({ type: "QTableView", visible: true });
    test.compare(table.model().rowCount(), 2);
    mouseClick(waitForObjectItem(table, "Bob Ray"));
    activateItem(names.menuBar, "Tools.Edit Entry...");
    const address = waitForObject({ type: "QTextEdit", window: dialog });
    test.compare(address.plainText, "Low Street");
    type(address, "<Ctrl+A>Back Street");
    clickButton(waitForObject(names.button("OK", dialog)));
    test.compare(waitForObjectItem(table, 0, 1).text, "Back Street");
    activateItem(names.menuBar, "Tools.Remove Entry");
    test.verify(waitFor(() => table.model().rowCount() == 1, 1000));
    activateItem(tabs, "XYZ");
    test.compare(waitForObjectItem({ type: "QTableView", visible: true }, 0, 0).text, "Zoe Fox");
}
