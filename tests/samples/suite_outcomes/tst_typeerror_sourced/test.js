function main() {
    startApplication("calculator");
    source("helpers.js");
    test.log(textOf({ type: "QLineEdit" }));
    test.log(textOf({ type: "QTextEdit" }));
}
