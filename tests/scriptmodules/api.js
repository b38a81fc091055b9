// Every part of the script API as it is meant to be used: the compiler has nothing to say to it.
import * as names from 'names.js';
import { RegularExpression, Wildcard } from 'objectmaphelper.js';

function main() {
    const app = startApplication("myapp --flag", "", -1, 10);
    const seconds = (Date.now() - app.startTime.getTime()) / 1000;
    test.log(`${app.name} ${app.pid} ${seconds.toFixed(1)} ${app.readStdout().trim()}`);
    const window = waitForObject(names.mainWindow, 2000);
    mouseClick(window);
    mouseClick(window, MouseButton.RightButton);
    mouseClick(window, 5, 5, Modifier.Shift, MouseButton.LeftButton);
    clickButton(findObject({ type: "QPushButton", text: "OK", window: names.mainWindow }));
    type(findObject("{type='QLineEdit'}"), "text<Return>");
    findAllObjects({ type: /Q.*Button/, name: new Wildcard("a*"), text: new RegularExpression("[0-9]+") });
    activateItem(findObject({ type: "QMenuBar" }), "File.Save As");
    const cell = waitForObjectItem({ type: "QTableView" }, 1, 2);
    scrollTo(cell);
    test.compare(cell.text, "x", "a cell");
    test.verify(waitFor(() => !object.exists(names.mainWindow), 500));
    test.exception("undefined.x");
    test.compareTextFiles("a", "b", { ignoreCase: true, filters: ["[0-9]+"] });
    const { width } = object.globalBounds(window);
    test.compare(width, new QRect(0, 0, 10, 10).width + test.resultCount("fails"));
    for (const child of object.children(window))
        test.log(objectName(child));
    for (const context of applicationContextList())
        context.detach();
    test.log(createVP(window, "main", { properties: ["windowTitle"], screenshot: true }));
    createVisualVP(names.mainWindow, "look", { tolerance: 3, masks: [[0, 0, 10, 10]] });
    for (const line of getAllOcrText({ object: window }))
        test.log(line.text, `${line.x} ${findAllOcrText(line.text).length}`);
    if (testInteraction.isAvailable() && testInteraction.question("Right?") === testInteraction.No)
        test.fail("Somebody says no");
    console.assert(Qt.AlignLeft === 1, torvixinfo.testCaseName);
    for (const record of testData.dataset("users.csv"))
        test.log(testData.fieldNames(record).map(name => testData.field(record, name)).join());
    testData.remove(testData.put("users.csv"));
    const library = new Library("libextension.so");
    library.initModule("extension");
    library.invoke("void tidy()");
    test.log(Intl.DateTimeFormat().resolvedOptions().timeZone);
    qApp.quit();
}
