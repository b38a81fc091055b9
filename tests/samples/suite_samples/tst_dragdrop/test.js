// Drag and drop: a magnet is put to another place.
const magnet = { type: "QLabel", visible: true };

function main() {
    startApplication("fridgemagnets");
    waitForObject(magnet);
    const before = findAllObjects(magnet);
    const first = before[0];
    const place = { x: first.x, y: first.y };
    mouseDrag(first, 10, 8, 150, 120);
    const after = findAllObjects(magnet);
    test.compare(after.length, before.length, "none is lost");
    test.verify(after.some(each => each.x == place.x + 150 && each.y == place.y + 120), "it lies where it was dropped");
}
