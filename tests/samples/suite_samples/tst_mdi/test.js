// Windows inside a window, and a menu that gets its entries when it opens.
import * as names from 'names.js';

function main() {
    const context = startApplication("mdi");
    for (const text of ["one", "two"]) {
        activateItem(waitForObject(names.menuBar), "File.New");
        type(waitForObject({ type: "MdiChild", windowTitle: `document${text == "one" ? 1 : 2}.txt[*]` }), text);
    }
    const area = waitForObject({ type: "QMdiArea" });
    test.compare(area.activeSubWindow().widget().plainText, "two");
    activateItem(names.menuBar, "Window.1 document1\\.txt");
    test.compare(area.activeSubWindow().widget().plainText, "one");
    try {
        activateItem(names.menuBar, "Window.3 document3\\.txt");
        test.fail("there is no third window");
    } catch (error) {
        test.verify(error.message.includes("'Window' has '1 document1\\.txt', '2 document2\\.txt'"), error.message);
    }
    test.verify(!object.exists({ type: "QMenu", visible: true }), "the menu is closed again");
    activateItem(names.menuBar, "File.Exit");
    clickButton(waitForObject(names.button("Discard")));
    clickButton(waitForObject(names.button("Discard")));
    test.verify(waitFor(() => !context.isRunning, 2000));
}
