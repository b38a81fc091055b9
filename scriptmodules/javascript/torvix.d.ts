// The globals of test scripts, for completion and checks in editors. A jsconfig.json as
// "torvixrunner init" writes it takes them in; nothing of this file runs.

/** An object of the application: its properties and methods are those that the application has. */
interface ApplicationObject {
    [member: string]: any;
    /** Tells it from a script's own objects, which are names of objects. */
    readonly [Symbol.toStringTag]: string;
}

/** A class of the application. */
interface ApplicationClass {
    new (...values: any[]): ApplicationObject;
    [member: string]: any;
}

/** What a property is compared with: a text, or a pattern that has to match the whole of it. */
type TextMatch = string | RegExp | { wildcardPattern: string } | { regexPattern: string };

/** The properties by which an object is found; all of them have to hold. */
interface ObjectProperties {
    /** An object of the application is no name: what takes one as well says so. */
    readonly [Symbol.toStringTag]?: never;
    /** Name of the object's class: "QPushButton". */
    type?: TextMatch;
    /** The objectName. */
    name?: TextMatch;
    visible?: boolean;
    /** The n-th of those that fit, from 1; 0 is the first, too. */
    occurrence?: number;
    /** The top-level window that the object is in. */
    window?: ObjectOrName;
    /** Any object that the object is in. */
    container?: ObjectOrName;
    /** The label whose buddy the object is. */
    buddy?: ObjectOrName;
    [property: string]: unknown;
}

/**
 * What finds an object: its properties, its real name as text ("{type='QLabel' text~='[0-9]+'}"), or a
 * symbolic name of the object map.
 */
type ObjectName = string | ObjectProperties;

/** An object that was found, or what finds it now, without waiting where it is not told otherwise. */
type ObjectOrName = ObjectName | ApplicationObject;

/** What an action is done to: an object or its name, or an item that waitForObjectItem() or the application
 *  gave. */
type ActionTarget = ObjectOrName;

/** An application that a test has started or attached to. */
interface ApplicationContext {
    readonly name: string;
    readonly commandLine: string;
    readonly osName: string;
    /** Process id. */
    readonly pid: number;
    /** The folder that it runs in. */
    readonly cwd: string;
    readonly host: string;
    readonly port: number;
    readonly isRunning: boolean;
    readonly startTime: Date;
    /** Resident memory in bytes. */
    readonly usedMemory: number;
    /** Processor time in milliseconds. */
    readonly totalTime: number;
    /** Whether its event loop does not answer within that time. */
    isFrozen(timeoutSecs: number): boolean;
    /** What it has written since the last call. */
    readStdout(): string;
    readStderr(): string;
    environmentVariable(name: string): string;
    /** Lets it go on by itself. */
    detach(): void;
    /** Its name. */
    toString(): string;
}

/** A row of a table of test data; testData.field() reads it. */
interface TestDataRecord {
    /** Tells it from other objects. */
    readonly [Symbol.toStringTag]: "TestData";
}

interface TestDataFunctions {
    /** The records of a table: csv, tsv or text in UTF-8, or the first sheet of an .xls or .xlsx. */
    dataset(file: string): TestDataRecord[];
    /** The records of a sheet of a workbook; of its first one without a name. None of a sheet that is not there. */
    datasetExcel(file: string, sheet?: string): TestDataRecord[];
    /** The text in a column, by its name or its number from 0; a short record has "" there. */
    field(record: TestDataRecord, field: string | number): string;
    /** The names of the table's columns. */
    fieldNames(record: TestDataRecord): string[];
    /** Copies a file of the test data into the application's current folder; gives the copy's path. */
    put(file: string): string;
    /** Copies a file of the application into the test case's folder; gives the copy's path. */
    get(file: string): string;
    /** Whether the application has the file. */
    exists(file: string): boolean;
    /** Removes a file of the application. */
    remove(file: string): void;
    /** The path of a new file of test data, in a folder that is there then; the file is not made. */
    create(where: "local" | "shared", file: string): string;
}

interface FileComparisonOptions {
    message?: string;
    detail?: string;
    /** Expect the files to differ. */
    xfail?: boolean;
}

interface TextComparisonOptions extends FileComparisonOptions {
    ignoreCase?: boolean;
    /** Runs of white space count as one blank, and none at the ends of lines. */
    ignoreWhitespace?: boolean;
    /** Regular expressions; what they match is left out of each line. */
    filters?: string | string[];
}

