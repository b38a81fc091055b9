// Goes on until somebody ends it.
function main() {
    startApplication("../programs/family");
    test.log("ready");
    snooze(600);
}
