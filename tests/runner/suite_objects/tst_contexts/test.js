import { expectErrors, thrown } from "checks.js";

function main() {
    withoutAnApplication();
    const first = startApplication("../programs/talking --platform offscreen");
    factsOfAContext(first);
    streamsAreReadOnce(first);
    const second = startApplication("torvixtarget");
    contextsAreSwitched(first, second);
    aFrozenApplicationIsTold(second);
    anEndIsSeen(second);
    oneThatIsDetachedFromIsOutOfReach(first);
    launchedAndAttached();
}

function withoutAnApplication() {
    const none = currentApplicationContext();
    test.compare([none.name, none.isRunning, none.pid, none.host, none.isFrozen(0)].join(), ",false,0,,false");
    test.compare(applicationContextList().length, 0);
    expectErrors([
        [() => findObject({ type: "QWidget" }), "Error: No application is connected: start one or attach to one first"],
        [() => none.detach(), "Error: detach() failed"],
        [() => none.readStdout(), "Error: The AUT standard output is not available."],
        [() => waitForApplicationLaunch(1), "Error: No application was started that could launch another one"],
    ]);
}

function factsOfAContext(context) {
    const folder = findFile("scripts", "checks.js").replace("shared/scripts/checks.js", "");
    test.compare(context.name, "torvixtarget");
    test.compare(String(context), "torvixtarget");
    test.verify(context.commandLine.endsWith("/programs/talking --platform offscreen"), context.commandLine);
    test.compare(context.cwd, folder + "tst_contexts");
    test.compare([context.host, context.port, context.isRunning].join(), "localhost,0,true");
    test.verify(context.pid > 1 && context.usedMemory > 1e6 && context.totalTime >= 0);
    test.verify(context.osName.length > 0);
    const age = Date.now() - context.startTime.getTime();
    test.verify(age >= 0 && age < 60000, "the time of the process", String(age));
    snooze(1.1);
    test.compare(context.startTime.getTime() === context.startTime.getTime(), true, "which stays what it is");
    test.compare(context.environmentVariable("QT_QPA_PLATFORM"), "offscreen");
    test.compare(context.environmentVariable("TORVIX_NO_SUCH_VARIABLE"), "");
}

function streamsAreReadOnce(context) {
    test.compare(context.readStdout(), "first line\n");
    test.compare(context.readStdout(), "", "nothing new is no error");
    test.verify(context.readStderr().includes("gr\u00fc\u00dfe"));
}

function contextsAreSwitched(first, second) {
    test.compare(second.name, "torvixtarget_2", "a name of its own");
    test.compare(currentApplicationContext().name, second.name, "the newest is the current one");
    test.compare(defaultApplicationContext().name, first.name);
    test.compare(applicationContextList().map(String).join(), "torvixtarget,torvixtarget_2");
    const inSecond = findObject({ name: "nameEdit" });
    inSecond.text = "second";
    setApplicationContext(first);
    test.compare(findObject({ name: "nameEdit" }).text, "");
    test.compare(inSecond.text, "second", "an object stays in its application");
    test.compare(applicationContext("torvixtarget_2").pid, second.pid);
    test.compare(applicationContext("").pid, first.pid);
    setApplicationContext(applicationContext("torvixtarget_2"));
    test.compare(findObject({ name: "nameEdit" }).text, "second");
    setApplicationContext();
    test.compare(currentApplicationContext().pid, first.pid);
    expectErrors([
        [() => setApplicationContext(applicationContext("none")),
            "TypeError: Invalid type passed to setApplicationContext()"],
        [() => waitForApplicationLaunch({ valueOf() { throw new RangeError("no number"); } }), "RangeError: no number"],
    ]);
}

function aFrozenApplicationIsTold(context) {
    setApplicationContext(context);
    findObject({ name: "control" }).blockLater(1500);
    snooze(0.2);
    test.compare([context.isFrozen(0), context.isRunning, context.isFrozen(20)].join(), "true,true,false");
    test.compare(findObject({ name: "control" }).clicks, 0, "the late answer harms nothing");
}

function anEndIsSeen(context) {
    const control = findObject({ name: "control" });
    control.quitLater(10);
    test.verify(waitFor(() => !context.isRunning, 10000), "it runs no more");
    test.compare([context.isFrozen(1), context.name, context.readStdout(), context.usedMemory].join(), "false,torvixtarget_2,,0");
    test.verify(isNaN(context.startTime) === false, "what was known stays known");
    expectErrors([
        [() => setApplicationContext(context), "TypeError: Cannot switch to invalid application context"],
        [() => context.detach(), "Error: detach() failed"],
        [() => control.clicks, "Error: Attempt to access an invalidated object"],
        [() => startApplication("/bin/true"),
            "Error: Cannot start /bin/true: it exited with status 0 before its agent called back"],
    ]);
}

function oneThatIsDetachedFromIsOutOfReach(context) {
    setApplicationContext(context);
    const begun = Date.now();
    test.compare(context.detach(), undefined);
    test.verify(Date.now() - begun < 400, "it goes on, and nobody waits for its end");
    test.compare(context.isRunning, true);
    expectErrors([
        [() => findObject({ name: "count" }), "Error: The application has ended: it was detached from"],
        [() => setApplicationContext(context), "TypeError: Cannot switch to invalid application context"],
        [() => context.detach(), "Error: detach() failed"],
    ]);
}

function launchedAndAttached() {
    const starter = startApplication("../programs/twice");
    const launched = waitForApplicationLaunch(10);
    test.verify(launched.pid > 0 && launched.pid !== starter.pid);
    test.compare(currentApplicationContext().pid, launched.pid);
    test.verify(launched.isRunning && thrown(() => launched.readStdout()).includes("not available"));
    expectErrors([[() => waitForApplicationLaunch(0), "Error: No application was launched within 0 ms"]]);

    const beside = startApplication("../programs/listening");
    const address = beside.environmentVariable("TORVIX_TEST_FOLDER") + "/agent";
    const attached = attachToApplication(address, "", -1, 20);
    test.verify(attached.pid !== beside.pid && attached.isRunning);
    test.compare(waitForObject({ name: "nameEdit" }).text, "");
    expectErrors([
        [() => attached.readStderr(), "Error: The AUT standard error is not available."],
        [() => attachToApplication("/no/such/socket", "", -1, 0),
            "Error: Cannot attach to /no/such/socket: cannot connect to /no/such/socket: No such file or directory"],
    ]);
    attached.detach();
    test.compare(attached.isRunning, true, "it goes on by itself");
    test.compare(attachToApplication(address, "", -1, 20).pid, attached.pid, "and can be attached to again");
}
