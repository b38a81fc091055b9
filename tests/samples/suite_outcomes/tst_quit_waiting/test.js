function main() {
    startApplication("torvixtarget");
    const controls = waitForObjectExists({ type: "Controls" });
    controls.quitLater(300);
    waitForObject({ type: "QPushButton", text: "never there" }, 20000);
}
