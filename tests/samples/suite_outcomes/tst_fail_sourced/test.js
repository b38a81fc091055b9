source("checks.js");

function main() {
    startApplication("calculator");
    checkSum("1", "2", "3");
    checkSum("2", "3", "6");
}
