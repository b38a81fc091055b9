// Spin boxes: keys, arrows, wheel, typing, limits.
import * as names from 'names.js';
function main() {
    startApplication("spinboxes");
    const box = waitForObject({ type: "QSpinBox", minimum: -20 });
    test.compare(box.value, 0);
    type(box, "<Up><Up><Up>");
    test.compare(box.value, 3);
    type(box, "<Ctrl+A>18<PageUp>");
    test.compare(box.value, 20, "it ends at its limit");
    mouseWheel(box, 0, -1);
    test.compare(box.value, 19);
    mouseClick(box, box.width - 5, box.height - 5);
    test.compare(box.value, 18, "the arrow down");

    const zoom = findObject({ type: "QSpinBox", suffix: "%" });
    type(zoom, "<Ctrl+A>0<Tab>");
    test.compare(zoom.text, "Automatic");

    const date = findObject({ type: "QDateEdit" });
    type(date, "<Ctrl+A><Home>");
    date.setDate(new QDate(2007, 5, 6));
    test.compare(date.date.toString(Qt.ISODate), "2007-05-06");
    activateItem({ type: "QComboBox" }, "hh:mm:ss");
    test.compare(findObject({ type: "QDateTimeEdit" }).displayFormat, "hh:mm:ss");

    type(waitForObject({ type: "QSpinBox", maximum: 100 }), "<Ctrl+A>1");
    test.compare(findObject({ type: "QDoubleSpinBox", minimum: -20 }).decimals, 1);
}
