// What a person does with the calculator: test cases say what, this module knows how.
import * as names from 'names.js';

export function start() {
    startApplication("calculator");
    waitForObject(names.window);
}

export function press(...keys) {
    for (const key of keys)
        clickButton(waitForObject(names.button(key)));
}

/** What the display shows. */
export function shown() {
    return findObject(names.display).text;
}
