// What a person does with the address book: test cases say what, this module knows how.
import * as names from 'names.js';

export function start() {
    startApplication("addressbook");
    waitForObject(names.window);
}

/** Chooses an entry of the menu Tools. */
function tool(entry) {
    activateItem(waitForObject(names.menuBar), "Tools." + entry);
}

export function add(name, address) {
    tool("Add Entry...");
    type(waitForObject(names.nameField), name);
    type(waitForObject(names.addressField), address);
    clickButton(waitForObject(names.okButton));
}

/** Shows the tab of a group of letters: "ABC", "DEF", ... */
export function showGroup(group) {
    clickItem(waitForObject(names.tabBar), group);
}

export function select(name) {
    mouseClick(waitForObjectItem(names.contacts, name));
}

/** Changes the address of the contact that is selected. */
export function editAddress(address) {
    tool("Edit Entry...");
    const field = waitForObject(names.addressField);
    type(field, "<Ctrl+A>");
    type(field, address);
    clickButton(waitForObject(names.okButton));
}

export function removeSelected() {
    tool("Remove Entry");
}

/** What the tab of a group shows: ["name: address", ...], in its order. */
export function contactsOf(group) {
    showGroup(group);
    const model = findObject(names.contacts).model();
    const rows = [];
    for (let row = 0; row < model.rowCount(); ++row) {
        const [name, address] = [0, 1].map(column => model.index(row, column).text);
        rows.push(`${name}: ${address}`);
    }
    return rows;
}

/** Sorts the tab that is shown by a click on the head of a column, from 0. */
export function sortBy(column) {
    const header = waitForObject(names.header);
    mouseClick(header, header.sectionViewportPosition(column) + 10, header.height / 2);
}
