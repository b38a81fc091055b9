import * as names from 'names.js';

function main() {
    startApplication("calculator");
    clickButton(waitForObject(names.button("7")));
    test.compare(findObject(names.display).text, "8");
    test.verify(findObject(names.display).readOnly, "nobody types into it");
    test.verify(
        findObject(names.display).text == "9",
        "over several lines");
}
