// Whole tables are compared with verification points: the files verificationPoints/*.json.
import * as names from 'names.js';
import * as book from 'addressbook.js';

function main() {
    book.start();
    test.vpWithObject("window", waitForObject(names.window), "the window");

    for (const person of testData.datasetExcel("contacts.xlsx", "People").slice(0, 3))
        book.add(testData.field(person, "name"), testData.field(person, "address"));
    book.showGroup("ABC");

    book.sortBy(0);
    test.vp("by-name", "sorted by name");
    book.sortBy(0);
    test.vp("by-name-backwards", "sorted by name, backwards");
    book.sortBy(1);
    test.vp("by-address", "sorted by address");
}
