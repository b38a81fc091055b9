// A table of cells with formulas, and its context menu.
import * as names from 'names.js';

function main() {
    startApplication("spreadsheet");
    const table = waitForObject({ type: "QTableWidget" });
    const cell = waitForObjectItem(table, 1, 0);
    test.compare(cell.text, "AirportBus");
    doubleClick(cell);
    nativeType("<Ctrl+A>Train<Return>");
    test.compare(cell.text, "Train");

    const sum = () => waitForObjectItem(table, 9, 5).text;
    const before = sum();
    test.compare(before, "21883");
    doubleClick(waitForObjectItem(table, 1, 2));
    nativeType("<Ctrl+A>250<Return>");
    test.compare(sum(), "21983", "the sum follows");

    mouseClick(waitForObjectItem(table, 3, 0), MouseButton.RightButton);
    activateItem(waitForObject({ type: "QMenu", visible: true }), "Sum");
}
