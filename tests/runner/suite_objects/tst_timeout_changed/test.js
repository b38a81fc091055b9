function main() {
    testSettings.waitForObjectTimeout = 7;
}
