import { expectErrors, thrown } from "checks.js";
import * as names from "names.js";

function main() {
    startApplication("torvixtarget");
    objectsAreNamedInEveryForm();
    missesNameTheClosest();
    relations();
    factsOfAnObject();
    theObjectMap();
    castsAndNulls();
    aGetterThatDoesNotComeBackKeepsNothingElse();
}

function objectsAreNamedInEveryForm() {
    const count = waitForObject(names.count);
    test.compare(objectName(count), objectName(waitForObject(count)), "an object names itself");
    test.compare(findObject("{type='QPushButton' text~='.*Do c[o]unt' window={type='MainWindow'}}"), count);
    test.compare(findObject({ name: "count", container: findObject(names.controls) }), count);
    test.compare(findObject(names.modal).objectName, "modal");
    test.compare(findObject(names.nameEdit).objectName, "nameEdit");
    test.compare(findObject({ type: /.*LineEdit/, name: "nameEdit" }).objectName, "nameEdit");
    test.compare(findAllObjects({ type: "QPushButton" }).length, 3);
    test.compare(findAllObjects({ type: "QPushButton" })[1].objectName, "modal", "in the order of the tree");
    test.compare(findObject({ type: "QPushButton", occurrence: 3 }).objectName, "disabled");
    test.compare(object.exists({ type: "QPushButton", text: /do.*/ }), false, "case counts");
    test.compare(object.exists({ type: "QPushButton", text: /Do c/ }), false, "all of the text has to match");
    test.compare(object.exists({ text: /.*DO COUNT/i }), true);
}

function missesNameTheClosest() {
    const found = "Error: Object ";
    expectErrors([
        [() => findObject({ type: "QPushButton", text: "Do count!" }),
            found + "{text='Do count!' type='QPushButton'} not found. " +
            "The closest is QPushButton 'count': its 'text' is '&Do count', not 'Do count!'."],
        [() => findObject({ name: "coutn" }),
            found + "{name='coutn'} not found. The closest is QPushButton 'count': its 'name' is 'count', not 'coutn'."],
        [() => findObject({ type: "QPushButton", occurrence: 4 }),
            found + "{occurrence='4' type='QPushButton'} not found. Only 3 of these exist."],
        [() => findObject({ name: "zzzzzz" }), found + "{name='zzzzzz'} not found. Nothing comes near it."],
        [() => findObject({ name: "count", window: { type: "QDialog" } }),
            found + "{name='count' window={type='QDialog'}} not found. The closest is QPushButton 'count': " +
            "its 'window' is MainWindow 'mainWindow' (its 'type' is 'MainWindow', not 'QDialog')."],
        [() => findObject({ name: "count", container: { name: "contrl" } }),
            found + "{container={name='contrl'} name='count'} not found. The closest is QPushButton 'count': " +
            "its 'container' is not {name='contrl'} but, at best, Controls 'control' " +
            "(its 'name' is 'control', not 'contrl')."],
        [() => findObject({ type: "QPushButton", text: /Nine/ }),
            found + "{text~='Nine' type='QPushButton'} not found. The closest is QPushButton 'count': " +
            "its 'text' is '&Do count', which does not match the regular expression 'Nine'."],
        [() => findObject({ type: "QPushButton", name: undefined }),
            "Error: An empty name would match every object. (One entry that is undefined makes a name that " +
            "a script gives as an object empty.)"],
        [() => waitForObject({ name: "count", window: { type: names.misspelt } }, 100),
            "TypeError: The name of the window is empty: it would match every object. (One entry that is " +
            "undefined makes a name that a script gives as an object empty.)"],
        [() => findObject("{type='QPushButton'"), "Error: expected '}' at column 20 in the name {type='QPushButton'"],
        [() => findObject("No such name"),
            "Error: 'No such name' is neither a real name nor a symbolic name of the object map"],
        [() => waitForObject(names.misspelt),
            "TypeError: waitForObject() needs an object or the name of one, not undefined"],
        [() => findAllObjects(null), "TypeError: findAllObjects() needs an object or the name of one, not null"],
        [() => object.children(undefined),
            "TypeError: object.children() needs an object or the name of one, not undefined"],
    ]);
    test.compare(object.exists({ name: "coutn" }), false);
}

