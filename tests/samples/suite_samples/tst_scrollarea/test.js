// A scroll area: what is far down is brought into view and clicked.
function main() {
    startApplication("charactermap");
    const area = waitForObject({ type: "QScrollArea" });
    const bar = area.verticalScrollBar();
    test.compare(bar.value, 0);
    scrollTo(bar, 500);
    test.compare(bar.value, 500);
    mouseWheel(area, 0, 1);
    test.verify(bar.value < 500, "the wheel turns it back: " + bar.value);
    mouseDrag(bar, 5, 40, 0, 60);

    const map = findObject({ type: "CharacterWidget" });
    mouseClick(map, 10, 200);
    clickButton({ type: "QPushButton", text: "&To clipboard" });
    mouseClick(map, 10, 3000);
}
