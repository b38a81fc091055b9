function main() {
    startApplication("calculator");
    test.pass("started");
    waitForObject({ type: "QSpinBox" }, 60000);
    test.fail("not reached");
}