function relations() {
    const controls = findObject(names.controls);
    const children = object.children(controls);
    test.verify(children.some(child => child == findObject(names.count)), "a child is the same object");
    test.compare(object.children(names.controls).length, children.length, "by name as well");
    test.compare(object.parent(children[1]), controls);
    test.compare(object.parent(names.mainWindow), null, "a window has no parent");
    test.verify(object.topLevelObjects().some(top => objectName(top) == objectName(findObject(names.mainWindow))));
    test.compare([object.children.length, object.parent.length, object.topLevelObjects.length,
        object.properties.length, object.convertTo.length, object.createNull.length,
        object.globalBounds.length, object.grabScreenshot.length].join(), "1,1,1,1,2,1,1,1", "lengths");
    test.compare([waitForObject.length, waitForObjectExists.length, waitForObjectItem.length,
        findAllObjects.length, findObject.length, objectName.length, cast.length].join(), "1,1,2,1,1,1,1");
    expectErrors([
        [() => object.children(), "TypeError: Wrong number of arguments (0), use object.children(object)"],
        [() => object.parent(1, 2), "TypeError: Wrong number of arguments (2), use object.parent(object)"],
        [() => object.properties({ name: "zzzzzz" }), "TypeError: Object {name='zzzzzz'} not found. Nothing comes near it."],
    ]);
}

function factsOfAnObject() {
    const count = findObject(names.count);
    const bounds = object.globalBounds(count);
    test.compare([bounds.width, bounds.height].join(), [count.width, count.height].join());
    test.verify(bounds.x > findObject(names.mainWindow).x);
    const properties = object.properties(names.count);
    test.compare(properties.text, "&Do count");
    test.compare(properties.enabled, true, "a truth value of the script");
    test.compare(properties.size.width, count.width, "a value of the application");
    test.compare(Object.keys(properties).length > 60, true, "inherited ones too");
    const file = currentApplicationContext().environmentVariable("TORVIX_TEST_FOLDER") + "/shot.png";
    test.compare(object.grabScreenshot(count, file), file);
    test.compare(object.grabScreenshot(names.count).endsWith("/screenshot.png"), true);
    test.compare([typeName(count), typeName(count.size), typeName(1), typeName([])].join(),
        "QPushButton,QSize,Number,Array");
    expectErrors([
        [() => object.grabScreenshot(count, "no/such/folder.png"),
            "TypeError: Cannot write file '" + findFile("scripts", "checks.js").replace(/shared.*/, "") +
            "tst_access/no/such/folder.png': No such file or directory"],
    ]);
}

function theObjectMap() {
    const count = findObject(names.count);
    test.compare(objectMap.symbolicNames().length, 0);
    const symbolic = objectMap.add(count);
    test.compare(objectMap.symbolicNames().join(), symbolic);
    test.compare(objectMap.add(count), symbolic, "it stays one");
    test.compare(findObject(symbolic), count);
    test.compare(objectMap.symbolicName(count), symbolic);
    test.compare(objectMap.realName(symbolic), "{type='QPushButton' name='count' visible=true}");
    test.compare(objectMap.realName(count), objectMap.realName(symbolic));
    test.compare(objectName(count), symbolic, "the name that the map gives it");
    test.compare(objectMap.symbolicName("{type='Nothing'}"), "", "a name that the map does not have");
    test.compare([objectMap.add.length, objectMap.symbolicName.length, objectMap.realName.length,
        objectMap.symbolicNames.length, objectMap.load.length].join(), "1,1,1,0,1");
    objectMap.load("objects.map");
    test.compare(objectMap.symbolicNames().join(), "Count,Window", "the file takes the place of what was there");
    test.compare(findObject("Count"), count);
    test.compare(findObject({ name: "disabled", window: "Window" }).enabled, false, "a symbolic name within a real one");
    expectErrors([
        [() => objectMap.load("nowhere.map"), "Error: File 'nowhere.map' couldn't be found."],
        [() => objectMap.load("."), "Error: Cannot read the object map .: file to open is a directory"],
        [() => objectMap.load("twice.map"), "Error: twice.map:2: 'Count' is there twice"],
        [() => findObject({ name: "disabled", window: "Windows" }),
            "Error: 'Windows' (window) is not a symbolic name of the object map"],
    ]);
}

function castsAndNulls() {
    const count = findObject(names.count);
    test.compare(typeName(cast(count, "QAbstractButton")), "QAbstractButton", "the object itself is shown so");
    test.compare(typeName(count), "QAbstractButton");
    test.compare(object.convertTo(count, "QWidget"), count, "which it is already");
    const none = object.createNull("QWidget");
    test.compare([isNull(none), isNull(count), isNull(null), isNull(undefined), isNull(0)].join(),
        "true,false,true,true,false");
    expectErrors([
        [() => object.convertTo(count, "QPoint"), "TypeError: A QAbstractButton cannot be converted to QPoint"],
        [() => waitForObject(none), "TypeError: A null QWidget cannot be waited for"],
    ]);
}

function aGetterThatDoesNotComeBackKeepsNothingElse() {
    const shapes = object.properties({ type: "Shapes" });
    test.compare([shapes.words.join("+"), shapes.table.a, shapes.fixed, shapes.spot.y].join(), "one+two,1,fixed,4");
    test.compare("secret" in shapes, false, "one that can only be written");
    test.compare("dialogText" in shapes, false, "one that asks the user");
    clickButton(waitForObject({ type: "QPushButton", window: { name: "getterBox" } }));
}
