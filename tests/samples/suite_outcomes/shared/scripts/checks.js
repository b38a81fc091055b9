// Checks for several test cases.
import * as names from 'names.js';

export function checkDisplay(expected) {
    test.compare(findObject(names.display).text, expected, "the display");
}

export function press(...keys) {
    for (const key of keys)
        clickButton(waitForObject(names.button(key)));
}

export function checkDisplayFor(expected) {
    test.fixateResultContext(1);
    checkDisplay(expected);
    test.restoreResultContext();
}
