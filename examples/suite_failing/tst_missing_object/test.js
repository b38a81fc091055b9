// An error: there is no such object. It ends the test case; cleanup() is called all the same.

function main() {
    startApplication("calculator");
    clickButton(waitForObject({ type: "Button", text: "Clear Everything" }));
    test.fail("This is never reached.");
}

function cleanup() {
    test.log("Whatever happened: this is where a test case tidies up.");
}
