function main() {
    test.compare(testSettings.waitForObjectTimeout, 15000, "another case's change ends with it");
}