interface TestFunctions {
    /** Passes when the condition is true. */
    verify(condition: unknown, message?: string, detail?: string): boolean;
    /** Expects the condition to be false. */
    xverify(condition: unknown, message?: string, detail?: string): boolean;
    /** Passes when both are equal, as by ==. */
    compare(actual: unknown, expected: unknown, message?: string, detail?: string): boolean;
    /** Expects them not to be equal. */
    xcompare(actual: unknown, expected: unknown, message?: string, detail?: string): boolean;
    /** Passes when the code, which sees global names only, throws: any error, that of a misspelt name, too. */
    exception(code: string, message?: string, detail?: string): boolean;
    pass(message: string, detail?: string): void;
    /** A pass that should not be: fails the test case. */
    xpass(message: string, detail?: string): void;
    fail(message: string, detail?: string): void;
    /** A failure that is expected: does not fail the test case. */
    xfail(message: string, detail?: string): void;
    /** Fails and ends the test case. */
    fatal(message: string, detail?: string): void;
    log(message: string, detail?: string): void;
    warning(message: string, detail?: string): void;
    /** Ends the test case as skipped. */
    skip(message: string, detail?: string): void;
    /** How many results of a kind there are by now. */
    resultCount(kind: "tests" | "passes" | "fails" | "xfails" | "xpasses" | "fatals" | "errors" | "skips"
        | "warnings" | "logs"): number;
    /** The callers, innermost first. */
    stackTrace(first?: number, count?: number): any[];
    /** Results are reported at the place of a caller, so many frames up, until restoreResultContext(). */
    fixateResultContext(frames?: number): void;
    restoreResultContext(): void;
    /** Groups the results that follow, until endSection(). */
    startSection(title: string, description?: string): void;
    endSection(): void;
    /** File names count from the test case's folder. */
    compareTextFiles(expectedFile: string, actualFile: string, options?: TextComparisonOptions | string): boolean;
    compareXMLFiles(expectedFile: string, actualFile: string, options?: FileComparisonOptions | string): boolean;
    compareJSONFiles(expectedFile: string, actualFile: string, options?: FileComparisonOptions | string): boolean;
    /** Stops here when somebody debugs. */
    breakpoint(): void;
    /** Verification points: files in the test case's folder `verificationPoints`. */
    vp(name: string, message?: string, detail?: string): boolean;
    /** Expects a difference. */
    xvp(name: string, message?: string, detail?: string): boolean;
    vpWithObject(name: string, object: ObjectOrName, message?: string, detail?: string): boolean;
    imagePresent(file: string, options?: SearchOptions | string): boolean;
    imageNotPresent(file: string, options?: SearchOptions | string): boolean;
    ocrTextPresent(text: string, options?: SearchOptions | string): boolean;
    ocrTextNotPresent(text: string, options?: SearchOptions | string): boolean;
    /** Attachments go into the folder of the results. */
    attachFile(file: string, message?: string): void;
    attachImage(fileOrObject: string | ApplicationObject, message?: string): void;
    attachDesktopScreenshot(message?: string): void;
    /** Records the X display until stopVideoCapture(), which attaches the video. */
    startVideoCapture(message?: string): void;
    stopVideoCapture(): void;
}

/** How a picture or a text is looked for on the screen. */
interface SearchOptions {
    /** How long to look, in ms. */
    timeout?: number;
    /** Looks in this object instead of the whole screen. */
    object?: ApplicationObject;
    /** Pictures: how much each of red, green and blue may differ, 0 to 255. */
    tolerance?: number;
    /** Pictures: how many pixels may differ by more than that. */
    differingPixels?: number;
    /** Text: as tesseract names it. */
    language?: string;
    ignoreCase?: boolean;
    message?: string;
    detail?: string;
}

interface ScreenPlace {
    x: number;
    y: number;
    width: number;
    height: number;
}

/** What holds for the rest of the test case. */
interface TestSettings {
    /** In ms. */
    waitForObjectTimeout: number;
    /** A failed check ends the test case. */
    throwOnFailure: boolean;
    /** A failed check is kept with a screenshot. */
    logScreenshotOnFail: boolean;
}

/** How a screenshot is compared. */
interface ScreenshotOptions {
    /** How much each of red, green and blue may differ, 0 to 255. */
    tolerance?: number;
    /** How many pixels may differ by more than that. */
    differingPixels?: number;
    /** Areas that are not looked at: x, y, width, height in pixels. */
    masks?: [number, number, number, number][];
}

