// Waits for an application that does not come.
function main() {
    startApplication("../programs/silent");
}
