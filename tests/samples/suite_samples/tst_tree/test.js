// A tree with a model: items are opened, chosen, edited, added and removed.
import * as names from 'names.js';
const view = { type: "QTreeView", name: "view" };

function main() {
    startApplication("editabletreemodel");
    const tree = waitForObject(view);
    const item = waitForObjectItem(view, "Getting Started");
    test.compare(item.text, "Getting Started");
    expandItem(tree, "Getting Started");
    mouseClick(waitForObjectItem(view, "Getting Started.The User Interface"));
    test.compare(findObject({ type: "QStatusBar" }).currentMessage(), "Position: (1,0)");
    test.compare(tree.currentIndex().text, "The User Interface");

    test.startSection("Edit in place");
    doubleClick(waitForObjectItem(view, "Getting Started.The User Interface"));
    nativeType("<Ctrl+A>The Screen<Return>");
    test.compare(tree.currentIndex().text, "The Screen");
    test.endSection();

    test.startSection("Add and remove rows");
    const parent = waitForObjectItem(view, "Getting Started");
    const rows = () => tree.model().rowCount(tree.currentIndex().parent());
    test.compare(rows(), 2);
    activateItem(names.menuBar, "Actions.Insert Row");
    test.compare(rows(), 3);
    mouseClick(waitForObjectItem(view, "Getting Started.[No data]"));
    type(tree, "<Ctrl+R>r");
    test.compare(rows(), 2, "a shortcut of two strokes");
    test.endSection();

    collapseItem(view, "Getting Started");
    test.verify(!tree.isExpanded(parent), "it is folded again");
    clickItem(view, "Connection Editing Mode.Connecting Objects");
    test.compare(tree.currentIndex().text, "Connecting Objects");
}
