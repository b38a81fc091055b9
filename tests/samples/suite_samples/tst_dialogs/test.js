// Modal dialogs of Qt's own: input, colours, files, messages.
import * as names from 'names.js';
const dialog = { type: "Dialog", visible: true };
const open = text => ({ type: "QPushButton", text, window: dialog });
const label = occurrence => ({ type: "QLabel", window: dialog, visible: true, occurrence });

function main() {
    startApplication("standarddialogs");

    test.startSection("Input");
    clickButton(waitForObject(open("QInputDialog::get&Int()")));
    const spin = waitForObject({ type: "QInputDialogSpinBox" });
    test.compare(spin.value, 25);
    type(spin, "<Ctrl+A>70");
    clickButton(waitForObject(names.button("OK", { type: "QInputDialog" })));
    test.verify(waitFor(() => object.exists({ type: "QLabel", text: "70%" }), 1000));

    clickButton(waitForObject(open("QInputDialog::getIte&m()")));
    activateItem(waitForObject({ type: "QComboBox", window: { type: "QInputDialog" } }), "Fall");
    clickButton(waitForObject(names.button("OK", { type: "QInputDialog" })));
    test.verify(waitFor(() => object.exists({ type: "QLabel", text: "Fall" }), 1000));

    clickButton(waitForObject(open("QInputDialog::get&Text()")));
    type(waitForObject({ type: "QLineEdit", window: { type: "QInputDialog" } }), "<Ctrl+A>Ann<Return>");
    test.verify(waitFor(() => object.exists({ type: "QLabel", text: "Ann" }), 1000));
    test.endSection();

    test.startSection("Messages");
    clickButton(waitForObject({ type: "QToolBoxButton", text: "Message Boxes" }));
    clickButton(waitForObject(open("QMessageBox::&question()")));
    clickButton(waitForObject(names.button("&No", names.messageBox)));
    test.verify(waitFor(() => object.exists({ type: "QLabel", text: "No" }), 1000));
    clickButton(waitForObject(open("QMessageBox::critica&l()")));
    clickButton(waitForObject(names.button("Retry", names.messageBox)));
    test.verify(waitFor(() => object.exists({ type: "QLabel", text: "Retry" }), 1000));
    test.endSection();

    test.startSection("Colour");
    clickButton(waitForObject({ type: "QToolBoxButton", text: "Color Dialog" }));
    clickButton(waitForObject(open("QColorDialog::get&Color()")));
    const code = waitForObject("{type='QLineEdit' text~='#.*' window={type='QColorDialog'}}");
    type(code, "<Ctrl+A>#123456<Tab>");
    clickButton(waitForObject(names.button("OK", { type: "QColorDialog" })));
    test.verify(waitFor(() => object.exists({ type: "QLabel", text: "#123456" }), 1000));
    test.endSection();
}
