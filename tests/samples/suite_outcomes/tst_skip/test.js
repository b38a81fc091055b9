function main() {
    startApplication("calculator");
    needsPrinter();
    test.fail("not reached");
}

function needsPrinter() {
    test.skip("There is no printer");
}

function cleanup() {
    test.log("cleanup runs all the same");
}
