import * as names from 'names.js';

function main() {
    startApplication("calculator");
    const check = expected => {
        const compare = () =>
            test.compare(findObject(names.display).text, expected, "the display");
        return compare();
    };
    ["0", "1"].forEach(check);
    class Checker {
        get failed() { return !test.verify(false, "in a getter"); }
        static run() { [1].map(() => test.fail("in a static method")); }
    }
    new Checker().failed;
    Checker.run();
}
