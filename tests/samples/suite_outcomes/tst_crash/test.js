function main() {
    const app = startApplication("torvixtarget");
    test.verify(app.isRunning);
    waitForObjectExists({ type: "Controls" }).crash();
    test.fail("not reached");
}