/** What a new verification point looks at; what people usually look at without any of these. */
interface VPOptions extends ScreenshotOptions {
    properties?: string[];
    table?: boolean;
    screenshot?: boolean;
}

/** Dialogs with the person who runs the test, in the terminal or in windows. */
interface TestInteraction {
    /** False where there is neither a terminal nor a display; the others are errors there. */
    isAvailable(): boolean;
    /** Ok, or Cancel. */
    information(text: string): number;
    /** Ok, or Cancel. */
    warning(text: string): number;
    /** Does not wait. */
    notification(text: string): void;
    input(text: string, proposal?: string): string | null;
    password(text: string): string | null;
    /** The button that was chosen; buttons are or-ed. */
    question(text: string, buttons?: number): number;
    choice(text: string, choices: string[]): string | null;
    /** Ok, or Cancel. */
    showImage(file: string, text?: string): number;
    readonly None: number;
    readonly Ok: number;
    readonly Cancel: number;
    readonly Yes: number;
    readonly No: number;
}

interface ObjectFunctions {
    /** Whether there is such an object now; does not wait. */
    exists(name: ObjectName): boolean;
    isPointer(object: ApplicationObject): boolean;
    isValue(object: ApplicationObject): boolean;
    isReference(object: ApplicationObject): boolean;
    isArray(object: ApplicationObject): boolean;
    /** A pointer to the object. */
    ref(object: ApplicationObject): ApplicationObject;
    /** What the pointer points to. */
    deref(object: ApplicationObject): ApplicationObject;
    children(object: ObjectOrName): ApplicationObject[];
    /** On the screen, in pixels. */
    globalBounds(object: ObjectOrName): { x: number, y: number, width: number, height: number };
    /** Null for a top-level object. */
    parent(object: ObjectOrName): ApplicationObject | null;
    topLevelObjects(): ApplicationObject[];
    /** All properties with their values. */
    properties(object: ObjectOrName): { [property: string]: any };
    convertTo(object: ObjectOrName, type: string | ApplicationClass): ApplicationObject;
    /** A null pointer of the class. */
    createNull(type: string | ApplicationClass): ApplicationObject;
    /** Saves a PNG and gives its path; without a file name it goes beside the results. */
    grabScreenshot(object: ObjectOrName, file?: string): string;
}

interface ObjectMapFunctions {
    /** Gives the object a symbolic name. */
    add(object: ApplicationObject): string;
    /** The symbolic name whose real name in the object map is this text, or the one that objectName() gives for
     *  the object; empty when there is none, although another name of the map may find the object. */
    symbolicName(name: string | ApplicationObject): string;
    /** The real name of a symbolic one, or of an object. */
    realName(name: string | ApplicationObject): string;
    symbolicNames(): string[];
    /** Replaces the object map by that of the file. */
    load(file: string): void;
}

interface TorvixInfo {
    readonly version: number;
    readonly major: number;
    readonly minor: number;
    readonly patch: number;
    /** "major.minor.patch" */
    readonly version_str: string;
    readonly settingsGroup: string;
    readonly defaultDevice: string;
    /** The folder of the test case. */
    readonly testCase: string;
    readonly testCaseName: string;
    readonly testSuiteName: string;
    /** The folder for what belongs to the results. */
    readonly resultDir: string;
}

interface ConsoleFunctions {
    /** Throws when the condition is false. */
    assert(condition: unknown, message?: string): void;
}

/** The buttons of all actions. Qt's own numbers are others: Qt.RightButton is MouseButton.MiddleButton. */
/** A shared library that is loaded into the runner's process; it stays loaded. */
interface Library {
    /** Calls a function with C linkage, given as `"void name()"`. */
    invoke(signature: string): void;
    /** Lets an extension module install its objects: calls its `nameInit`. */
    initModule(name: string): void;
}

interface LibraryConstructor {
    new (path: string): Library;
    readonly prototype: Library;
}

interface MouseButtonConstants {
    readonly None: number;
    readonly LeftButton: number;
    readonly MiddleButton: number;
    readonly RightButton: number;
    readonly Wheel: number;
    readonly PrimaryButton: number;
    readonly SecondaryButton: number;
    readonly XButton1: number;
    readonly XButton2: number;
}

