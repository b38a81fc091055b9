function main() {
    startApplication("calculator");
    test.verify(waitForObject({ type: "Calculator" }).visible);
}
