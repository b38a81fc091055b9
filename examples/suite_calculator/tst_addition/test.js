// As simple as a test case can be: start, do something, check.
import * as names from 'names.js';

function main() {
    startApplication("calculator");
    for (const key of ["1", "+", "2", "="])
        clickButton(waitForObject(names.button(key)));
    test.compare(findObject(names.display).text, "3", "1 + 2");
}