interface ModifierConstants {
    readonly None: number;
    readonly Control: number;
    readonly Shift: number;
    readonly Alt: number;
    readonly Win: number;
    readonly Command: number;
}

// Results.

declare const test: TestFunctions;
declare const testSettings: TestSettings;
declare const testInteraction: TestInteraction;

// Small functions.

/** Waits so many seconds; fractions are fine. */
declare function snooze(seconds: number): void;
/** Whether it is a null pointer of the application, null or undefined. */
declare function isNull(value: unknown): boolean;
/** The class of an object of the application, else the script's name of the type. */
declare function typeName(value: unknown): string;
/** The path of a file of the test case, or of the suite's shared folder. */
declare function findFile(kind: "testdata" | "scripts", name: string): string;
/** Writes what is on the screen into a PNG file; gives its path. */
declare function saveDesktopScreenshot(file: string): string;
declare function saveObjectSnapshot(object: ObjectOrName, file: string): string;
/** Frames the object in red. */
declare function highlightObject(object: ObjectOrName, milliseconds?: number): void;

// Pictures and texts on the screen.

/** Where the picture is; null when it is not there. */
declare function findImage(file: string, options?: SearchOptions): ScreenPlace | null;
declare function waitForImage(file: string, options?: SearchOptions): ScreenPlace;
/** All text, as it is read by text recognition. */
declare function getOcrText(options?: SearchOptions): string;
/** All lines, each with its place. */
declare function getAllOcrText(options?: SearchOptions): (ScreenPlace & { text: string })[];
declare function findOcrText(text: string, options?: SearchOptions): ScreenPlace | null;
/** Everywhere that it is. */
declare function findAllOcrText(text: string, options?: SearchOptions): ScreenPlace[];
declare function waitForOcrText(text: string, options?: SearchOptions): ScreenPlace;

/** Writes a verification point of what the object is like now; gives the file. */
declare function createVP(object: ObjectOrName, name: string, options?: VPOptions): string;
/** Writes a verification point of what the object looks like now; gives the file. */
declare function createVisualVP(object: ObjectOrName, name: string, options?: ScreenshotOptions): string;

// Applications.

/** Starts a program, with its arguments, quoted as in a shell; looked for in the suite's ApplicationFolders and in PATH. */
declare function startApplication(command: string, host?: string, port?: number, timeoutSecs?: number): ApplicationContext;
/** Attaches to an application that was started with TORVIX_AGENT_LISTEN. The address is the path of its socket,
 *  or "127.0.0.1:4322"; host and port may stand for that instead. Waits for the time, 20 s by default, when
 *  nothing listens there. */
declare function attachToApplication(address: string, host?: string, port?: number, timeoutSecs?: number): ApplicationContext;
/** Waits until a started application has itself started another one. */
declare function waitForApplicationLaunch(timeoutSecs?: number): ApplicationContext;
/** Looks for objects in that application from now on; without an argument in the first one. */
declare function setApplicationContext(context?: ApplicationContext): void;
/** The first application. */
declare function defaultApplicationContext(): ApplicationContext;
/** The one in which objects are looked for. */
declare function currentApplicationContext(): ApplicationContext;
declare function applicationContext(name: string): ApplicationContext;
declare function applicationContextList(): ApplicationContext[];

// Objects.

/** The object as it is now; throws when there is none. */
declare function findObject(name: ObjectName): ApplicationObject;
declare function findAllObjects(name: ObjectName): ApplicationObject[];
/** Waits until the object is there, visible, enabled and not behind a modal window. */
declare function waitForObject(name: ObjectOrName, timeoutMs?: number): ApplicationObject;
/** Waits until the object is there, visible or not. */
declare function waitForObjectExists(name: ObjectOrName, timeoutMs?: number): ApplicationObject;
/** Waits for an item: by the texts that lead to it, with dots between ("File.Save As..."), or by row and column. */
declare function waitForObjectItem(container: ObjectOrName, item: string, timeoutMs?: number): ApplicationObject;
declare function waitForObjectItem(container: ObjectOrName, row: number, column: number, timeoutMs?: number): ApplicationObject;
/** Polls until the function, or the code in a text, gives a true value; false when the time is over.
 *  Such code sees global names only. An async function is true at once: its promise is. */
