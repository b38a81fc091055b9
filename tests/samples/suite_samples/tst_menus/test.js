// Menus, a tool bar, shortcuts, modal message boxes, and file dialogs.
import * as names from 'names.js';
const app = names.application;

function main() {
    const context = startApplication("application");
    const text = waitForObject(app.text);
    type(text, "Hello <Shift+W>orld!<Return>Second line");
    test.compare(text.plainText, "Hello World!\nSecond line", "what was typed");
    test.verify(findObject(app.window).windowModified, "the window shows that there is something to save");

    test.startSection("Clipboard");
    test.verify(!findObject(app.toolButton("Cut")).enabled, "nothing is selected");
    type(text, "<Ctrl+A>");
    clickButton(waitForObject(app.toolButton("Cut")));
    test.compare(text.plainText, "");
    activateItem(names.menuBar, "Edit.Paste");
    test.compare(text.plainText, "Hello World!\nSecond line");
    test.endSection();

    test.startSection("About");
    activateItem(waitForObject(names.menuBar), "Help.About");
    const about = waitForObject(names.messageBox);
    test.compare(about.windowTitle, "About Application");
    test.verify(about.text.includes("modern GUI applications"));
    clickButton(waitForObject(names.button("OK")));
    test.verify(waitFor(() => !object.exists(names.messageBox), 1000), "the box has gone");
    test.endSection();

    test.startSection("Save and open");
    const file = context.environmentVariable("HOME") + "/hello.txt";
    activateItem(waitForObject(names.menuBar), "File.Save As...");
    type(waitForObject({ type: "QLineEdit", window: { type: "QFileDialog" } }), file);
    clickButton(waitForObject({ type: "QPushButton", text: "&Save", window: { type: "QFileDialog" } }));
    test.verify(waitFor(() => !findObject(app.window).windowModified, 2000), "it is saved");
    activateItem(waitForObject(names.menuBar), "File.New");
    test.compare(text.plainText, "");
    type(text, "<Ctrl+O>");
    type(waitForObject({ type: "QLineEdit", window: { type: "QFileDialog" } }), file + "<Return>");
    test.verify(waitFor(() => text.plainText != "", 2000), "it is loaded");
    test.compare(findObject({ type: "QStatusBar" }).currentMessage(), "File loaded");
    test.endSection();

    test.startSection("Exit");
    type(text, "more");
    activateItem(waitForObject(names.menuBar), "File.Exit");
    clickButton(waitForObject(names.button("Cancel")));
    test.verify(context.isRunning);
    activateItem(waitForObject(names.menuBar), "File.Exit");
    clickButton(waitForObject(names.button("Discard")));
    test.verify(waitFor(() => !context.isRunning, 2000), "the application has ended");
    test.endSection();
}
