// A wizard: pages forth and back, mandatory fields, what it writes.
import * as names from 'names.js';
const wizard = { type: "ClassWizard", visible: true };
const next = names.button("&Next >", wizard);
const field = label => ({ type: "QLineEdit", visible: true, buddy: { type: "QLabel", text: label } });

function main() {
    const context = startApplication("classwizard");
    test.compare(waitForObject(wizard).currentId, 0);
    clickButton(waitForObject(next));
    test.verify(!findObject(next).enabled, "without a class name there is no way on");
    type(waitForObject(field("&Class name:")), "Lamp");
    clickButton(waitForObject(next));
    test.compare(waitForObject({ type: "CodeStylePage" }).title, "Code Style Options");
    clickButton(waitForObject(names.button("< &Back", wizard)));
    test.compare(findObject(field("&Class name:")).text, "Lamp", "it is still there");
    clickButton(waitForObject({ type: "QRadioButton", text: "&Default constructor" }));
    clickButton(waitForObject(next));
    test.compare(findObject(field("&Macro name:")).text, "LAMP_H");
    clickButton(waitForObject(next));
    const folder = context.environmentVariable("HOME");
    type(waitForObject(field("&Output directory:")), "<Ctrl+A>" + folder);
    test.compare(findObject(field("&Header file name:")).text, "lamp.h");
    clickButton(waitForObject(next));
    test.verify(findObject({ type: "QLabel", visible: true, container: { type: "ConclusionPage" } })
                    .text.includes("Finish"));
    clickButton(waitForObject(names.button("&Finish", wizard)));
    test.verify(waitFor(() => !context.isRunning, 2000));
}
