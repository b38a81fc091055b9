// Brought in by source().
function checkSum(a, b, expected) {
    press(a, "+", b, "=");
    test.compare(findObject({ type: "QLineEdit" }).text, expected, `${a} + ${b}`);
}

function press(...keys) {
    for (const key of keys)
        clickButton(waitForObject({ type: "Button", text: key }));
}
test.log("checks are there");
