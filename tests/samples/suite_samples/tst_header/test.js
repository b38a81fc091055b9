// A sorted view with a filter: the heads of its columns are clicked.
function main() {
    startApplication("basicsortfiltermodel");
    const view = waitForObject({ type: "QTreeView", container: { type: "QGroupBox", title: "Sorted/Filtered Model" } });
    const header = view.header();
    const first = () => waitForObjectItem(view, 0, 1).text;
    test.compare(waitForObjectItem(header, "Sender").index, 1);
    clickItem(header, "Sender");
    const up = first();
    mouseClick(waitForObjectItem(header, "Sender"));
    test.verify(first() != up, `${up}, and the other way round ${first()}`);

    const pattern = waitForObject({ type: "QLineEdit", buddy: { type: "QLabel", text: "&Filter pattern:" } });
    type(pattern, "Grace");
    test.verify(waitFor(() => view.model().rowCount() == 2, 2000), "the filter leaves two");
    test.compare(header.model().columnCount(), 3);
    try {
        clickItem(header, "sendr");
        test.fail("there is no such column");
    } catch (error) {
        test.verify(error.message.endsWith("has no item 'sendr'. It has 'Sender', 'Date', 'Subject'."), error.message);
    }
}
