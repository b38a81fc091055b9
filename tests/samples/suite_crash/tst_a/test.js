function main() {
    const app = startApplication("calculator");
    test.log("pid " + app.pid);
    waitForObject({ type: "QSpinBox" });
    test.fail("not reached");
}
