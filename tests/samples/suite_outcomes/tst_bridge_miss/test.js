function main() {
    startApplication("standarddialogs");
    for (const step of [
        () => findObject({ type: "QPushButton", text: "QInputDialog::getInt()" }),
        () => waitForObject({ type: "QSpinBox", visible: true }, 100),
        () => waitForObject("{type='QPushButton' text~='QFontDialog.*'}", 100),
        () => findObject({ type: "QPushButton", text: "QInputDialog::get&Int()" }).clik(),
        () => findObject({ type: "QPushButton", text: "QInputDialog::get&Int()" }).setEnabled("a", 1),
        () => findObject("Nobody"),
        () => findObject("{type='QLabel'"),
        () => clickButton({ type: "QLabel", visible: true }),
        () => clickButton({ type: "QPushButton", text: "qinputdialog::getint()" }),
        () => activateItem({ type: "QMenuBar" }, "File.Exit"),
        () => waitForObjectItem({ type: "QToolBox" }, "Font Dialog", 100),
        () => type(waitForObject({ type: "Dialog" }), 5, 6),
    ])
        attempt(step);
    waitForObject({ type: "QPushButton", text: "Nobody" });
}

function attempt(step) {
    try {
        step();
        test.fail("no error: " + step);
    } catch (error) {
        test.log(error.message, error.cause ? error.cause.message : "");
    }
}
