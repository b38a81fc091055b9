// A check that fails: it is reported, and the test case goes on.

function main() {
    startApplication("calculator");
    test.startSection("6 times 7");
    for (const key of ["6", "\u00d7", "7", "="])
        clickButton(waitForObject({ type: "Button", text: key }));
    test.compare(findObject({ type: "QLineEdit" }).text, "43", "wrong on purpose: it is 42");
    test.endSection();
    test.log("The test case goes on after a failed check.");
}
