import * as names from 'names.js';

function main() {
    startApplication("calculator");
    press("1");
}

function press(key) {
    const found = findAllObjects(names.button("no such key"));
    found[0].click();
}