declare function waitFor(condition: (() => unknown) | string, timeoutMs?: number): boolean;
/** The name that finds the object. */
declare function objectName(object: ApplicationObject): string;
/** The same object with the members of another of its classes. */
declare function cast(object: ApplicationObject, type: string | ApplicationClass): ApplicationObject;
declare const object: ObjectFunctions;
declare const testData: TestDataFunctions;
declare const objectMap: ObjectMapFunctions;

// Actions: mouse and keyboard. Positions are pixels from the object's upper left corner; the middle
// without one. There once an application is running.

declare function mouseClick(target: ActionTarget, button?: number): void;
declare function mouseClick(target: ActionTarget, x: number, y: number, button?: number): void;
declare function mouseClick(target: ActionTarget, x: number, y: number, modifiers: number, button: number): void;
declare function doubleClick(target: ActionTarget, button?: number): void;
declare function doubleClick(target: ActionTarget, x: number, y: number, button?: number): void;
declare function doubleClick(target: ActionTarget, x: number, y: number, modifiers: number, button: number): void;
/** From a place by a distance. */
declare function mouseDrag(target: ActionTarget, x: number, y: number, dx: number, dy: number): void;
declare function mouseDrag(target: ActionTarget, x: number, y: number, dx: number, dy: number, modifiers: number, button: number): void;
/** Turns the wheel by so many notches; positive is up and right. */
declare function mouseWheel(target: ActionTarget, dx: number, dy: number): void;
declare function mouseWheel(target: ActionTarget, x: number, y: number, dx: number, dy: number, modifiers?: number): void;
/** Types into the object; "<Return>" and "<Ctrl+A>" are keys. */
declare function type(target: ActionTarget, text: string): void;
/** Types into whatever has the focus. */
declare function nativeType(text: string): void;
declare function clickButton(button: ActionTarget): void;
/** Clicks a menu's entry, or an item of a view: "File.Save As". */
declare function activateItem(container: ActionTarget, item: string): void;
declare function clickItem(container: ActionTarget, item: string, button?: number): void;
declare function clickItem(container: ActionTarget, item: string, modifiers: number, button: number): void;
declare function doubleClickItem(container: ActionTarget, item: string, button?: number): void;
declare function doubleClickItem(container: ActionTarget, item: string, modifiers: number, button: number): void;
declare function expandItem(container: ActionTarget, item: string): void;
declare function collapseItem(container: ActionTarget, item: string): void;
/** Brings an item into view, or gives a slider or scroll bar a value. */
declare function scrollTo(target: ActionTarget, place?: number | string): void;
declare function setFocus(target: ActionTarget): void;
declare function closeWindow(target: ActionTarget): void;
declare const MouseButton: MouseButtonConstants;
declare const Modifier: ModifierConstants;

// The application's own. All of its classes are there by their names; these every Qt application has.

/** Kinds of Qt's messages. */
declare const QtDebugMsg: number;
declare const QtInfoMsg: number;
declare const QtWarningMsg: number;
declare const QtCriticalMsg: number;
declare const QtSystemMsg: number;
declare const QtFatalMsg: number;
/** The application object. */
declare const qApp: ApplicationObject;
/** Qt's enumerations: Qt.AlignLeft. */
declare const Qt: ApplicationClass;
declare const QApplication: ApplicationClass;
declare const QColor: ApplicationClass;
declare const QDate: ApplicationClass;
declare const QDateTime: ApplicationClass;
declare const QFont: ApplicationClass;
declare const QKeySequence: ApplicationClass;
declare const QPoint: ApplicationClass;
declare const QPointF: ApplicationClass;
declare const QRect: ApplicationClass;
declare const QRectF: ApplicationClass;
declare const QSize: ApplicationClass;
declare const QSizeF: ApplicationClass;
declare const QTime: ApplicationClass;
declare const QUrl: ApplicationClass;

// The rest.

/** Writes a line to the standard output of the runner. */
declare function print(text: unknown): void;
/** Evaluates another script file; its functions and variables are then there. */
declare function source(file: string): void;
declare const console: ConsoleFunctions;
declare const Library: LibraryConstructor;
/** There to tell of the misspelt name: every use throws. */
declare const Console: never;
declare const torvixinfo: TorvixInfo;

/** Patterns for names of objects. */
declare module "objectmaphelper.js" {
    /** "*" any text, "?" one character, "[abc]" one of these. */
    export class Wildcard {
        constructor(pattern: string);
        wildcardPattern: string;
    }
    export class RegularExpression {
        constructor(pattern: string);
        regexPattern: string;
    }
}
