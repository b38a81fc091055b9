// Combo boxes and line edits: echo modes, validators, input masks.
import * as names from 'names.js';
const { combo, field } = names.lineEdits;

function main() {
    startApplication("lineedits");
    type(waitForObject(field("Echo")), "secret");
    activateItem(waitForObject(combo("Echo")), "Password");
    test.compare(findObject(combo("Echo")).currentText, "Password");
    test.compare(findObject(field("Echo")).echoMode, QLineEdit.Password);
    test.compare(findObject(field("Echo")).displayText.length, 6);
    test.compare(findObject(field("Echo")).text, "secret");

    activateItem(combo("Validator"), "Integer validator");
    type(field("Validator"), "1a2b3");
    test.compare(findObject(field("Validator")).text, "123", "letters are refused");

    activateItem(combo("Input mask"), "ISO date");
    mouseClick(waitForObject(field("Input mask")), 5, 5);
    type(field("Input mask"), "<Home>20240131");
    test.compare(findObject(field("Input mask")).text, "2024-01-31");

    activateItem(combo("Access"), "True");
    test.verify(findObject(field("Access")).readOnly);
    type(field("Access"), "ignored");
    test.compare(findObject(field("Access")).text, "");

    mouseClick(waitForObjectItem(combo("Alignment"), "Right"));
    test.compare(findObject(field("Alignment")).alignment, Qt.AlignRight);
}
