import * as names from 'names.js';

function press(...keys) {
    for (const key of keys)
        clickButton(waitForObject(names.button(key)));
}

function main() {
    startApplication("calculator");
    test.startSection("Store and recall");
    press("4", "2", "MS", "Clear All");
    test.compare(findObject(names.display).text, "0", "the display is cleared");
    press("MR");
    test.compare(findObject(names.display).text, "42", "the memory is recalled");
    test.endSection();

    test.startSection("Division by zero");
    press("\u00f7", "0", "=");
    test.compare(findObject(names.display).text, "####", "the display says that it cannot be done");
    test.endSection();
}
